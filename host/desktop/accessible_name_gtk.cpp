#include "host/desktop/accessible_name.h"

#include <gtk/gtk.h>
#include <wx/window.h>

namespace desktop {

void SetAccessibleName(wxWindow &window, const char *name) {
  window.SetName(name);
  GtkWidget *widget = window.GetHandle();
  // Lists and text controls are inside a scrolled window.
  for (GtkWidget *each : {widget, GTK_IS_SCROLLED_WINDOW(widget) ? gtk_bin_get_child(GTK_BIN(widget)) : nullptr})
    if (each)
      atk_object_set_name(gtk_widget_get_accessible(each), name);
}

} // namespace desktop
