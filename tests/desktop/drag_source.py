#!/usr/bin/python3
"""A window that files can be dragged from; prints the progress of a drag. Usage: drag_source.py FILE..."""

import pathlib
import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, Gtk  # noqa: E402


def say(what):
    print(what, flush=True)


def begin(_, context):
    say("begun")
    context.connect("action-changed", lambda _, action: say("accepted" if action else "refused"))


box = Gtk.EventBox()
box.add(Gtk.Label(label="files"))
box.drag_source_set(Gdk.ModifierType.BUTTON1_MASK, [], Gdk.DragAction.COPY)
box.drag_source_add_uri_targets()
box.connect("drag-begin", begin)
box.connect("drag-data-get", lambda _, context, data, *rest: data.set_uris([pathlib.Path(f).as_uri() for f in sys.argv[1:]]))
window = Gtk.Window(title="Files")
window.add(box)
window.set_default_size(200, 100)
window.connect("map-event", lambda *_: say("shown"))
window.show_all()
window.move(0, 0)
Gtk.main()
