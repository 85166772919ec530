#!/usr/bin/python3
# A FileChooser back-end for the real xdg-desktop-portal front-end, standing in for a desktop's. It
# matches the names of one folder against each filter it is given the way GTK's chooser does, glob by
# glob and letter by letter, records what it saw and answers with the file the test chose when the
# current filter lists it (else the user cancelled). Prints "ready" once it owns its name; exits 77
# when PyGObject is missing.
import fnmatch
import json
import os
import sys

try:
    from gi.repository import Gio, GLib
except ImportError:
    sys.exit(77)

NAME = "org.freedesktop.impl.portal.desktop.test"
PATH = "/org/freedesktop/portal/desktop"
XML = """<node>
<interface name="org.freedesktop.impl.portal.FileChooser">
  <method name="OpenFile">
    <arg type="o" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="u" direction="out"/><arg type="a{sv}" direction="out"/>
  </method>
  <method name="SaveFile">
    <arg type="o" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
    <arg type="u" direction="out"/><arg type="a{sv}" direction="out"/>
  </method>
</interface>
<interface name="org.zelvan.quillora.ChooserBackend">
  <method name="Choose">
    <arg type="s" name="folder" direction="in"/><arg type="s" name="file" direction="in"/>
  </method>
  <method name="Record"><arg type="s" direction="out"/></method>
</interface>
</node>"""
CHOOSER, CONTROL = Gio.DBusNodeInfo.new_for_xml(XML).interfaces

choice = {"folder": "/", "file": ""}
record = []


def listed(patterns):
    names = sorted(os.listdir(choice["folder"]))
    return [n for n in names if any(kind == 0 and fnmatch.fnmatchcase(n, p) for kind, p in patterns)]


def on_call(conn, sender, path, iface, method, params, invocation):
    args = params.unpack()
    if method == "Choose":
        choice.update(folder=args[0], file=args[1])
        return invocation.return_value(None)
    if method == "Record":
        return invocation.return_value(GLib.Variant("(s)", (json.dumps(record),)))
    options = args[4]
    filters = [{"name": name, "patterns": [p for _, p in patterns], "listed": listed(patterns)}
               for name, patterns in options.get("filters", [])]
    record.append({"method": method, "title": args[3], "filters": filters})
    current = options.get("current_filter")
    shown = listed(current[1]) if current else (filters[0]["listed"] if filters else [])
    if method == "OpenFile" and choice["file"] not in shown:
        answer = (1, {})
    else:
        uri = "file://" + os.path.join(choice["folder"], choice["file"])
        answer = (0, {"uris": GLib.Variant("as", [uri])})
    # A moment later, as a person answers: Qt 6.4 starts listening for the answer only once the
    # front-end has told it where the request lives, and an answer before that is lost.
    GLib.timeout_add(1000, lambda: invocation.return_value(GLib.Variant("(ua{sv})", answer)) and False)


def on_bus(conn, name):
    conn.register_object(PATH, CHOOSER, on_call, None, None)
    conn.register_object(PATH, CONTROL, on_call, None, None)


def on_name(conn, name):
    print("ready", flush=True)


loop = GLib.MainLoop()
Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, on_bus, on_name,
                 lambda *_: loop.quit())
loop.run()
