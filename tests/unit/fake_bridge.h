// Stands in for the Java processors where a test needs thousands of runs, or a failure at a chosen moment. It
// "transforms" by writing the input's text behind the stylesheet's. Linked instead of the real calls, never beside
// them.
#ifndef TESTS_UNIT_FAKE_BRIDGE_H
#define TESTS_UNIT_FAKE_BRIDGE_H

#include <set>
#include <string>
#include <utility>
#include <vector>

struct FakeBridge {
  struct Call {
    std::string input, xsl, output;
    std::vector<std::string> parameters;
  };
  std::string classPath;
  std::set<std::string> classes; // the ones that load
  std::set<std::string> failing; // inputs whose transformation fails
  std::vector<Call> calls;
  std::vector<std::pair<std::string, bool>> listings; // folder, with its sub-folders

  // Made anew by Reset.
  static FakeBridge &Get();
  static void Reset() { Get() = FakeBridge(); }
};

#endif
