// Owns a file descriptor; move-only, closed when it goes.
#ifndef HOST_RESIDENT_DESCRIPTOR_H
#define HOST_RESIDENT_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace resident {

class Descriptor {
public:
  Descriptor() = default;
  explicit Descriptor(int owned) : number(owned) {}
  Descriptor(Descriptor &&other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor &operator=(Descriptor &&other) noexcept {
    if (this != &other)
      Close(std::exchange(other.number, -1));
    return *this;
  }
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor() { Close(-1); }

  [[nodiscard]] int Get() const { return number; }
  explicit operator bool() const { return number >= 0; }

private:
  void Close(int next) {
    if (const int old = std::exchange(number, next); old >= 0)
      close(old);
  }

  int number = -1;
};

} // namespace resident

#endif
