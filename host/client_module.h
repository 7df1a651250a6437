// A client's shared library, loaded and attached: its six entry points, called on the host's thread only. The library
// stays in memory until the process ends, since a Java virtual machine inside it cannot be taken down.
#ifndef HOST_CLIENT_MODULE_H
#define HOST_CLIENT_MODULE_H

#include "kit/resources.h"
#include "kit/vdk.h"

#include <memory>
#include <optional>
#include <string>

namespace host {

class ClientModule {
public:
  // Null and an error text when the library or one of its entry points is missing, or the client refuses the table.
  // `table` must outlive the module.
  [[nodiscard]] static std::unique_ptr<ClientModule> Load(const std::string &path, const V_HostT &table,
                                                          std::string &error);
  // Shuts the client down when it was initialised.
  ~ClientModule();
  ClientModule(const ClientModule &) = delete;
  ClientModule &operator=(const ClientModule &) = delete;

  void Initialise();
  void Notify(int32_t notification, V_ObjectT object, const char *text, int32_t number) const {
    notify(notification, object, text, number);
  }
  void SendDialogEvent(int32_t dialog, int32_t item, int32_t modifiers) const { dialogEvent(dialog, item, modifiers); }
  // Read at the first use; null when they are damaged.
  [[nodiscard]] const kit::Resources *FindResources();

private:
  ClientModule() = default;
  [[nodiscard]] bool FindEntryPoints(void *library, std::string &error);

  decltype(&V_ClientAttach) attach = nullptr;
  decltype(&V_ClientInitialize) initialise = nullptr;
  decltype(&V_ClientNotify) notify = nullptr;
  decltype(&V_ClientDialogEvent) dialogEvent = nullptr;
  decltype(&V_ClientShutdown) shutDown = nullptr;
  decltype(&V_ClientResources) resources = nullptr;
  bool isInitialised = false;
  std::optional<kit::Resources> image;
};

} // namespace host

#endif
