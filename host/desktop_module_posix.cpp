#include "host/desktop_module.h"

#include "kit/paths.h"

#include <dlfcn.h>

namespace host {

std::unique_ptr<DesktopModule> DesktopModule::Load(const Installation &installation, std::string &error) {
  const std::string path = kit::JoinPath(installation.clientFolder, "desktop.so");
  if (!kit::IsFile(path)) {
    error = "this vlxslt has no windows: there is no " + path + "; its command line does everything they do";
    return nullptr;
  }
  // A toolkit cannot be unloaded while its display is open.
  void *library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (!library) {
    const char *reason = dlerror();
    error = "the windows cannot be loaded: " + std::string(reason ? reason : path);
    return nullptr;
  }
  std::unique_ptr<DesktopModule> module(new DesktopModule);
  module->runWorkbench = reinterpret_cast<decltype(&VlxsltRunWorkbench)>(dlsym(library, "VlxsltRunWorkbench"));
  module->serve = reinterpret_cast<decltype(&VlxsltServeWithWindows)>(dlsym(library, "VlxsltServeWithWindows"));
  if (module->runWorkbench && module->serve)
    return module;
  error = path + " belongs to another vlxslt; is the installation complete?";
  return nullptr;
}

std::optional<int> DesktopModule::RunWorkbench(const WorkbenchRequest &request) const {
  int result = 0;
  return runWorkbench(&request, &result) == 1 ? std::optional(result) : std::nullopt;
}

std::optional<int> DesktopModule::Serve(const WindowedWork &work) const {
  int result = 0;
  return serve(&work, &result) == 1 ? std::optional(result) : std::nullopt;
}

} // namespace host
