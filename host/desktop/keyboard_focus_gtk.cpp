#include "host/desktop/keyboard_focus.h"

#include <gtk/gtk.h>
#include <wx/toplevel.h>

namespace desktop {

bool HasFocusedControl(const wxTopLevelWindow &window) {
  GtkWidget *focused = gtk_window_get_focus(GTK_WINDOW(window.GetHandle()));
  return focused && focused != window.m_wxwindow && gtk_widget_is_sensitive(focused) && gtk_widget_get_mapped(focused);
}

} // namespace desktop
