#include "catalogue/transformation_builder.h"

#include "catalogue/xml_text.h"
#include "report/messages.h"

#include <algorithm>
#include <array>

namespace catalogue {

namespace {

enum class Place { Document, Root, Record, Input, Parameters, Output, Location, Leaf, Unknown };

// What an element of that name does where it stands: when it begins, and when its text is complete.
struct Rule {
  Place parent;
  std::string_view name;
  Place place;
  void (*begin)(Transformation &record, const ElementStart &element) = nullptr;
  void (*end)(Transformation &record, std::string text) = nullptr;
};

void AddParameter(Transformation &record, const ElementStart &element) {
  const std::string expression = element.Attribute("expression");
  record.parameters.push_back(element.Attribute("name"));
  record.parameters.push_back(expression.empty() ? LoadMessage(report::MessageId::NoValue) : expression);
}

template <OutputLocationKind kind> void SetLocation(Transformation &record, const ElementStart &element) {
  record.output.outputLocation = kind;
  if (kind == OutputLocationKind::SameLocationAsSource)
    record.output.suffix = element.Attribute("suffix");
}

void SetOpenOutput(Transformation &record, const ElementStart &element) {
  const std::string in = element.Attribute("in");
  record.output.openOutput = in == "Vellis"           ? OpenOutputKind::Vellis
                             : in == "DefaultProgram" ? OpenOutputKind::DefaultProgram
                                                      : OpenOutputKind::None;
}

constexpr std::array rules = {
    Rule{Place::Unknown, "", Place::Unknown},
    Rule{Place::Document, "Transformations", Place::Root},
    Rule{Place::Root, "Transformation", Place::Record,
         [](Transformation &record, const ElementStart &) { record = Transformation(); }},
    Rule{Place::Record, "Name", Place::Leaf, nullptr,
         [](Transformation &record, std::string text) { record.name = std::move(text); }},
    Rule{Place::Record, "Input", Place::Input},
    // A path that was read earlier stays, should the instruction be wanted in the end.
    Rule{Place::Input, "UsePI", Place::Leaf, [](Transformation &record, const ElementStart &) { record.usePI = true; }},
    Rule{Place::Input, "XSLPath", Place::Leaf,
         [](Transformation &record, const ElementStart &) { record.usePI = false; },
         [](Transformation &record, std::string text) { record.xslPath = std::move(text); }},
    Rule{Place::Record, "Processor", Place::Leaf, nullptr,
         [](Transformation &record, std::string text) { record.processor = std::move(text); }},
    Rule{Place::Record, "Parameters", Place::Parameters,
         [](Transformation &record, const ElementStart &) { record.parameters.clear(); }},
    Rule{Place::Parameters, "Parameter", Place::Leaf, AddParameter},
    Rule{Place::Record, "Output", Place::Output},
    Rule{Place::Output, "OutputLocation", Place::Location},
    Rule{Place::Location, "DoNotSave", Place::Leaf, SetLocation<OutputLocationKind::DoNotSave>},
    Rule{Place::Location, "Prompt", Place::Leaf, SetLocation<OutputLocationKind::Prompt>},
    Rule{Place::Location, "DirPath", Place::Leaf, SetLocation<OutputLocationKind::DirPath>,
         [](Transformation &record, std::string text) { record.output.dirPath = std::move(text); }},
    Rule{Place::Location, "SameLocationAsSource", Place::Leaf, SetLocation<OutputLocationKind::SameLocationAsSource>},
    Rule{Place::Output, "OpenOutput", Place::Leaf, SetOpenOutput},
};

// The first rule stands for what is unknown.
size_t FindRule(Place parent, std::string_view name) {
  const auto found =
      std::ranges::find_if(rules, [&](const Rule &each) { return each.parent == parent && each.name == name; });
  return found == rules.end() ? 0 : static_cast<size_t>(found - rules.begin());
}

} // namespace

void TransformationBuilder::StartElement(const ElementStart &element) {
  const size_t index = FindRule(open.empty() ? Place::Document : rules[open.back()].place, element.name);
  open.push_back(static_cast<uint8_t>(index));
  if (rules[index].begin)
    rules[index].begin(record, element);
  if (index != 0)
    text.clear();
}

void TransformationBuilder::EndElement() {
  const Rule &rule = rules[open.back()];
  open.pop_back();
  if (rule.end)
    rule.end(record, Trim(text));
  if (rule.place == Place::Record && (record.name.empty() || names.insert(record.name).second))
    list.push_back(std::move(record));
}

} // namespace catalogue
