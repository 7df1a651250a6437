#include "processors/entity_resolver.h"

#include "kit/names.h"
#include "kit/request_builder.h"

#include <string>

namespace processors {

namespace {

std::string Quoted(const char *value) { return kit::QuoteValue(value ? value : ""); }

} // namespace

kit::HostString VLXSLTEntityResolverC::ResolveEntity(const char *publicId, const char *baseUri, const char *systemId) {
  const std::string request = "EntityResolver resolveentity -publicid " + Quoted(publicId) + " -baseuri " +
                              Quoted(baseUri) + " -systemid " + Quoted(systemId);
  const kit::TypedValues reply = kit::CallClient(kit::xmlUtilitiesName, request);
  const auto found = reply.Size() == 1 ? reply.String(0) : std::nullopt;
  return found ? kit::HostString::Copy(*found) : kit::HostString();
}

void VLXSLTEntityResolverC::Start(const char *baseFile) {
  V_ApiCallClient(kit::xmlUtilitiesName, ("EntityResolver start -basefile " + Quoted(baseFile)).c_str());
}

void VLXSLTEntityResolverC::End() { V_ApiCallClient(kit::xmlUtilitiesName, "EntityResolver end"); }

void VLXSLTEntityResolverC::Terminate() { V_ApiCallClient(kit::xmlUtilitiesName, "EntityResolver terminate"); }

} // namespace processors
