// Any bytes as a stylesheet: its parameters are found, or what is wrong is reported, the same way each time.
#include "catalogue/stylesheet_parameters.h"
#include "report/transformation_log.h"
#include "tests/fuzz/client_site.h"
#include "tests/fuzz/fuzzing.h"

void fuzz::RunInput(std::string_view input) {
  ClientSite &site = ClientSite::Get();
  site.Keep("other.ent", "<xsl:param xmlns:xsl='http://www.w3.org/1999/XSL/Transform' name='e'/>");
  const std::string path = site.folder.Write("in.xsl", input);
  const auto read = catalogue::ReadStylesheetParameters(path);
  const std::string log = report::LogText();
  Require(read.list && read.list->size() % 2 == 0, "every parameter has its expression");
  Require(read.isRead || (read.list->empty() && !log.empty()), "what is wrong is reported");
  for (const std::string &text : *read.list)
    Require(IsUtf8(text), "texts are UTF-8");
  report::ResetLog(false);
  const auto again = catalogue::ReadStylesheetParameters(path);
  Require(again.list == read.list && again.isRead == read.isRead && report::LogText() == log,
          "a second reading is like the first");
  site.EndInput();
}
