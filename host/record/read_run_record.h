// Reads back the record of a run, also of one that was killed.
#ifndef HOST_RECORD_READ_RUN_RECORD_H
#define HOST_RECORD_READ_RUN_RECORD_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct RecordedJob {
  int32_t job = -1;
  std::string input;
  int32_t status = 0; // V_JOB_...
};

struct RunRecord {
  std::string request;
  int32_t count = 0;
  std::vector<RecordedJob> jobs;   // in the order of the lines
  std::optional<int32_t> exitCode; // nothing: the run did not come to its end
};

// A last line that no line end follows is passed over. False and an error text "FILE:LINE: ..." for what is no record,
// or "FILE: ..." when it cannot be read.
[[nodiscard]] bool ReadRunRecord(const std::string &path, RunRecord &record, std::string &error);

} // namespace host

#endif
