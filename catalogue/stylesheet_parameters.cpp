#include "catalogue/stylesheet_parameters.h"

#include "catalogue/dom_nodes.h"
#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/parse_file.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"
#include "report/messages.h"

namespace catalogue {

namespace {

using xercesc::DOMNode;

void ReadStylesheetParameters(const std::string &path, std::vector<std::string> &list) {
  const ParsedFilePtr parsed = ParseStylesheet(path);
  if (!parsed)
    return;
  const std::string noValue = LoadMessage(report::MessageId::NoValue);
  ForEachChild(*parsed->Document(), [&](const DOMNode &root) {
    if (GetLocalName(root) != "stylesheet")
      return;
    ForEachChild(root, [&](const DOMNode &child) {
      if (GetLocalName(child) != "param")
        return;
      const std::string expression = GetAttributeValue(child, u"select");
      list.push_back(GetAttributeValue(child, u"name"));
      list.push_back(expression.empty() ? noValue : expression);
    });
  });
}

} // namespace

std::optional<std::vector<std::string>> GetStylesheetParameters(const std::string &xslPath) {
  const std::string path = LocalCopy(ResolvePath(xslPath));
  if (!kit::IsFile(path))
    return std::nullopt;
  std::vector<std::string> list;
  if (StartXmlLibrary())
    ReadStylesheetParameters(path, list);
  return list;
}

} // namespace catalogue
