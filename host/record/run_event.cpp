#include "host/record/run_event.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {

std::string OrEmpty(const char *text) { return text ? text : ""; }

std::optional<std::string> OrNothing(const char *text) {
  return text ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace

RunEvent ReadRunEvent(const V_RunEventT &event) {
  V_RunEventT known{};
  std::memcpy(&known, &event, std::min<size_t>(event.size, sizeof(known)));
  return {known.kind,
          known.job,
          known.count,
          known.status,
          known.severity,
          known.outputKind,
          known.line,
          known.column,
          OrEmpty(known.path),
          OrNothing(known.stylesheet),
          OrEmpty(known.processor),
          OrNothing(known.output),
          OrEmpty(known.code),
          OrEmpty(known.text)};
}

} // namespace host
