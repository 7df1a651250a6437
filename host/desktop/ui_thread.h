// From the host's thread to the windows and back. The main loop must run for as long as the host's thread does.
#ifndef HOST_DESKTOP_UI_THREAD_H
#define HOST_DESKTOP_UI_THREAD_H

#include "host/guard.h"

#include <wx/app.h>

#include <future>
#include <type_traits>

namespace desktop {

template <class Body> void PostToWindows(Body body) {
  wxTheApp->CallAfter([body = std::move(body)]() mutable { host::Guarded([&] { body(); }); });
}

// Runs `body` among the windows and hands back what it returns.
template <class Body> auto AskWindows(Body body) -> std::invoke_result_t<Body> {
  std::promise<std::invoke_result_t<Body>> answer;
  wxTheApp->CallAfter([&] {
    if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
      host::Guarded(body);
      answer.set_value();
    } else {
      answer.set_value(host::Guarded(body));
    }
  });
  return answer.get_future().get();
}

} // namespace desktop

#endif
