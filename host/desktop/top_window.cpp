#include "host/desktop/top_window.h"

#include <wx/app.h>

#include <vector>

namespace desktop {

namespace {

std::vector<wxWindow *> &ModalWindows() {
  static std::vector<wxWindow *> windows;
  return windows;
}

} // namespace

wxWindow *TopWindow() { return ModalWindows().empty() ? wxTheApp->GetTopWindow() : ModalWindows().back(); }

InnermostWindow::InnermostWindow(wxWindow *window) { ModalWindows().push_back(window); }

InnermostWindow::~InnermostWindow() { ModalWindows().pop_back(); }

} // namespace desktop
