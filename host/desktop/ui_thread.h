// From the host's thread to the windows and back. The main loop must run for as long as the host's thread does, or say
// that the windows are gone: then nobody waits for one any more.
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

// On the windows' thread, which shows nothing afterwards and serves nobody. Whoever waits goes on without an answer.
void LoseWindows();

// Waits until `isDone`, which is asked under the lock that ChangeShared holds. False when the windows went away first.
bool WaitForWindows(const std::function<bool()> &isDone);

// The same for what goes on without windows: until the time is over. False when it was.
bool WaitFor(std::chrono::seconds longest, const std::function<bool()> &isDone);

// Changes what another thread may be waiting for.
void ChangeShared(const std::function<void()> &change);

template <class Body> void PostToWindows(Body body) {
  wxTheApp->CallAfter([body = std::move(body)]() mutable { host::Guarded([&] { body(); }); });
}

// Posts for as long as its owner lives; what is still waiting then is dropped. Destroyed on the windows' thread.
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

// Runs `body` among the windows and hands back what it returns; a default when the windows go away meanwhile.
template <class Body> auto AskWindows(Body body) -> std::invoke_result_t<Body> {
  using Result = std::invoke_result_t<Body>;
  using Kept = std::conditional_t<std::is_void_v<Result>, bool, Result>;
  if (AreWindowsGone())
    return Result();
  std::optional<Kept> answer;
  // Lost windows leave a body where it stands and never come back to it, so it may look at this frame.
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
