// Keeps the host's exceptions from crossing into a client: the call answers as if there were nothing, and the exception
// is reported on standard error.
#ifndef HOST_GUARD_H
#define HOST_GUARD_H

#include <cstdio>
#include <exception>
#include <type_traits>

namespace host {

template <class Body> auto Guarded(Body body) noexcept -> std::invoke_result_t<Body> {
  using Result = std::invoke_result_t<Body>;
  try {
    return body();
  } catch (const std::exception &fault) {
    std::fprintf(stderr, "vlxslt: internal error: %s\n", fault.what());
  } catch (...) {
    std::fputs("vlxslt: internal error\n", stderr);
  }
  if constexpr (!std::is_void_v<Result>)
    return Result{};
}

} // namespace host

#endif
