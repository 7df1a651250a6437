// Any lines as a console, among any events: links stay inside their lines. A line "\x01KIND SEVERITY STATUS
// LINE\tPATH\t TEXT" is an event, every other one a line of the console.
#include "host/desktop/log_lines.h"
#include "host/file_place.h"
#include "tests/fuzz/fuzzing.h"

#include <charconv>
#include <string>

namespace {

host::RunEvent MakeEvent(std::string_view text) {
  const std::vector<std::string_view> fields = fuzz::Split(text, '\t');
  const std::vector<std::string_view> numbers = fuzz::Split(fields[0], ' ');
  host::RunEvent event;
  int32_t *const places[] = {&event.kind, &event.severity, &event.status, &event.line};
  for (size_t index = 0; index < numbers.size() && index < std::size(places); ++index)
    std::from_chars(numbers[index].data(), numbers[index].data() + numbers[index].size(), *places[index]);
  event.path = fields.size() > 1 ? fields[1] : "";
  event.text = fields.size() > 2 ? fields[2] : "";
  return event;
}

void CheckPlace(std::string_view line) {
  const auto found = host::FindFilePlace(line);
  if (!found)
    return;
  fuzz::Require(found->begin < found->end && found->end < line.size(), "a place stands in its line");
  fuzz::Require(line.substr(found->begin, found->end - found->begin) == found->place.path, "a place names its file");
  fuzz::Require(found->place.line > 0 && found->place.column >= 0, "places count from 1");
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  desktop::LogLines lines;
  for (const std::string_view line : Split(input, '\n')) {
    if (line.starts_with('\x01')) {
      lines.TakeEvent(MakeEvent(line.substr(1)));
      continue;
    }
    CheckPlace(line);
    const desktop::LogLine shown = lines.TakeLine(line);
    Require(shown.linkBegin <= shown.linkEnd && shown.linkEnd <= line.size(), "a link stands in its line");
    Require(!shown.problem || *shown.problem < lines.Problems().size(), "a line shows a known problem");
    Require(shown.linkEnd == shown.linkBegin || shown.problem, "a link leads to a problem");
  }
}
