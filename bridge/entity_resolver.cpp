#include "bridge/entity_resolver.h"

#include "kit/text.h"

namespace bridge {

namespace {

constexpr const char *resolvingClient = "XmlUtilities";

std::string_view OrEmpty(const char *text) { return text ? text : ""; }

} // namespace

kit::HostString VLXSLTEntityResolverC::ResolveEntity(const char *publicId, const char *baseUri, const char *systemId) {
  const std::string request =
      kit::FillPlaceholders("EntityResolver resolveentity -publicid \"%0\" -baseuri \"%1\" -systemid \"%2\"",
                            {OrEmpty(publicId), OrEmpty(baseUri), OrEmpty(systemId)});
  const kit::TypedValues reply = kit::CallClient(resolvingClient, request);
  const auto path = reply.Size() == 1 ? reply.String(0) : std::nullopt;
  return path ? kit::HostString::Copy(*path) : kit::HostString();
}

void VLXSLTEntityResolverC::Start(const char *baseFile) {
  const std::string request = kit::FillPlaceholders("EntityResolver start -basefile \"%0\"", {OrEmpty(baseFile)});
  V_ApiCallClient(resolvingClient, request.c_str());
}

void VLXSLTEntityResolverC::End() { V_ApiCallClient(resolvingClient, "EntityResolver end"); }

void VLXSLTEntityResolverC::Terminate() { V_ApiCallClient(resolvingClient, "EntityResolver terminate"); }

} // namespace bridge
