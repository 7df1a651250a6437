#include "host/record/read_run_record.h"

#include "host/record/json_text.h"
#include "host/record/run_words.h"
#include "kit/read_file.h"

#include <array>
#include <string_view>

namespace host {

namespace {

constexpr int readableVersion = 1;

std::string FindText(const Json &object, const char *key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

std::optional<int32_t> FindNumber(const Json &object, const char *key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_number_integer() ? std::optional(found->get<int32_t>()) : std::nullopt;
}

// Each takes one line of its type; an error text when it is not as it should be.

std::string ReadRun(const Json &line, RunRecord &record) {
  const std::optional<int32_t> version = FindNumber(line, "version");
  if (version.value_or(0) > readableVersion)
    return "the record has version " + std::to_string(*version) + ", which is newer than this program";
  record.request = FindText(line, "request");
  record.count = FindNumber(line, "count").value_or(-1);
  return !version || record.request.empty() || record.count < 0 ? "the run line lacks its version, count or request"
                                                                : "";
}

std::string ReadJob(const Json &line, RunRecord &record) {
  const std::optional<int32_t> status = FindJobStatus(FindText(line, "status"));
  const std::optional<int32_t> number = FindNumber(line, "job");
  if (!status || !number || !line.contains("input"))
    return "the job line lacks its number, input or status";
  record.jobs.push_back({*number, FindText(line, "input"), *status});
  return {};
}

std::string ReadEnd(const Json &line, RunRecord &record) {
  record.exitCode = FindNumber(line, "exit");
  return record.exitCode ? "" : "the end line lacks its exit code";
}

struct LineType {
  std::string_view name;
  std::string (*read)(const Json &line, RunRecord &record);
};
constexpr std::array lineTypes = {LineType{"run", ReadRun}, LineType{"job", ReadJob}, LineType{"end", ReadEnd}};

std::string ReadLine(std::string_view text, bool isFirst, RunRecord &record) {
  const Json line = Json::parse(text, nullptr, false);
  const std::string type = line.is_object() ? FindText(line, "type") : std::string();
  for (const LineType &each : lineTypes)
    if (each.name == type && isFirst == (type == "run"))
      return each.read(line, record);
  return isFirst ? "this is no record of a run" : "this is no line of a record";
}

} // namespace

bool ReadRunRecord(const std::string &path, RunRecord &record, std::string &error) {
  const kit::FileContent content = kit::ReadFile(path);
  error = content.error;
  std::string_view rest = content.bytes;
  size_t number = 0;
  for (size_t end = 0; error.empty() && (end = rest.find('\n')) != std::string_view::npos;
       rest.remove_prefix(end + 1)) {
    ++number;
    if (const std::string fault = ReadLine(rest.substr(0, end), number == 1, record); !fault.empty())
      error.append(path).append(":").append(std::to_string(number)).append(": ").append(fault);
  }
  if (error.empty() && number == 0)
    error = path + ":1: this is no record of a run";
  return error.empty();
}

} // namespace host
