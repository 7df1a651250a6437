#include "catalogue/stylesheet_parameters.h"

#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/parse_file.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"
#include "report/messages.h"

namespace catalogue {

namespace {

// Without a prefix: only local names count.
std::string LocalName(const ElementStart &element) {
  const size_t colon = element.name.find(':');
  return colon == std::string::npos ? element.name : element.name.substr(colon + 1);
}

class ParameterHandler : public ElementHandler {
public:
  void StartElement(const ElementStart &element) override {
    if (level == 0)
      isStylesheet = LocalName(element) == "stylesheet";
    else if (level == 1 && isStylesheet && LocalName(element) == "param")
      Add(element);
    ++level;
  }
  void EndElement() override { --level; }

  std::vector<std::string> list;

private:
  void Add(const ElementStart &element) {
    const std::string expression = element.Attribute("select");
    list.push_back(element.Attribute("name"));
    list.push_back(expression.empty() ? LoadMessage(report::MessageId::NoValue) : expression);
  }

  size_t level = 0;
  bool isStylesheet = false;
};

} // namespace

StylesheetParameters ReadStylesheetParameters(const std::string &xslPath) {
  const std::string path = LocalCopy(ResolvePath(xslPath));
  if (!kit::IsFile(path))
    return {};
  StylesheetParameters parameters{std::vector<std::string>(), false};
  const auto bytes = StartXmlLibrary() ? ReadBytes(path) : std::nullopt;
  ParameterHandler handler;
  parameters.isRead = bytes && ParseStylesheet(path, *bytes, handler);
  if (parameters.isRead)
    parameters.list = std::move(handler.list);
  return parameters;
}

std::optional<std::vector<std::string>> GetStylesheetParameters(const std::string &xslPath) {
  return ReadStylesheetParameters(xslPath).list;
}

} // namespace catalogue
