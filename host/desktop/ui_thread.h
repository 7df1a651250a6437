// Calls from the host's thread to the windows' thread and back. The main loop must run for as long as the host's
// thread, or call LoseWindows, which ends all waiting.
#ifndef HOST_DESKTOP_UI_THREAD_H
#define HOST_DESKTOP_UI_THREAD_H

#include "host/guard.h"

#include <wx/app.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace desktop {

// From any thread.
[[nodiscard]] bool AreWindowsGone();

// On the windows' thread, which shows nothing afterwards. Threads that wait for the windows go on without an answer.
void LoseWindows();

// Waits until `isDone`, which is asked under the lock that ChangeShared holds. False when the windows went away first.
bool WaitForWindows(const std::function<bool()> &isDone);

// The same whether there are windows or not; false when it takes longer than `maxTime`.
bool WaitFor(std::chrono::seconds maxTime, const std::function<bool()> &isDone);

// Changes state that another thread may be waiting for.
void ChangeShared(const std::function<void()> &change);

template <class Body> void PostToWindows(Body body) {
  wxTheApp->CallAfter([body = std::move(body)]() mutable { host::Guarded([&] { body(); }); });
}

// Posts for as long as its owner lives; what is posted and has not run by then is dropped. Destroyed on the windows'
// thread.
class WindowsPoster {
public:
  template <class Body> void Post(Body body) const {
    PostToWindows([body = std::move(body), owner = std::weak_ptr(life)]() mutable {
      if (!owner.expired())
        body();
    });
  }

private:
  std::shared_ptr<bool> life = std::make_shared<bool>();
};

// Runs `body` on the windows' thread and returns its result; a default one when the windows go meanwhile.
template <class Body> auto AskWindows(Body body) -> std::invoke_result_t<Body> {
  using Result = std::invoke_result_t<Body>;
  using Kept = std::conditional_t<std::is_void_v<Result>, bool, Result>;
  if (AreWindowsGone())
    return Result();
  std::optional<Kept> answer;
  // After LoseWindows the body never runs or continues, so it may refer to this stack frame.
  wxTheApp->CallAfter([&] {
    std::optional<Kept> made;
    if constexpr (std::is_void_v<Result>) {
      host::Guarded(body);
      made = true;
    } else {
      made = host::Guarded(body);
    }
    ChangeShared([&] { answer = std::move(made); });
  });
  WaitForWindows([&] { return answer.has_value(); });
  if constexpr (!std::is_void_v<Result>)
    return answer ? std::move(*answer) : Result();
}

} // namespace desktop

#endif
