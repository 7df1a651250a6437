#include "host/record/run_words.h"

#include "kit/vdk.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

struct Word {
  int32_t number;
  std::string_view word;
};

constexpr std::array statusWords = {Word{V_JOB_DONE, "done"},         Word{V_JOB_FAILED, "failed"},
                                    Word{V_JOB_REFUSED, "refused"},   Word{V_JOB_MISSING, "missing"},
                                    Word{V_JOB_LEFT_OUT, "left-out"}, Word{V_JOB_CANCELLED, "cancelled"}};
static_assert(statusWords.size() == jobStatusCount);

// In a summary.
constexpr std::array countedWords = {Word{V_JOB_DONE, "transformed"},  Word{V_JOB_FAILED, "failed"},
                                     Word{V_JOB_REFUSED, "refused"},   Word{V_JOB_MISSING, "missing"},
                                     Word{V_JOB_LEFT_OUT, "left out"}, Word{V_JOB_CANCELLED, "cancelled"}};

constexpr std::array severityWords = {Word{V_SEVERITY_WARNING, "warning"}, Word{V_SEVERITY_ERROR, "error"},
                                      Word{V_SEVERITY_FATAL, "fatal"}};

constexpr std::array outputWords = {Word{V_OUTPUT_PRINCIPAL, "principal"}, Word{V_OUTPUT_SECONDARY, "secondary"},
                                    Word{V_OUTPUT_OPENED, "opened"}, Word{V_OUTPUT_LAUNCHED, "launched"}};

template <class Table> std::string_view Name(const Table &table, int32_t number, std::string_view otherwise) {
  const auto found = std::ranges::find(table, number, &Word::number);
  return found == table.end() ? otherwise : found->word;
}

} // namespace

size_t JobStatusIndex(int32_t status) {
  return static_cast<size_t>(status >= V_JOB_DONE && status <= V_JOB_CANCELLED ? status : int32_t{V_JOB_FAILED});
}

std::string_view NameJobStatus(int32_t status) { return Name(statusWords, status, "failed"); }

std::optional<int32_t> FindJobStatus(std::string_view word) {
  const auto *const found = std::ranges::find(statusWords, word, &Word::word);
  return found == statusWords.end() ? std::nullopt : std::optional(found->number);
}

std::string_view CountedJobStatus(int32_t status) { return Name(countedWords, status, "failed"); }

std::string SummariseJobs(int32_t count, const std::array<int32_t, jobStatusCount> &byStatus) {
  std::string text = std::to_string(count) + (count == 1 ? " input" : " inputs");
  std::string_view separator = ": ";
  for (const Word &each : countedWords)
    if (const int32_t ended = byStatus.at(static_cast<size_t>(each.number)); ended > 0) {
      text.append(separator).append(std::to_string(ended)).append(" ").append(each.word);
      separator = ", ";
    }
  return text;
}

std::string_view NameSeverity(int32_t severity) { return Name(severityWords, severity, "error"); }

std::string_view NameOutputKind(int32_t kind) { return Name(outputWords, kind, "secondary"); }

} // namespace host
