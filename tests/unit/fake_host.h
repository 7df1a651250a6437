// A host for unit tests: properties are set by the test, everything asked and shown is recorded, every block of memory
// is counted, and the n-th call can be made to fail. Attaches itself to the kit's runtime for as long as it lives.
#ifndef TESTS_UNIT_FAKE_HOST_H
#define TESTS_UNIT_FAKE_HOST_H

#include "kit/values.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

class FakeHost {
public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost &) = delete;
  FakeHost &operator=(const FakeHost &) = delete;

  using Key = std::pair<V_ObjectT, int32_t>;
  using Client = std::function<kit::TypedValues(const std::string &request)>;
  struct Asked {
    int32_t kind;
    std::string text;
    bool operator==(const Asked &) const = default;
  };

  // What the client sees.
  std::map<Key, int32_t> ints;
  std::map<Key, std::string> strings;
  std::map<Key, V_ObjectT> objects;
  std::map<Key, std::vector<std::string>> lists;
  std::map<Key, std::vector<std::vector<std::string>>> stringTables; // typed values, each a list of strings
  std::map<V_ObjectT, std::vector<std::string>> components;          // an empty path: a component without one
  std::map<std::string, Client> clients;
  std::set<std::string> netFiles;
  std::map<std::string, std::string> netCache;

  // What it answers; an empty queue proceeds, and dismisses choosers.
  std::deque<int32_t> answers;
  std::deque<std::string> choices;
  bool opensDocuments = true;
  int32_t saveResult = 1;
  std::function<bool()> isCancelled;
  std::function<void()> whenAsked; // before the answer

  // What it saw.
  std::vector<Asked> asked;
  std::vector<std::string> console;
  std::vector<std::string> runEvents;                        // in words
  std::vector<size_t> consoleAtEvent;                        // how many lines the console had when each came
  std::vector<std::pair<std::string, std::string>> requests; // client, request
  std::vector<std::string> opened;
  std::vector<std::string> launched;
  std::vector<std::string> saved;
  std::vector<std::string> usage;
  int32_t error = 0;

  [[nodiscard]] const V_HostT &Table() const { return table; }
  [[nodiscard]] size_t LiveBlocks() const { return blocks.size(); }
  // The n-th call from now on (from 1) fails: no memory, no answer, no document.
  void FailCall(size_t n) {
    callsToFailure = n;
    failed = false;
  }
  // Whether that call came.
  [[nodiscard]] bool HasFailed() const { return failed; }
  [[nodiscard]] kit::TypedValues TakeReply() { return std::exchange(reply, {}); }

private:
  friend struct FakeHostCalls;
  // Counts a call; true when it is the one to fail.
  [[nodiscard]] bool Fails();

  V_HostT table{};
  std::set<void *> blocks;
  kit::TypedValues reply;
  size_t callsToFailure = 0;
  bool failed = false;
};

#endif
