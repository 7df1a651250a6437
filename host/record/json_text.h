// JSON as every file and every line of the host holds it: on one line, in UTF-8 whatever bytes a path brought along.
#ifndef HOST_RECORD_JSON_TEXT_H
#define HOST_RECORD_JSON_TEXT_H

#include <nlohmann/json.hpp>

#include <string>

namespace host {

using Json = nlohmann::ordered_json;

// Bytes that are not UTF-8 become replacement characters.
[[nodiscard]] inline std::string ToJsonText(const Json &value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace host

#endif
