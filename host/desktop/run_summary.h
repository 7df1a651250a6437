// What the events of a run add up to, and the texts in which the windows tell it. No windows; any single thread.
#ifndef HOST_DESKTOP_RUN_SUMMARY_H
#define HOST_DESKTOP_RUN_SUMMARY_H

#include "host/record/run_event.h"
#include "host/record/run_words.h"

#include <array>
#include <cstdint>
#include <string>

namespace desktop {

class RunSummary {
public:
  // An event after the end of a run begins a new summary.
  void TakeEvent(const host::RunEvent &event);

  [[nodiscard]] int32_t Inputs() const { return inputs; }
  [[nodiscard]] int32_t CountOf(int32_t status) const { return ended[static_cast<size_t>(status)]; }
  [[nodiscard]] const std::array<int32_t, host::jobStatusCount> &ByStatus() const { return ended; }
  // Failed, refused and missing ones.
  [[nodiscard]] int32_t NotDone() const;
  [[nodiscard]] bool HasErrors() const { return errors > 0 || NotDone() > 0; }
  // The text of the first diagnostic that is no warning.
  [[nodiscard]] const std::string &FirstError() const { return firstError; }
  // "2 errors, 1 warning"; empty without any.
  [[nodiscard]] std::string DescribeProblems() const;

private:
  bool hasEnded = false;
  int32_t inputs = 0;
  std::array<int32_t, host::jobStatusCount> ended{}; // by status
  int32_t errors = 0;
  int32_t warnings = 0;
  std::string firstError;
};

// "248 inputs: 241 transformed, 6 failed, 1 refused"; empty for a run without inputs.
[[nodiscard]] std::string SummariseRun(const RunSummary &run);

// How a job ended, as a sign and a word.
[[nodiscard]] std::string DescribeStatus(int32_t status);

} // namespace desktop

#endif
