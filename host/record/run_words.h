// The words that records, plans and SARIF have for the numbers of run events.
#ifndef HOST_RECORD_RUN_WORDS_H
#define HOST_RECORD_RUN_WORDS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

// V_JOB_DONE and so on, from 0.
inline constexpr size_t jobStatusCount = 6;

// "done", "left-out"; a number without a name counts as "failed".
[[nodiscard]] std::string_view NameJobStatus(int32_t status);
// Nothing for a word that is no status.
[[nodiscard]] std::optional<int32_t> FindJobStatus(std::string_view word);
// "warning", "error", "fatal".
[[nodiscard]] std::string_view NameSeverity(int32_t severity);
// "principal", "secondary", "opened", "launched".
[[nodiscard]] std::string_view NameOutputKind(int32_t kind);

} // namespace host

#endif
