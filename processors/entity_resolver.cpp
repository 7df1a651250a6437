#include "processors/entity_resolver.h"

#include <string>

namespace processors {

namespace {

constexpr const char *client = "XmlUtilities";

std::string Quoted(const char *value) { return '"' + std::string(value ? value : "") + '"'; }

} // namespace

kit::HostString VLXSLTEntityResolverC::ResolveEntity(const char *publicId, const char *baseUri, const char *systemId) {
  const std::string request = "EntityResolver resolveentity -publicid " + Quoted(publicId) + " -baseuri " +
                              Quoted(baseUri) + " -systemid " + Quoted(systemId);
  const kit::TypedValues reply = kit::CallClient(client, request);
  const auto found = reply.Size() == 1 ? reply.String(0) : std::nullopt;
  return found ? kit::HostString::Copy(*found) : kit::HostString();
}

void VLXSLTEntityResolverC::Start(const char *baseFile) {
  V_ApiCallClient(client, ("EntityResolver start -basefile " + Quoted(baseFile)).c_str());
}

void VLXSLTEntityResolverC::End() { V_ApiCallClient(client, "EntityResolver end"); }

void VLXSLTEntityResolverC::Terminate() { V_ApiCallClient(client, "EntityResolver terminate"); }

} // namespace processors
