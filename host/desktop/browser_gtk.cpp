#include "host/desktop/browser.h"
#include "host/editor_command.h"
#include "kit/handle.h"
#include "kit/paths.h"

#include <gio/gio.h>

namespace desktop {

bool OpenInBrowser(const std::string &path) {
  std::string url = kit::PathToUrl(path);
  const auto browser = kit::Handle<GAppInfo, g_object_unref>::Adopt(g_app_info_get_default_for_uri_scheme("http"));
  GList urls{url.data(), nullptr, nullptr};
  if (browser && g_app_info_launch_uris(browser.Get(), &urls, nullptr, nullptr))
    return true;
  // A desktop without such a setting.
  return host::StartProgram(host::ComposeOpenCommand(url));
}

} // namespace desktop
