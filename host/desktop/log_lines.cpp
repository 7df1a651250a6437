#include "host/desktop/log_lines.h"

#include "kit/paths.h"

namespace desktop {

namespace {

LineStyle StyleOfStatus(int32_t status) {
  switch (status) {
  case V_JOB_DONE:
    return LineStyle::Success;
  case V_JOB_LEFT_OUT:
  case V_JOB_CANCELLED:
    return LineStyle::Warning;
  default:
    return LineStyle::Error;
  }
}

// A text is one line of the console, or one for each of its own lines; of a diagnostic without a text the place is
// left.
bool Shows(std::string_view line, const host::RunEvent &event) {
  const std::string_view text = event.text.empty() ? event.path : event.text;
  return !line.empty() && !text.empty() &&
         (line.find(text) != std::string_view::npos || text.find(line) != std::string_view::npos);
}

// As the console does, which shows a text without the line end behind it.
std::string WithoutLineEnds(std::string text) {
  while (text.ends_with('\n') || text.ends_with('\r'))
    text.pop_back();
  return text;
}

} // namespace

void LogLines::TakeEvent(const host::RunEvent &event) {
  current = event;
  current.text = WithoutLineEnds(std::move(current.text));
  hasHeading = false;
  currentProblem.reset();
  if (event.kind == V_RUN_ENDS)
    current = {};
  if (event.kind == V_RUN_DIAGNOSTIC && kit::IsAbsolutePath(event.path)) {
    currentProblem = problems.size();
    problems.push_back({event.path, event.line, event.column});
  }
}

LogLine LogLines::ShowDiagnostic(std::string_view line) {
  LogLine shown{current.severity == V_SEVERITY_WARNING ? LineStyle::Warning : LineStyle::Error, currentProblem};
  if (const size_t begin = line.find(current.path); currentProblem && begin != std::string_view::npos) {
    shown.linkBegin = begin;
    shown.linkEnd = begin + current.path.size();
  }
  return shown;
}

LogLine LogLines::TakeLine(std::string_view line) {
  const bool showsText = Shows(line, current);
  if (current.kind == V_RUN_MESSAGE && showsText)
    return {};
  // A quiet run reports diagnostics without lines; what follows is something else.
  if (current.kind == V_RUN_DIAGNOSTIC && showsText)
    return ShowDiagnostic(line);
  if (const auto named = host::FindFilePlace(line)) {
    problems.push_back(named->place);
    return {LineStyle::Error, problems.size() - 1, named->begin, named->end};
  }
  if (current.kind == V_JOB_ENDS)
    return {StyleOfStatus(current.status)};
  if (current.kind != V_JOB_BEGINS || hasHeading || line.empty())
    return {};
  hasHeading = true;
  return {LineStyle::Heading};
}

} // namespace desktop
