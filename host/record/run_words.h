// The words that records, plans and SARIF have for the numbers of run events.
#ifndef HOST_RECORD_RUN_WORDS_H
#define HOST_RECORD_RUN_WORDS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// V_JOB_DONE and so on, from 0.
inline constexpr size_t jobStatusCount = 6;

// The place of a status in an array; one that this host does not know counts as failed.
[[nodiscard]] size_t JobStatusIndex(int32_t status);
// "done", "left-out"; a number without a name counts as "failed".
[[nodiscard]] std::string_view NameJobStatus(int32_t status);
// Nothing for a word that is no status.
[[nodiscard]] std::optional<int32_t> FindJobStatus(std::string_view word);
// "warning", "error", "fatal".
[[nodiscard]] std::string_view NameSeverity(int32_t severity);
// "principal", "secondary", "opened", "launched".
[[nodiscard]] std::string_view NameOutputKind(int32_t kind);

// "248 inputs: 241 transformed, 6 failed, 1 refused", from how many jobs ended in which way.
[[nodiscard]] std::string SummariseJobs(int32_t count, const std::array<int32_t, jobStatusCount> &byStatus);
// "transformed", "left out": the word of such a summary.
[[nodiscard]] std::string_view CountedJobStatus(int32_t status);

} // namespace host

#endif
