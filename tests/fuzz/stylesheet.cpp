// Any bytes as a stylesheet: its parameters are found, or what is wrong is reported, the same way each time.
#include "catalogue/stylesheet_parameters.h"
#include "report/transformation_log.h"
#include "tests/fuzz/client_site.h"
#include "tests/fuzz/fuzzing.h"

#include <utility>

namespace {

struct Outcome {
  catalogue::StylesheetParameters read;
  std::string log;
};

Outcome Read(const std::string &path) {
  report::ResetLog(false);
  catalogue::StylesheetParameters read = catalogue::ReadStylesheetParameters(path);
  return {std::move(read), report::LogText()};
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  ClientSite &site = ClientSite::Get();
  site.Keep("other.ent", "<xsl:param xmlns:xsl='http://www.w3.org/1999/XSL/Transform' name='e'/>");
  const std::string path = site.folder.Write("in.xsl", input);
  const auto [read, log] = Read(path);
  Require(read.list && read.list->size() % 2 == 0, "every parameter has its expression");
  Require(read.isRead || (read.list->empty() && !log.empty()), "what is wrong is reported");
  for (const std::string &text : *read.list)
    Require(IsUtf8(text), "texts are UTF-8");
  const Outcome again = Read(path);
  Require(again.read.list == read.list && again.read.isRead == read.isRead && again.log == log,
          "a second reading is like the first");
  site.EndInput();
}
