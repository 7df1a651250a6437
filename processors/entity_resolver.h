// Hands entity look-ups of the processors to the host's client XmlUtilities. Process-wide, on the host's thread.
#ifndef PROCESSORS_ENTITY_RESOLVER_H
#define PROCESSORS_ENTITY_RESOLVER_H

#include "kit/values.h"
#include "processors/singleton.h"

namespace processors {

class VLXSLTEntityResolverC : public SingletonC<VLXSLTEntityResolverC> {
public:
  virtual ~VLXSLTEntityResolverC() = default;

  // Null when the client did not answer with exactly one string. Arguments may be null.
  [[nodiscard]] kit::HostString ResolveEntity(const char *publicId, const char *baseUri, const char *systemId);
  void Start(const char *baseFile);
  void End();
  void Terminate();
};

} // namespace processors

#endif
