#include "host/log_place.h"

#include "kit/paths.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace host {

namespace {

struct Mark {
  std::string_view begin;
  LogKind kind;
  std::string_view end = {};
};
constexpr std::array marks = {
    Mark{"XSL Transformation Log", LogKind::Heading},
    Mark{"XSL Processor Messages", LogKind::Heading},
    Mark{"Transformation Successful", LogKind::Success},
    Mark{"Transformation Aborted", LogKind::Error},
    Mark{"Error at file ", LogKind::Error},
    Mark{"Fatal Error at file ", LogKind::Error},
    Mark{"Warning at file ", LogKind::Warning},
    // What is said instead of a run.
    Mark{"Cannot save ", LogKind::Error},
    Mark{"Cannot overwrite ", LogKind::Error},
    Mark{"Cannot find ", LogKind::Error},
    Mark{"Invalid ", LogKind::Error},
    Mark{"You cannot apply ", LogKind::Error},
    Mark{"There isn't ", LogKind::Error},
    Mark{"There aren't ", LogKind::Error},
    Mark{"There is no active ", LogKind::Error},
    Mark{"File doesn't exist ", LogKind::Error},
    Mark{"Folder ", LogKind::Error, " doesn't exist."},
    Mark{"Transformation ", LogKind::Error, " not found."},
    Mark{"XSLT pro", LogKind::Error, " Please check your XSLT processor preferences."},
};

int32_t ReadNumber(std::string_view text) {
  int32_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return std::max(number, 0);
}

std::optional<LogPlace> FindClientPlace(std::string_view line) {
  constexpr std::string_view before = " at file ";
  constexpr std::string_view lineWord = ", line ";
  constexpr std::string_view columnWord = ", char ";
  const size_t at = line.find(before);
  const size_t lineAt = line.find(lineWord, at == std::string_view::npos ? at : at + before.size());
  if (at == std::string_view::npos || lineAt == std::string_view::npos)
    return std::nullopt;
  const size_t begin = at + before.size();
  LogPlace place{kit::UrlToPath(line.substr(begin, lineAt - begin)), 0, 0, begin, lineAt};
  place.line = ReadNumber(line.substr(lineAt + lineWord.size()));
  if (const size_t columnAt = line.find(columnWord, lineAt); columnAt != std::string_view::npos)
    place.column = ReadNumber(line.substr(columnAt + columnWord.size()));
  return kit::IsAbsolutePath(place.path) ? std::optional(place) : std::nullopt;
}

// "/a/b.xml:3:7: message", anywhere in the line.
std::optional<LogPlace> FindPlainPlace(std::string_view line) {
  const size_t begin = line.starts_with('/') ? 0 : line.find(" /") + 1;
  if (begin == 0 && !line.starts_with('/'))
    return std::nullopt;
  for (size_t colon = line.find(':', begin); colon != std::string_view::npos; colon = line.find(':', colon + 1)) {
    const int32_t number = ReadNumber(line.substr(colon + 1));
    if (number == 0)
      continue;
    LogPlace place{std::string(line.substr(begin, colon - begin)), number, 0, begin, colon};
    if (const size_t next = line.find(':', colon + 1); next != std::string_view::npos)
      place.column = ReadNumber(line.substr(next + 1));
    return place;
  }
  return std::nullopt;
}

} // namespace

LogKind ClassifyLogLine(std::string_view line) {
  const auto mark = std::ranges::find_if(
      marks, [line](const Mark &each) { return line.starts_with(each.begin) && line.ends_with(each.end); });
  if (mark != marks.end())
    return mark->kind;
  return FindPlainPlace(line) ? LogKind::Error : LogKind::Plain;
}

std::optional<LogPlace> FindLogPlace(std::string_view line) {
  const std::optional<LogPlace> place = FindClientPlace(line);
  return place ? place : FindPlainPlace(line);
}

} // namespace host
