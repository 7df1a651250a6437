// Transformations of any texts, added to a catalogue one after the other: the file holds what was added, or stays as it
// was. Fields end at a zero byte, records at "\x1e".
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "catalogue/xml_text.h"
#include "report/messages.h"
#include "tests/fuzz/client_site.h"
#include "tests/fuzz/fuzzing.h"

#include <array>
#include <string>

namespace {

using catalogue::OutputLocationKind;
using catalogue::Transformation;

Transformation MakeRecord(std::string_view text) {
  const std::vector<std::string_view> fields = fuzz::Split(text, '\0');
  const auto field = [&](size_t index) { return std::string(index < fields.size() ? fields[index] : ""); };
  const auto number = [&](size_t index, int count) {
    const std::string digits = field(index);
    return digits.empty() ? 0 : static_cast<unsigned char>(digits[0]) % count;
  };
  Transformation record;
  record.name = field(0);
  record.xslPath = field(1);
  record.processor = field(2);
  record.usePI = number(3, 2) == 1;
  record.output.outputLocation = static_cast<OutputLocationKind>(number(4, 4));
  record.output.openOutput = static_cast<catalogue::OpenOutputKind>(number(5, 3));
  record.output.dirPath = field(6);
  record.output.suffix = field(7);
  for (size_t index = 8; index + 1 < fields.size(); index += 2)
    record.parameters.insert(record.parameters.end(), {field(index), field(index + 1)});
  return record;
}

// As the file says it: texts without blanks around them, and only what is used.
Transformation AsRead(Transformation record) {
  for (std::string *text :
       {&record.name, &record.xslPath, &record.processor, &record.output.dirPath, &record.output.suffix})
    *text = catalogue::Trim(*text);
  for (std::string &text : record.parameters)
    text = catalogue::Trim(text);
  for (size_t index = 1; index < record.parameters.size(); index += 2)
    if (record.parameters[index].empty())
      record.parameters[index] = report::LoadMessage(report::MessageId::NoValue);
  if (record.usePI)
    record.xslPath.clear();
  if (record.output.outputLocation != OutputLocationKind::DirPath)
    record.output.dirPath.clear();
  if (record.output.outputLocation != OutputLocationKind::SameLocationAsSource)
    record.output.suffix.clear();
  return record;
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  ClientSite &site = ClientSite::Get();
  const std::string path = site.folder.Path("catalogue.xml");
  catalogue::TransformationList expected;
  for (const std::string_view text : Split(input.substr(0, 1 << 14), '\x1e')) {
    const std::string before = site.folder.Read("catalogue.xml");
    const Transformation record = MakeRecord(text);
    const auto result = catalogue::AddTransformation(path, record, [](std::string_view) { return true; });
    if (result != catalogue::EditResult::Saved) {
      Require(site.folder.Read("catalogue.xml") == before, "what fails leaves the file as it was");
      continue;
    }
    Transformation read = AsRead(record);
    if (const int32_t index = catalogue::FindTransformation(expected, read.name); index >= 0)
      expected[static_cast<size_t>(index)] = std::move(read);
    else
      expected.push_back(std::move(read));
    const auto loaded = catalogue::LoadTransformationFile(path);
    Require(loaded.list.has_value(), "what was saved can be read");
    Require(*loaded.list == expected, "what was saved is what was added");
  }
  site.EndInput();
}
