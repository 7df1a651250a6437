// A client that plays back what it is told, to see how a host treats its clients.
#include "kit/text.h"
#include "kit/values.h"

#include <string>

int32_t V_ClientAttach(const V_HostT *host) { return V_AttachHost(host); }

void V_ClientInitialize() {
  V_ApiRequestNotification(V_NOTIFY_CALL_CLIENT, 1);
  V_ApiWriteConsole("initialised");
}

namespace {

void Reply(const std::string &text) {
  kit::TypedValues reply;
  reply.AddString(text);
  V_ApiReturnTypedVals(reply.Release());
}

// Asks itself again, one letter shorter each time, and answers with every answer on the way.
void Nest(const std::string &rest) {
  // What is returned before the nested request must not get lost in it.
  Reply("lost");
  std::string answer = rest;
  if (!rest.empty())
    answer += "(" + kit::CallClient("XSLT", "nest " + rest.substr(1)).String(0).value_or("nothing") + ")";
  Reply(answer);
}

} // namespace

void V_ClientNotify(int32_t notification, V_ObjectT object, const char *text, int32_t) {
  const std::string request = notification == V_NOTIFY_CALL_CLIENT && object == V_SESSION ? text : "";
  if (request.starts_with("nest "))
    Nest(request.substr(5));
  else if (request == "deaf")
    V_ApiRequestNotification(V_NOTIFY_CALL_CLIENT, 0);
  else if (request == "error")
    V_ApiSetError(V_ERROR_BAD_REQUEST);
  else if (request == "temporary")
    Reply(kit::GetString(V_SESSION, V_SP_TEMP_DIR));
}

void V_ClientDialogEvent(int32_t, int32_t, int32_t) {}
void V_ClientShutdown() { V_ApiWriteConsole("shut down"); }
const void *V_ClientResources(size_t *size) {
  *size = 0;
  return nullptr;
}
