#include "tests/unit/catalogue_fixture.h"

#include "catalogue/shut_down.h"

#include <filesystem>

namespace fs = std::filesystem;

CatalogueTest::CatalogueTest() {
  install = Path("Prögramme 'of' 100% \"x\" #1/");
  fs::create_directories(install + "vlinit/XSLT");
  fs::copy_file(VLXSLT_SCHEMA, install + "vlinit/XSLT/Transformations.xsd");
  host.strings[{V_SESSION, V_SP_INSTALL_DIR}] = install;
  host.strings[{V_SESSION, V_SP_STRUCTURE_DIR}] = root + "/structure";
}

CatalogueTest::~CatalogueTest() { catalogue::ShutDownCatalogue(); }

bool IsInstalled(std::string_view processor) { return processor == "Saxon"; }

std::string Catalogue(const std::string &content) { return "<Transformations>" + content + "</Transformations>"; }

std::string Element(const std::string &name) {
  return "<Transformation><Name>" + name + "</Name><Input><XSLPath>" + name +
         ".xsl</XSLPath></Input><Processor>Saxon</Processor></Transformation>";
}

catalogue::Transformation MakeTransformation(const std::string &name) {
  catalogue::Transformation made;
  made.name = name;
  made.xslPath = "new.xsl";
  made.processor = "Saxon";
  return made;
}

std::vector<std::string> NamesOf(const std::optional<catalogue::TransformationList> &list) {
  std::vector<std::string> names;
  for (const catalogue::Transformation &each : list.value_or(catalogue::TransformationList()))
    names.push_back(each.name);
  return names;
}
