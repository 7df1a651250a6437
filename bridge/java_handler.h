// What Java reports while it works, on its way to the log and to the entity resolver. The methods run on the host's
// thread; the natives through which Java reaches them wait until they are done.
#ifndef BRIDGE_JAVA_HANDLER_H
#define BRIDGE_JAVA_HANDLER_H

#include <cstdint>
#include <string>

namespace VLXSLT {

class VLXSLTJavaHandlerImpl {
public:
  [[nodiscard]] static VLXSLTJavaHandlerImpl &GetInstance();

  void FatalError(const std::string &message, const std::string &publicId, const std::string &systemId,
                  int32_t lineNumber, int32_t columnNumber);
  void Error(const std::string &message, const std::string &publicId, const std::string &systemId, int32_t lineNumber,
             int32_t columnNumber);
  void Warning(const std::string &message, const std::string &publicId, const std::string &systemId, int32_t lineNumber,
               int32_t columnNumber);
  void Message(const std::string &message);
  // Empty when it is not resolved.
  [[nodiscard]] std::string ResolveEntity(const std::string &name, const std::string &publicId,
                                          const std::string &baseURI, const std::string &systemId);
  void StartDocument(const std::string &filePath);
  void EndDocument();
};

} // namespace VLXSLT

#endif
