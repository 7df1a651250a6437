#include "catalogue/xml_library.h"

#include "catalogue/location.h"
#include "catalogue/shut_down.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <utility>

namespace catalogue {

namespace {

std::optional<bool> &IsStarted() {
  static std::optional<bool> started;
  return started;
}

// False and a message in the log when the library throws.
template <class Body> bool TryReporting(const Body &body) {
  const std::optional<std::string> problem = CatchXmlErrors(body, report::LoadMessage(report::MessageId::OutOfMemory));
  if (problem)
    report::ReportProblem(*problem);
  return !problem;
}

} // namespace

bool StartXmlLibrary() {
  if (!IsStarted())
    IsStarted() = TryReporting([] { xercesc::XMLPlatformUtils::Initialize(); });
  return *IsStarted();
}

void ShutDownCatalogue() noexcept {
  if (std::exchange(IsStarted(), std::nullopt).value_or(false))
    TryReporting([] { xercesc::XMLPlatformUtils::Terminate(); });
  ForgetDefaultTransformationFile();
}

} // namespace catalogue
