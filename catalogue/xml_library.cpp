#include "catalogue/xml_library.h"

#include "catalogue/shut_down.h"
#include "catalogue/state.h"
#include "catalogue/xml_text.h"
#include "report/xslt_error_handler.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <memory>

namespace catalogue {

namespace {

template <class Reader> std::unique_ptr<Reader> &Instance() {
  static std::unique_ptr<Reader> instance;
  return instance;
}

template <class Reader> Reader &InstanceOnFirstUse() {
  std::unique_ptr<Reader> &instance = Instance<Reader>();
  if (!instance)
    instance = std::make_unique<Reader>();
  return *instance;
}

void Report(const xercesc::XMLException &exception) {
  report::XSLTErrorHandler::GetInst().ReportMessage(ToUtf8(exception.getMessage()).c_str());
}

} // namespace

XmlLibraryUser::XmlLibraryUser() {
  try {
    xercesc::XMLPlatformUtils::Initialize();
    ready = true;
  } catch (const xercesc::XMLException &exception) {
    Report(exception);
  }
}

XmlLibraryUser::~XmlLibraryUser() {
  try {
    if (ready)
      xercesc::XMLPlatformUtils::Terminate();
  } catch (const xercesc::XMLException &exception) {
    Report(exception);
  }
}

TransformationScenarioReader &TransformationScenarioReader::GetInstance() {
  return InstanceOnFirstUse<TransformationScenarioReader>();
}

StylesheetParameterReader &StylesheetParameterReader::GetInstance() {
  return InstanceOnFirstUse<StylesheetParameterReader>();
}

void ShutDownCatalogue() noexcept {
  Instance<TransformationScenarioReader>().reset();
  Instance<StylesheetParameterReader>().reset();
  ForgetDefaultTransformationFile();
}

} // namespace catalogue
