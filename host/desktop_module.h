// The windows are a shared library of their own, loaded only for the commands that show some: a command line never
// pays for a toolkit, and a build without windows lacks nothing else. The library keeps its own copy of the host.
#ifndef HOST_DESKTOP_MODULE_H
#define HOST_DESKTOP_MODULE_H

#include "host/configuration/configuration.h"
#include "host/configuration/installation.h"
#include "host/fronts/front.h"
#include "host/session.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

struct WorkbenchRequest {
  Configuration configuration;
  Installation installation;
  std::vector<std::pair<std::string, OpenAs>> files; // open from the beginning
};

// What is served while windows stand by: it runs on a thread of its own, and the front is called on that thread.
using WindowedWork = std::function<int(Front &front)>;

class DesktopModule {
public:
  // Null and an error text when this installation has no windows, or they cannot be loaded.
  [[nodiscard]] static std::unique_ptr<DesktopModule> Load(const Installation &installation, std::string &error);

  // Both return when the last window is gone. Nothing when there is no display to show windows on.
  [[nodiscard]] std::optional<int> RunWorkbench(const WorkbenchRequest &request) const;
  [[nodiscard]] std::optional<int> Serve(const WindowedWork &work) const;

private:
  DesktopModule() = default;

  int (*runWorkbench)(const WorkbenchRequest *request, int *result) = nullptr;
  int (*serve)(const WindowedWork *work, int *result) = nullptr;
};

} // namespace host

// What the library exports: 1 when windows could be shown, 0 without a display.
extern "C" {
VDK_EXPORT int VlxsltRunWorkbench(const host::WorkbenchRequest *request, int *result);
VDK_EXPORT int VlxsltServeWithWindows(const host::WindowedWork *work, int *result);
}

#endif
