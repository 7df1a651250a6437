#include "catalogue/serialize_transformations.h"

#include "catalogue/xml_library.h"
#include "kit/handle.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>

#include <array>
#include <cstdio>

namespace catalogue {

namespace {

using report::MessageId;
using xercesc::DOMDocument;
using xercesc::DOMElement;

struct ReleaseObject {
  template <class T> void operator()(T *object) const { object->release(); }
};
template <class T> using Released = kit::Handle<T, ReleaseObject{}>;

// ---- What cannot be written

// The first thing in the text that XML has no way to hold, described; empty when there is none.
std::string FindUnwritable(const std::string &text) {
  const auto wide = kit::ToUtf16Strict(text);
  if (!wide)
    return report::LoadMessage(MessageId::NotUtf8);
  for (const char16_t unit : *wide) {
    // Surrogates come in pairs after the conversion.
    if ((unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r') || unit >= 0xFFFE) {
      std::array<char, 8> name{};
      std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(unit));
      return name.data();
    }
  }
  return {};
}

struct Field {
  MessageId name;
  const std::string &text;
};

// Caught here, because the serializer would write it and no reader would take the file again.
bool CheckWritable(const Transformation &record) {
  std::vector<Field> fields = {{MessageId::FieldName, record.name},
                               {MessageId::FieldXsl, record.xslPath},
                               {MessageId::FieldProcessor, record.processor},
                               {MessageId::FieldFolder, record.output.dirPath},
                               {MessageId::FieldSuffix, record.output.suffix}};
  for (const std::string &parameter : record.parameters)
    fields.push_back({MessageId::FieldParameters, parameter});
  for (const Field &field : fields) {
    if (const std::string problem = FindUnwritable(field.text); !problem.empty()) {
      report::ReportProblem(MessageId::CannotHoldCharacter, {record.name, report::LoadMessage(field.name), problem});
      return false;
    }
  }
  return true;
}

// ---- The document

DOMElement &AppendElement(DOMElement &parent, const char16_t *name) {
  return *static_cast<DOMElement *>(parent.appendChild(parent.getOwnerDocument()->createElement(name)));
}

// An empty text still stands in the element, so that it is written with a start and an end tag.
DOMElement &AppendText(DOMElement &parent, const char16_t *name, std::string_view text = {}) {
  DOMElement &element = AppendElement(parent, name);
  element.appendChild(parent.getOwnerDocument()->createTextNode(ToUtf16(text).c_str()));
  return element;
}

void WriteParameters(DOMElement &parent, const std::vector<std::string> &parameters, const std::string &noValue) {
  DOMElement &element = AppendElement(parent, u"Parameters");
  for (size_t at = 0; at < parameters.size(); at += 2) {
    const std::string_view expression = at + 1 < parameters.size() ? parameters[at + 1] : std::string_view();
    DOMElement &parameter = AppendElement(element, u"Parameter");
    parameter.setAttribute(u"expression", ToUtf16(expression == noValue ? std::string_view() : expression).c_str());
    parameter.setAttribute(u"name", ToUtf16(parameters[at]).c_str());
  }
}

void WriteOutputLocation(DOMElement &parent, const TransformationOutput &output) {
  switch (output.outputLocation) {
  case OutputLocationKind::DoNotSave:
    AppendText(parent, u"DoNotSave");
    break;
  case OutputLocationKind::DirPath:
    AppendText(parent, u"DirPath", output.dirPath);
    break;
  case OutputLocationKind::SameLocationAsSource:
    AppendText(parent, u"SameLocationAsSource").setAttribute(u"suffix", ToUtf16(output.suffix).c_str());
    break;
  default:
    AppendText(parent, u"Prompt");
    break;
  }
}

const char16_t *OpenOutputName(OpenOutputKind kind) {
  switch (kind) {
  case OpenOutputKind::Vellis:
    return u"Vellis";
  case OpenOutputKind::DefaultProgram:
    return u"DefaultProgram";
  default:
    return u"";
  }
}

void WriteOutput(DOMElement &parent, const TransformationOutput &output) {
  DOMElement &element = AppendElement(parent, u"Output");
  WriteOutputLocation(AppendElement(element, u"OutputLocation"), output);
  AppendText(element, u"OpenOutput").setAttribute(u"in", OpenOutputName(output.openOutput));
}

void WriteTransformations(DOMElement &root, const TransformationList &list) {
  const std::string noValue = report::LoadMessage(MessageId::NoValue);
  for (const Transformation &record : list) {
    DOMElement &element = AppendElement(root, u"Transformation");
    AppendText(element, u"Name", record.name);
    DOMElement &input = AppendElement(element, u"Input");
    if (record.usePI)
      AppendText(input, u"UsePI");
    else
      AppendText(input, u"XSLPath", record.xslPath);
    AppendText(element, u"Processor", record.processor);
    WriteParameters(element, record.parameters, noValue);
    WriteOutput(element, record.output);
  }
}

// ---- Its bytes

void Configure(xercesc::DOMLSSerializer &serializer) {
  using xercesc::XMLUni;
  serializer.setNewLine(u"\r\n");
  using Feature = std::pair<const XMLCh *, bool>;
  const std::array features = {Feature{XMLUni::fgDOMWRTSplitCdataSections, false},
                               Feature{XMLUni::fgDOMWRTDiscardDefaultContent, true},
                               Feature{XMLUni::fgDOMWRTFormatPrettyPrint, true}, Feature{XMLUni::fgDOMWRTBOM, false}};
  xercesc::DOMConfiguration *configuration = serializer.getDomConfig();
  for (const auto &[feature, value] : features)
    if (configuration->canSetParameter(feature, value))
      configuration->setParameter(feature, value);
}

std::optional<std::string> Serialize(const TransformationList &list) {
  xercesc::DOMImplementation *library = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const auto serializer = Released<xercesc::DOMLSSerializer>::Adopt(library->createLSSerializer());
  const auto output = Released<xercesc::DOMLSOutput>::Adopt(library->createLSOutput());
  Configure(*serializer.Get());

  const auto document = Released<DOMDocument>::Adopt(library->createDocument(nullptr, u"Transformations", nullptr));
  document.Get()->setXmlStandalone(true);
  document.Get()->setXmlVersion(u"1.0");
  WriteTransformations(*document.Get()->getDocumentElement(), list);

  // Into memory first: a full disk must be noticed, and the library does not say how much it wrote.
  xercesc::MemBufFormatTarget target;
  output.Get()->setEncoding(u"UTF-8");
  output.Get()->setByteStream(&target);
  if (!serializer.Get()->write(document.Get(), output.Get()))
    return std::nullopt;
  return std::string(reinterpret_cast<const char *>(target.getRawBuffer()), target.getLen());
}

} // namespace

std::optional<std::string> SerializeTransformations(const TransformationList &list) {
  for (const Transformation &record : list)
    if (!CheckWritable(record))
      return std::nullopt;
  std::optional<std::string> bytes;
  const std::optional<std::string> reason =
      CatchXmlErrors([&] { bytes = Serialize(list); }, report::LoadMessage(MessageId::OutOfMemory));
  if (!bytes)
    report::ReportProblem(MessageId::TransformationFileNotWritten, {reason.value_or("")});
  return bytes;
}

} // namespace catalogue
