// Owns what must be given back: kit strings, lists, parser objects, references.
// Move-only; `Free` is called once with a non-null pointer. Adopt takes ownership, Release gives it away.
#ifndef KIT_HANDLE_H
#define KIT_HANDLE_H

#include <utility>

namespace kit {

template <class T, auto Free> class Handle {
public:
  Handle() = default;
  Handle(Handle &&other) noexcept : held(std::exchange(other.held, nullptr)) {}
  Handle &operator=(Handle &&other) noexcept {
    if (this != &other)
      Reset(other.Release());
    return *this;
  }
  Handle(const Handle &) = delete;
  Handle &operator=(const Handle &) = delete;
  ~Handle() { Reset(nullptr); }

  [[nodiscard]] static Handle Adopt(T *owned) {
    Handle handle;
    handle.held = owned;
    return handle;
  }

  [[nodiscard]] T *Get() const { return held; }
  [[nodiscard]] T *Release() { return std::exchange(held, nullptr); }
  explicit operator bool() const { return held != nullptr; }

private:
  void Reset(T *next) {
    T *old = std::exchange(held, next);
    if (old)
      Free(old);
  }

  T *held = nullptr;
};

} // namespace kit

#endif
