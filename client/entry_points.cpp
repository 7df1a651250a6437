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

void ReportFault(const char *what) noexcept {
  V_ApiSetError(V_ERROR_FAILED);
  try {
    V_ApiWriteConsole(report::LoadMessage(report::MessageId::InternalError).c_str());
  } catch (...) {
    // Without memory for the text the error number has to do.
  }
  if (what)
    V_ApiWriteConsole(what);
}

// An exception must not take the host down: it is reported, and the request counts as failed.
template <class Body> void Guard(Body body) noexcept {
  try {
    body();
  } catch (const std::exception &fault) {
    ReportFault(fault.what());
  } catch (...) {
    ReportFault(nullptr);
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
  // The table need not outlive this call.
  V_DetachHost(nullptr);
}

const void *V_ClientResources(size_t *size) {
  if (size)
    *size = report::ResourceImage().size();
  return report::ResourceImage().data();
}
