#include "host/client_module.h"

#include "kit/paths.h"

#include <dlfcn.h>

namespace host {

namespace {

template <class Function> bool FindEntry(void *library, const char *name, Function &entry, std::string &missing) {
  entry = reinterpret_cast<Function>(dlsym(library, name));
  if (!entry)
    missing.append(missing.empty() ? "" : ", ").append(name);
  return entry != nullptr;
}

std::string LastError() {
  const char *text = dlerror();
  return text ? text : "unknown reason";
}

} // namespace

bool ClientModule::FindEntryPoints(void *library, std::string &error) {
  std::string missing;
  FindEntry(library, "V_ClientAttach", attach, missing);
  FindEntry(library, "V_ClientInitialize", initialise, missing);
  FindEntry(library, "V_ClientNotify", notify, missing);
  FindEntry(library, "V_ClientDialogEvent", dialogEvent, missing);
  FindEntry(library, "V_ClientShutdown", shutDown, missing);
  FindEntry(library, "V_ClientResources", resources, missing);
  if (!missing.empty())
    error = "it lacks the entry points " + missing;
  return missing.empty();
}

std::unique_ptr<ClientModule> ClientModule::Load(const std::string &path, const V_HostT &table, std::string &error) {
  const std::string which = "the client " + path + " cannot be loaded: ";
  if (!kit::IsFile(path)) {
    error = which + "there is no such file; is the installation complete?";
    return nullptr;
  }
  void *library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (!library) {
    error = which + LastError();
    return nullptr;
  }
  std::unique_ptr<ClientModule> module(new ClientModule);
  if (!module->FindEntryPoints(library, error)) {
    error = which + error;
    return nullptr;
  }
  if (module->attach(&table) != 1) {
    error = which + "it was built for another host, and refuses this one";
    return nullptr;
  }
  return module;
}

void ClientModule::Initialise() {
  isInitialised = true;
  initialise();
}

const kit::Resources *ClientModule::FindResources() {
  if (!image) {
    size_t size = 0;
    const auto *bytes = static_cast<const std::byte *>(resources(&size));
    image = kit::Resources::Read({bytes, size});
  }
  return image ? &*image : nullptr;
}

ClientModule::~ClientModule() {
  if (isInitialised)
    shutDown();
}

} // namespace host
