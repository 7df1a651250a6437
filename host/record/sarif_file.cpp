#include "host/record/sarif_file.h"

#include "host/record/json_text.h"
#include "host/record/time_text.h"
#include "kit/paths.h"
#include "kit/unfinished_files.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// What is not a path must be a URI already; empty when it cannot be written as one.
std::string ToUri(const std::string &place) {
  if (!kit::IsUrl(place) || kit::IsFileUrl(place))
    return kit::PathToUrl(kit::AbsolutePath(kit::UrlToPath(place)));
  static constexpr std::string_view forbidden = "\"<>\\^`{|} ";
  const bool isUri = std::ranges::none_of(place, [](unsigned char each) {
    return each < 0x21 || each > 0x7E || forbidden.find(static_cast<char>(each)) != std::string_view::npos;
  });
  return isUri ? place : std::string();
}

Json MakeRegion(const RunDiagnostic &diagnostic) {
  Json region{{"startLine", diagnostic.line}};
  if (diagnostic.column >= 1)
    region["startColumn"] = diagnostic.column;
  return region;
}

// A problem without a file is shown at the input.
Json MakeLocations(const RunDiagnostic &diagnostic, const JobReport *job) {
  const std::string place = diagnostic.file.empty() && job ? job->input : diagnostic.file;
  const std::string uri = place.empty() ? std::string() : ToUri(place);
  Json locations = Json::array();
  if (uri.empty())
    return locations;
  Json physical;
  physical["artifactLocation"]["uri"] = uri;
  if (!diagnostic.file.empty() && diagnostic.line >= 1)
    physical["region"] = MakeRegion(diagnostic);
  Json location;
  location["physicalLocation"] = std::move(physical);
  locations.push_back(std::move(location));
  return locations;
}

} // namespace

SarifFile::SarifFile(const std::string &path, std::string programVersion, WriteFailure failure)
    : file(path), version(std::move(programVersion)), started(FormatTime(std::chrono::system_clock::now())),
      tell(std::move(failure)) {
  kit::RemoveAbandonedFiles(kit::FolderOf(kit::FollowLinks(path)));
  hasFailed = !file.Write(R"({"version":"2.1.0","runs":[{"results":[)");
}

void SarifFile::TakeJob(const JobReport &job) {
  for (const RunDiagnostic &diagnostic : job.diagnostics)
    WriteResult(diagnostic, &job);
}

void SarifFile::TakeDiagnostic(const RunDiagnostic &diagnostic) { WriteResult(diagnostic, nullptr); }

void SarifFile::WriteResult(const RunDiagnostic &diagnostic, const JobReport *job) {
  Json result;
  if (!diagnostic.code.empty()) {
    result["ruleId"] = diagnostic.code;
    rules.insert(diagnostic.code);
  }
  result["level"] = diagnostic.severity == V_SEVERITY_WARNING ? "warning" : "error";
  result["message"]["text"] = diagnostic.text;
  result["locations"] = MakeLocations(diagnostic, job);
  if (job)
    result["properties"] = Json{{"job", job->job}, {"input", job->input}};
  Write((std::exchange(hasResults, true) ? ",\n" : "\n") + ToJsonText(result));
}

void SarifFile::End(int32_t exitCode) {
  Json driver{{"name", "vlxslt"}, {"version", version}, {"rules", Json::array()}};
  for (const std::string &rule : rules)
    driver["rules"].push_back(Json{{"id", rule}});
  Json invocation{{"executionSuccessful", exitCode == 0},
                  {"exitCode", exitCode},
                  {"startTimeUtc", started},
                  {"endTimeUtc", FormatTime(std::chrono::system_clock::now())}};
  Write("\n],\"tool\":" + ToJsonText(Json{{"driver", std::move(driver)}}) +
        ",\"invocations\":" + ToJsonText(Json::array({std::move(invocation)})) + "}]}\n");
  if (!hasFailed && !file.Commit())
    tell(file.Error());
}

void SarifFile::Write(const std::string &text) {
  if (hasFailed || file.Write(text))
    return;
  hasFailed = true;
  tell(file.Error());
}

} // namespace host
