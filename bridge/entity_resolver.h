// Entity resolution by the host's client "XmlUtilities", which holds the catalogs. The bridge keeps none of its own: it
// says which documents are being read, asks where entities are, and says when a transformation is over. Host's thread.
#ifndef BRIDGE_ENTITY_RESOLVER_H
#define BRIDGE_ENTITY_RESOLVER_H

#include "kit/values.h"

namespace bridge {

template <class T> class SingletonC {
public:
  [[nodiscard]] static T *GetInstance() {
    static T m_Instance;
    return &m_Instance;
  }
};

class VLXSLTEntityResolverC : public SingletonC<VLXSLTEntityResolverC> {
public:
  virtual ~VLXSLTEntityResolverC() = default;

  // Null when nobody knows it. Arguments may be null, which reads as empty.
  [[nodiscard]] kit::HostString ResolveEntity(const char *publicId, const char *baseUri, const char *systemId);
  void Start(const char *baseFile);
  void End();
  // Once after every transformation: whatever is kept for it may go.
  void Terminate();
};

} // namespace bridge

#endif
