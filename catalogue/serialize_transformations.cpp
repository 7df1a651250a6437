#include "catalogue/serialize_transformations.h"

#include "catalogue/xml_library.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <xercesc/framework/XMLFormatter.hpp>

#include <array>
#include <cstdio>
#include <initializer_list>
#include <utility>

namespace catalogue {

namespace {

using report::MessageId;
using xercesc::XMLFormatter;

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

class StringTarget : public xercesc::XMLFormatTarget {
public:
  explicit StringTarget(std::string &written) : bytes(written) {}
  void writeChars(const XMLByte *text, const XMLSize_t count, XMLFormatter *) override {
    bytes.append(reinterpret_cast<const char *>(text), count);
  }

private:
  std::string &bytes;
};

using Attribute = std::pair<const char16_t *, std::string_view>;

// Writes elements as they come, with nothing kept of a catalogue but its bytes. The library escapes.
class ElementWriter {
public:
  explicit ElementWriter(std::string &bytes)
      : target(bytes), formatter(u"UTF-8", u"1.0", &target, XMLFormatter::NoEscapes, XMLFormatter::UnRep_CharRef) {}

  void Write(const char16_t *markup) { formatter << XMLFormatter::NoEscapes << markup; }

  // A line of its own, and whatever stands in the element on lines of theirs.
  template <class Content> void Element(const char16_t *name, const Content &writeContent) {
    Open(name, {});
    ++depth;
    writeContent();
    --depth;
    NewLine();
    Close(name);
  }
  void Leaf(const char16_t *name, std::string_view text = {}, std::initializer_list<Attribute> attributes = {}) {
    Open(name, attributes);
    formatter << XMLFormatter::CharEscapes << ToUtf16(text).c_str();
    Close(name);
  }
  void Empty(const char16_t *name, std::initializer_list<Attribute> attributes = {}) {
    Start(name, attributes);
    Write(u"/>");
  }

private:
  void NewLine() {
    Write(u"\r\n");
    for (int level = 0; level < depth; ++level)
      Write(u"  ");
  }
  void Start(const char16_t *name, std::initializer_list<Attribute> attributes) {
    NewLine();
    Write(u"<");
    Write(name);
    for (const Attribute &attribute : attributes) {
      Write(u" ");
      Write(attribute.first);
      Write(u"=\"");
      formatter << XMLFormatter::AttrEscapes << ToUtf16(attribute.second).c_str();
      Write(u"\"");
    }
  }
  void Open(const char16_t *name, std::initializer_list<Attribute> attributes) {
    Start(name, attributes);
    Write(u">");
  }
  void Close(const char16_t *name) {
    Write(u"</");
    Write(name);
    Write(u">");
  }

  StringTarget target;
  XMLFormatter formatter;
  int depth = 1; // everything stands in the root
};

void WriteParameters(ElementWriter &writer, const std::vector<std::string> &parameters, std::string_view noValue) {
  if (parameters.empty()) {
    writer.Empty(u"Parameters");
    return;
  }
  writer.Element(u"Parameters", [&] {
    for (size_t at = 0; at < parameters.size(); at += 2) {
      const std::string_view expression = at + 1 < parameters.size() ? parameters[at + 1] : std::string_view();
      writer.Empty(u"Parameter", {{u"expression", expression == noValue ? std::string_view() : expression},
                                  {u"name", parameters[at]}});
    }
  });
}

void WriteOutputLocation(ElementWriter &writer, const TransformationOutput &output) {
  switch (output.outputLocation) {
  case OutputLocationKind::DoNotSave:
    writer.Leaf(u"DoNotSave");
    break;
  case OutputLocationKind::DirPath:
    writer.Leaf(u"DirPath", output.dirPath);
    break;
  case OutputLocationKind::SameLocationAsSource:
    writer.Leaf(u"SameLocationAsSource", {}, {{u"suffix", output.suffix}});
    break;
  default:
    writer.Leaf(u"Prompt");
  }
}

std::string_view OpenOutputName(OpenOutputKind kind) {
  switch (kind) {
  case OpenOutputKind::Vellis:
    return "Vellis";
  case OpenOutputKind::DefaultProgram:
    return "DefaultProgram";
  default:
    return "";
  }
}

void WriteTransformation(ElementWriter &writer, const Transformation &record, std::string_view noValue) {
  // A blank line sets each one off.
  writer.Write(u"\r\n");
  writer.Element(u"Transformation", [&] {
    writer.Leaf(u"Name", record.name);
    writer.Element(u"Input", [&] {
      if (record.usePI)
        writer.Leaf(u"UsePI");
      else
        writer.Leaf(u"XSLPath", record.xslPath);
    });
    writer.Leaf(u"Processor", record.processor);
    WriteParameters(writer, record.parameters, noValue);
    writer.Element(u"Output", [&] {
      writer.Element(u"OutputLocation", [&] { WriteOutputLocation(writer, record.output); });
      writer.Leaf(u"OpenOutput", {}, {{u"in", OpenOutputName(record.output.openOutput)}});
    });
  });
}

void Serialize(const TransformationList &list, std::string &bytes) {
  ElementWriter writer(bytes);
  writer.Write(u"<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?>\r\n");
  if (list.empty()) {
    writer.Write(u"<Transformations/>\r\n");
    return;
  }
  writer.Write(u"<Transformations>");
  const std::string noValue = report::LoadMessage(MessageId::NoValue);
  for (const Transformation &record : list)
    WriteTransformation(writer, record, noValue);
  writer.Write(u"\r\n\r\n</Transformations>\r\n");
}

} // namespace

// Into memory first: a file is only begun when everything can be written.
std::optional<std::string> SerializeTransformations(const TransformationList &list) {
  for (const Transformation &record : list)
    if (!CheckWritable(record))
      return std::nullopt;
  std::string bytes;
  const std::optional<std::string> reason =
      CatchXmlErrors([&] { Serialize(list, bytes); }, report::LoadMessage(MessageId::OutOfMemory));
  if (!reason)
    return bytes;
  report::ReportProblem(MessageId::TransformationFileNotWritten, {*reason});
  return std::nullopt;
}

} // namespace catalogue
