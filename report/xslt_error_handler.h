// Turns diagnostics into lines of the transformation log. Process-wide, on the host's thread.
#ifndef REPORT_XSLT_ERROR_HANDLER_H
#define REPORT_XSLT_ERROR_HANDLER_H

#include <cstdint>

namespace report {

class XSLTErrorHandler {
public:
  [[nodiscard]] static XSLTErrorHandler &GetInst();
  virtual ~XSLTErrorHandler() = default;

  // The system identifier is shown as a platform path where it is one; the public identifier is not shown. Strings may
  // be null. `code` is the processor's own for the problem, as "XTDE0030". Line and column are printed as given, -1
  // included.
  void ReportFatalError(const char *message, const char *publicId, const char *systemId, int32_t line, int32_t column,
                        const char *code = nullptr);
  void ReportError(const char *message, const char *publicId, const char *systemId, int32_t line, int32_t column,
                   const char *code = nullptr);
  void ReportWarn(const char *message, const char *publicId, const char *systemId, int32_t line, int32_t column,
                  const char *code = nullptr);
  // Nothing for an empty or null message.
  void ReportMessage(const char *message);
};

} // namespace report

#endif
