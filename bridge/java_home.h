// Where the Java virtual machine is: the configured place, JAVA_HOME, the distribution's default, the `java` on the
// path.
#ifndef BRIDGE_JAVA_HOME_H
#define BRIDGE_JAVA_HOME_H

#include <string>
#include <vector>

namespace bridge {

constexpr int oldestJava = 17;

struct JavaHome {
  std::string home;
  std::string library; // libjvm
  int version = 0;     // 0 when its release file does not tell
};

struct JavaSearch {
  JavaHome found;                  // `library` is empty when nothing usable was found
  std::vector<std::string> places; // what was looked at, each with what was wrong with it
};

// A configured place is binding: when it does not hold a usable Java, nothing else is tried.
[[nodiscard]] JavaSearch FindJava(const std::string &configured);

} // namespace bridge

#endif
