#include "catalogue/entity_sources.h"

#include "catalogue/xml_text.h"
#include "kit/paths.h"
#include "kit/read_file.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>

#include <string>
#include <utility>

namespace catalogue {

namespace {

using xercesc::XMLResourceIdentifier;

// A source that owns its text.
class TextSource : public xercesc::InputSource {
public:
  TextSource(std::string owned, const XMLCh *systemId) : xercesc::InputSource(systemId), text(std::move(owned)) {}
  [[nodiscard]] xercesc::BinInputStream *makeStream() const override {
    return xercesc::MemBufInputSource(reinterpret_cast<const XMLByte *>(text.data()), text.size(), getSystemId())
        .makeStream();
  }

private:
  std::string text;
};

class MissingSource : public xercesc::InputSource {
public:
  explicit MissingSource(const XMLCh *systemId) : xercesc::InputSource(systemId) {}
  [[nodiscard]] xercesc::BinInputStream *makeStream() const override { return nullptr; }
};

bool IsSchema(const XMLResourceIdentifier &resource) {
  const auto type = resource.getResourceIdentifierType();
  return type != XMLResourceIdentifier::ExternalEntity && type != XMLResourceIdentifier::UnKnown;
}

const XMLCh *SystemIdOf(const XMLResourceIdentifier &resource) {
  const XMLCh *location = resource.getSystemId() ? resource.getSystemId() : resource.getSchemaLocation();
  return location ? location : u"";
}

// Relative to the file that refers to it.
std::string LocalPath(const XMLResourceIdentifier &resource) {
  std::string path = kit::UrlToPath(ToUtf8(resource.getSystemId()));
  if (path.empty() || kit::IsAbsolutePath(path))
    return path;
  return kit::JoinPath(kit::FolderOf(kit::UrlToPath(ToUtf8(resource.getBaseURI()))), path);
}

} // namespace

xercesc::InputSource *NoEntities::resolveEntity(XMLResourceIdentifier *resource) {
  if (IsSchema(*resource))
    return new MissingSource(SystemIdOf(*resource));
  return new TextSource({}, SystemIdOf(*resource));
}

xercesc::InputSource *LocalEntities::resolveEntity(XMLResourceIdentifier *resource) {
  if (IsSchema(*resource))
    return NoEntities::resolveEntity(resource);
  const std::string path = LocalPath(*resource);
  kit::FileContent content = kit::ReadFile(path);
  if (content.error.empty())
    return new TextSource(std::move(content.bytes), ToUtf16(path).c_str());
  unread.insert(ToUtf8(SystemIdOf(*resource)));
  return NoEntities::resolveEntity(resource);
}

} // namespace catalogue
