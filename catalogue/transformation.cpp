#include "catalogue/transformation.h"

#include <algorithm>

namespace catalogue {

int32_t FindTransformation(const TransformationList &list, std::string_view name) {
  if (name.empty())
    return -1;
  const auto found = std::ranges::find(list, name, &Transformation::name);
  return found == list.end() ? -1 : static_cast<int32_t>(found - list.begin());
}

void AppendTransformation(kit::TypedValues &reply, const Transformation &transformation) {
  kit::TypedValues input;
  input.AddInteger(transformation.usePI ? 1 : 0);
  input.AddString(transformation.xslPath);

  kit::TypedValues output;
  output.AddInteger(static_cast<int32_t>(transformation.output.outputLocation));
  output.AddString(transformation.output.dirPath);
  output.AddString(transformation.output.suffix);
  output.AddInteger(static_cast<int32_t>(transformation.output.openOutput));

  kit::TypedValues record;
  record.AddString(transformation.name);
  record.AddValues(std::move(input));
  record.AddString(transformation.processor);
  record.AddStrings(transformation.parameters);
  record.AddValues(std::move(output));
  reply.AddValues(std::move(record));
}

} // namespace catalogue
