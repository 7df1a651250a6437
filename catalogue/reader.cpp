#include "catalogue/reader.h"

#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/parse_file.h"
#include "catalogue/transformation_builder.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"

#include <functional>

namespace catalogue {

namespace {

constexpr std::string_view rootName = "Transformations";

class ElementCounter : public ElementHandler {
public:
  void StartElement(const ElementStart &element) override { count += element.name == "Transformation" ? 1U : 0U; }
  size_t count = 0;
};

bool HasCatalogueRoot(const std::string &file, const std::string &bytes) {
  return FindRootName(file, bytes) == rootName;
}

// A file of another kind: whether it is XML at all is worth saying.
void ReadOther(const std::string &file, const std::string &bytes, LoadResult &result) {
  ElementCounter counter;
  (void)ParseBytes(file, bytes, counter, Diagnostics::Report);
  result.status = LoadStatus::NotATransformationFile;
  result.elementCount = counter.count;
}

void ReadCatalogue(const std::string &file, const std::string &bytes, LoadResult &result) {
  TransformationBuilder builder;
  const std::string schema = kit::GetString(V_SESSION, V_SP_INSTALL_DIR) + "vlinit/XSLT/Transformations.xsd";
  const ParseResult parsed = ParseWithSchema(file, bytes, schema, builder);
  if (parsed == ParseResult::Whole) {
    result.list = builder.TakeList();
    result.status = LoadStatus::Loaded;
    return;
  }
  result.isUnreadable = parsed == ParseResult::NoSchema;
  if (parsed == ParseResult::Unbounded)
    result.status = LoadStatus::NotATransformationFile;
  ElementCounter counter;
  (void)ParseBytes(file, bytes, counter, Diagnostics::Drop);
  result.elementCount = counter.count;
}

LoadResult Parse(const std::string &file, const std::string &bytes) {
  LoadResult result;
  result.fingerprint = std::hash<std::string>()(bytes);
  result.isEmpty = bytes.empty();
  if (result.isEmpty)
    result.status = LoadStatus::NotATransformationFile;
  else if (!StartXmlLibrary())
    result.isUnreadable = true;
  else if (HasCatalogueRoot(file, bytes))
    ReadCatalogue(file, bytes, result);
  else
    ReadOther(file, bytes, result);
  return result;
}

// What is known of the file without its bytes.
LoadResult WithoutBytes(LoadStatus status, bool isUnreadable) {
  LoadResult result;
  result.status = status;
  result.isUnreadable = isUnreadable;
  return result;
}

} // namespace

void ReloadTransformationFile(const std::string &path, std::optional<LoadResult> &last) {
  const std::string file = LocalCopy(ResolvePath(path));
  if (path.empty() || !kit::IsFile(file)) {
    last = WithoutBytes(path.empty() ? LoadStatus::NotLoaded : LoadStatus::FileMissing, false);
    return;
  }
  const auto bytes = ReadBytes(file);
  if (!bytes)
    last = WithoutBytes(LoadStatus::NotATransformationFile, true);
  else if (!last || last->fingerprint != std::hash<std::string>()(*bytes))
    last = Parse(file, *bytes);
}

LoadResult LoadTransformationFile(const std::string &path) {
  std::optional<LoadResult> loaded;
  ReloadTransformationFile(path, loaded);
  return std::move(*loaded);
}

bool IsTransformationFile(const std::string &path) {
  const std::string file = LocalCopy(ResolvePath(path));
  const auto bytes = kit::IsFile(file) && StartXmlLibrary() ? ReadBytes(file) : std::nullopt;
  return bytes && !bytes->empty() && HasCatalogueRoot(file, *bytes);
}

} // namespace catalogue
