#include "catalogue/reader.h"

#include "catalogue/dom_nodes.h"
#include "catalogue/location.h"
#include "catalogue/network.h"
#include "catalogue/parse_file.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"
#include "report/messages.h"

#include <array>
#include <filesystem>
#include <unordered_set>

namespace catalogue {

namespace {

using xercesc::DOMNode;

// What a reader does with the children of one element: by name, others are passed over.
template <class Record> struct ChildReader {
  std::string_view name;
  void (*read)(const DOMNode &child, Record &record);
};

template <class Record, size_t Count>
void ReadChildren(const DOMNode &parent, Record &record, const std::array<ChildReader<Record>, Count> &readers) {
  ForEachChild(parent, [&](const DOMNode &child) {
    const std::string name = GetNodeName(child);
    for (const ChildReader<Record> &reader : readers)
      if (reader.name == name)
        reader.read(child, record);
  });
}

void ReadInput(const DOMNode &element, Transformation &record) {
  // A path that was read earlier stays, should the instruction be wanted in the end.
  static constexpr std::array readers = {
      ChildReader<Transformation>{"XSLPath",
                                  [](const DOMNode &child, Transformation &read) {
                                    read.usePI = false;
                                    read.xslPath = GetNodeText(child);
                                  }},
      ChildReader<Transformation>{"UsePI", [](const DOMNode &, Transformation &read) { read.usePI = true; }}};
  ReadChildren(element, record, readers);
}

void ReadParameters(const DOMNode &element, Transformation &record) {
  static constexpr std::array readers = {ChildReader<Transformation>{
      "Parameter", [](const DOMNode &child, Transformation &read) {
        const std::string expression = GetAttributeValue(child, u"expression");
        read.parameters.push_back(GetAttributeValue(child, u"name"));
        read.parameters.push_back(expression.empty() ? LoadMessage(report::MessageId::NoValue) : expression);
      }}};
  record.parameters.clear();
  ReadChildren(element, record, readers);
}

void ReadOutputLocation(const DOMNode &element, TransformationOutput &output) {
  using Kind = OutputLocationKind;
  using Reader = ChildReader<TransformationOutput>;
  static constexpr std::array readers = {
      Reader{"DoNotSave", [](const DOMNode &, TransformationOutput &read) { read.outputLocation = Kind::DoNotSave; }},
      Reader{"Prompt", [](const DOMNode &, TransformationOutput &read) { read.outputLocation = Kind::Prompt; }},
      Reader{"DirPath",
             [](const DOMNode &child, TransformationOutput &read) {
               read.outputLocation = Kind::DirPath;
               read.dirPath = GetNodeText(child);
             }},
      Reader{"SameLocationAsSource", [](const DOMNode &child, TransformationOutput &read) {
               read.outputLocation = Kind::SameLocationAsSource;
               read.suffix = GetAttributeValue(child, u"suffix");
             }}};
  ReadChildren(element, output, readers);
}

void ReadOpenOutput(const DOMNode &element, TransformationOutput &output) {
  const std::string in = GetAttributeValue(element, u"in");
  output.openOutput = in == "Vellis"           ? OpenOutputKind::Vellis
                      : in == "DefaultProgram" ? OpenOutputKind::DefaultProgram
                                               : OpenOutputKind::None;
}

void ReadOutput(const DOMNode &element, Transformation &record) {
  static constexpr std::array readers = {ChildReader<TransformationOutput>{"OutputLocation", ReadOutputLocation},
                                         ChildReader<TransformationOutput>{"OpenOutput", ReadOpenOutput}};
  ReadChildren(element, record.output, readers);
}

Transformation ReadTransformation(const DOMNode &element) {
  using Reader = ChildReader<Transformation>;
  static constexpr std::array readers = {
      Reader{"Name", [](const DOMNode &child, Transformation &read) { read.name = GetNodeText(child); }},
      Reader{"Input", ReadInput},
      Reader{"Processor", [](const DOMNode &child, Transformation &read) { read.processor = GetNodeText(child); }},
      Reader{"Parameters", ReadParameters}, Reader{"Output", ReadOutput}};
  Transformation record;
  ReadChildren(element, record, readers);
  return record;
}

bool HasCatalogueRoot(ParsedFile *parsed) {
  bool found = false;
  if (parsed && parsed->Document())
    ForEachChild(*parsed->Document(), [&](const DOMNode &node) { found |= GetNodeName(node) == "Transformations"; });
  return found;
}

bool ReadTransformations(const std::string &path, const std::string &schemaPath, TransformationList &list) {
  const ParsedFilePtr parsed = ParseFile(path, schemaPath);
  if (!parsed || !parsed->Document())
    return false;
  std::unordered_set<std::string> names;
  ForEachChild(*parsed->Document(), [&](const DOMNode &root) {
    if (GetNodeName(root) != "Transformations")
      return;
    ForEachChild(root, [&](const DOMNode &child) {
      if (GetNodeName(child) != "Transformation")
        return;
      Transformation record = ReadTransformation(child);
      // Of several with one name the first counts; those without a name are all kept.
      if (record.name.empty() || names.insert(record.name).second)
        list.push_back(std::move(record));
    });
  });
  return true;
}

} // namespace

bool HasContents(const std::string &path) {
  std::error_code error;
  return std::filesystem::file_size(path, error) != 0 && !error;
}

LoadResult LoadTransformationFile(const std::string &path) {
  if (path.empty())
    return {};
  const std::string file = LocalCopy(ResolvePath(path));
  if (!kit::IsFile(file))
    return {std::nullopt, LoadStatus::FileMissing};
  if (!HasContents(file) || !StartXmlLibrary())
    return {std::nullopt, LoadStatus::NotATransformationFile};
  // A file that breaks off has been reported already; the second parse would only say so again.
  if (const ParsedFilePtr parsed = ParseFile(file, {}); !HasCatalogueRoot(parsed.get()))
    return {std::nullopt, LoadStatus::NotATransformationFile};
  if (ParseErrorsSeen())
    return {};
  LoadResult result;
  TransformationList list;
  if (ReadTransformations(file, kit::GetString(V_SESSION, V_SP_INSTALL_DIR) + "vlinit/XSLT/Transformations.xsd",
                          list)) {
    result.list = std::move(list);
    result.status = LoadStatus::Loaded;
  }
  return result;
}

bool IsTransformationFile(const std::string &path) {
  const std::string file = LocalCopy(ResolvePath(path));
  if (!kit::IsFile(file) || !HasContents(file) || !StartXmlLibrary())
    return false;
  return HasCatalogueRoot(ParseFile(file, {}, Diagnostics::Drop).get());
}

} // namespace catalogue
