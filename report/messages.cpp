#include "report/messages.h"

#include "kit/text.h"

extern "C" {
extern const std::byte vlxsltResourcesBegin[];
extern const std::byte vlxsltResourcesEnd[];
}

namespace report {

kit::Resources::Bytes ResourceImage() { return {vlxsltResourcesBegin, vlxsltResourcesEnd}; }

const kit::Resources &ClientResources() {
  static const kit::Resources resources = kit::Resources::Read(ResourceImage()).value_or(kit::Resources());
  return resources;
}

std::string LoadMessage(MessageId id) {
  return std::string(kit::Truncate(ClientResources().Text(static_cast<uint16_t>(id)), kit::maxTextSize));
}

std::string FormatMessage(MessageId id, std::initializer_list<std::string_view> values) {
  return kit::FillPlaceholders(LoadMessage(id), values);
}

} // namespace report
