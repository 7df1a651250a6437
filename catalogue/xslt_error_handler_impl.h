// Takes what the XML parser complains about, passes it on to XSLTErrorHandler and remembers that there was something.
// One for all parses, which must not overlap. Host's thread only.
#ifndef CATALOGUE_XSLT_ERROR_HANDLER_IMPL_H
#define CATALOGUE_XSLT_ERROR_HANDLER_IMPL_H

#include "report/xslt_error_handler.h"

#include <xercesc/sax/ErrorHandler.hpp>

#include <cstdint>
#include <string>

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
  // What is going to be parsed; problems that come without a file are put down to it.
  void BeginFile(const std::string &path, Diagnostics wanted);

private:
  bool errorsSeen = false;
  using Report = void (report::XSLTErrorHandler::*)(const char *, const char *, const char *, int32_t, int32_t,
                                                    const char *);
  void Take(Report report, const xercesc::SAXParseException &problem);

  Diagnostics diagnostics = Diagnostics::Report;
  std::string file;
};

} // namespace catalogue

#endif
