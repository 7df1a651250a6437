// What happens during a run, as the client reported it: see V_RunEventT in kit/vdk.h for what each event carries.
#ifndef HOST_RECORD_RUN_EVENT_H
#define HOST_RECORD_RUN_EVENT_H

#include "kit/vdk.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host {

struct RunEvent {
  int32_t kind = 0; // V_RUN_..., V_JOB_...
  int32_t job = -1;
  int32_t count = 0;
  int32_t status = 0;     // V_JOB_DONE and so on
  int32_t severity = 0;   // V_SEVERITY_...
  int32_t outputKind = 0; // V_OUTPUT_...
  int32_t line = 0;
  int32_t column = 0;
  std::string path = {};
  std::optional<std::string> stylesheet = {};
  std::string processor = {};
  std::optional<std::string> output = {};
  std::string code = {};
  std::string text = {};
};

// Members that an older client does not know are empty.
[[nodiscard]] RunEvent ReadRunEvent(const V_RunEventT &event);

// Hears the events of a session's runs, on the host's thread. Must not throw.
class RunListener {
public:
  virtual ~RunListener() = default;
  virtual void OnRunEvent(const RunEvent &event) = 0;
};

} // namespace host

#endif
