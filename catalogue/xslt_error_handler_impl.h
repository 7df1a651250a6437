// Takes what the XML parser complains about, passes it on to XSLTErrorHandler and remembers that there was something.
// One for all parses, which must not overlap. Host's thread only.
#ifndef CATALOGUE_XSLT_ERROR_HANDLER_IMPL_H
#define CATALOGUE_XSLT_ERROR_HANDLER_IMPL_H

#include <xercesc/sax/ErrorHandler.hpp>

namespace catalogue {

// Drop: only the flag is kept, for a look at a file that is going to be read properly, or replaced.
enum class Diagnostics { Report, Drop };

class XSLTErrorHandlerImpl : public xercesc::ErrorHandler {
public:
  [[nodiscard]] static XSLTErrorHandlerImpl &GetInst();

  void warning(const xercesc::SAXParseException &problem) override;
  void error(const xercesc::SAXParseException &problem) override;
  void fatalError(const xercesc::SAXParseException &problem) override;
  void resetErrors() override { errorsSeen = false; }

  // Warnings count: a catalogue with a mere warning is rejected.
  [[nodiscard]] bool ErrorsSeen() const { return errorsSeen; }
  void SetDiagnostics(Diagnostics wanted) { diagnostics = wanted; }

private:
  bool errorsSeen = false;
  Diagnostics diagnostics = Diagnostics::Report;
};

} // namespace catalogue

#endif
