// What the shared library exports. No exception leaves it.
#include "kit/vdk.h"

#include "catalogue/shut_down.h"
#include "client/chosen_processor.h"
#include "client/dispatch.h"
#include "dialogs/dialogs.h"
#include "processors/processor_list.h"
#include "report/messages.h"

#include <exception>

namespace {

// An internal error must not end the host: it is reported, and the request counts as failed.
template <class Body> void Guard(Body body) noexcept {
  try {
    body();
  } catch (const std::exception &fault) {
    V_ApiSetError(V_ERROR_FAILED);
    V_ApiWriteConsole("XSLT: internal error");
    V_ApiWriteConsole(fault.what());
  } catch (...) {
    V_ApiSetError(V_ERROR_FAILED);
    V_ApiWriteConsole("XSLT: internal error");
  }
}

} // namespace

int32_t V_ClientAttach(const V_HostT *host) { return V_AttachHost(host); }

void V_ClientInitialize() {
  Guard([] {
    V_ApiSetEncoding("UTF-8");
    const kit::HostString product = kit::HostString::Adopt(V_ApiGetString(V_SESSION, V_SP_PRODUCT_NAME));
    V_SetProductName(product.Get());
    V_ApiRequestNotification(V_NOTIFY_CALL_CLIENT, 1);
    processors::LoadProcessors(client::ChosenProcessor());
  });
}

void V_ClientNotify(int32_t notification, V_ObjectT, const char *text, int32_t) {
  if (notification != V_NOTIFY_CALL_CLIENT || !text)
    return;
  Guard([&] { V_ApiReturnTypedVals(client::DispatchRequest(text, client::ChosenProcessor()).Release()); });
}

void V_ClientDialogEvent(int32_t dialog, int32_t item, int32_t modifiers) {
  Guard([&] { dialogs::DialogEvent(dialog, item, modifiers); });
}

void V_ClientShutdown() {
  Guard([] {
    dialogs::ShutDownDialogs();
    client::ChosenProcessor().ShutDown();
    catalogue::ShutDownCatalogue();
  });
}

const void *V_ClientResources(size_t *size) {
  if (size)
    *size = report::ResourceImage().size();
  return report::ResourceImage().data();
}
