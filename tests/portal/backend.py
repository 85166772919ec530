#!/usr/bin/python3
# A GlobalShortcuts back-end for the real xdg-desktop-portal front-end, standing in for a desktop's.
# Like KDE's 5.27 back-end it binds only the shortcuts that came in CreateSession's options and
# ignores BindShortcuts' list. A control interface lets the test choose the answer, read what was
# asked and have a shortcut pressed. Exits 77 when PyGObject is missing.
import json
import sys

try:
    from gi.repository import Gio, GLib
except ImportError:
    sys.exit(77)

NAME = "org.freedesktop.impl.portal.desktop.test"
PATH = "/org/freedesktop/portal/desktop"
SHORTCUT_LIST = "a(sa{sv})"

XML = f"""<node>
<interface name="org.freedesktop.impl.portal.GlobalShortcuts">
  <method name="CreateSession">
    <arg type="o" direction="in"/><arg type="o" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{{sv}}" direction="in"/>
    <arg type="u" direction="out"/><arg type="a{{sv}}" direction="out"/>
  </method>
  <method name="BindShortcuts">
    <arg type="o" direction="in"/><arg type="o" direction="in"/><arg type="{SHORTCUT_LIST}" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{{sv}}" direction="in"/>
    <arg type="u" direction="out"/><arg type="a{{sv}}" direction="out"/>
  </method>
  <method name="ListShortcuts">
    <arg type="o" direction="in"/><arg type="o" direction="in"/>
    <arg type="u" direction="out"/><arg type="a{{sv}}" direction="out"/>
  </method>
  <signal name="Activated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
  <signal name="Deactivated"><arg type="o"/><arg type="s"/><arg type="t"/><arg type="a{{sv}}"/></signal>
  <signal name="ShortcutsChanged"><arg type="o"/><arg type="{SHORTCUT_LIST}"/></signal>
  <property name="version" type="u" access="read"/>
</interface>
<interface name="org.freedesktop.impl.portal.Session">
  <method name="Close"/>
  <signal name="Closed"/>
  <property name="version" type="u" access="read"/>
</interface>
<interface name="org.zelvan.quillora.PortalBackend">
  <method name="SetAnswer"><arg type="s" name="answer" direction="in"/></method>
  <method name="Record"><arg type="s" direction="out"/></method>
  <method name="Press">
    <arg type="o" name="session" direction="in"/><arg type="s" name="id" direction="in"/>
    <arg type="s" name="token" direction="in"/>
  </method>
</interface>
</node>"""
INFO = Gio.DBusNodeInfo.new_for_xml(XML)
SHORTCUTS, SESSION, CONTROL = INFO.interfaces

# "bind" (what CreateSession brought) or "nothing" (granted, none bound).
answer = "bind"
record = {"created": [], "bound": [], "closed": []}
registrations = {}  # session path: its object's registration
wanted = {}  # session path: the shortcuts CreateSession brought


def shortcut_list(shortcuts):
    return GLib.Variant(SHORTCUT_LIST, [
        (sid, {**{k: GLib.Variant("s", str(v)) for k, v in props.items()},
               "trigger_description": GLib.Variant("s", str(props.get("preferred_trigger", "")))})
        for sid, props in shortcuts])


def on_session_call(conn, sender, path, iface, method, params, invocation):
    conn.unregister_object(registrations.pop(path))
    wanted.pop(path)
    record["closed"].append(path)
    invocation.return_value(None)


def on_call(conn, sender, path, iface, method, params, invocation):
    global answer
    args = params.unpack()
    if method == "CreateSession":
        session = args[1]
        registrations[session] = conn.register_object(session, SESSION, on_session_call, on_property, None)
        wanted[session] = args[3].get("shortcuts", [])
        record["created"].append({"session": session, "shortcuts": wanted[session]})
        results = {"session_handle": GLib.Variant("s", session)}
        return invocation.return_value(GLib.Variant("(ua{sv})", (0, results)))
    if method == "BindShortcuts":
        record["bound"].append({"session": args[1], "shortcuts": args[2]})
        bound = wanted.get(args[1], []) if answer == "bind" else []
        return invocation.return_value(GLib.Variant("(ua{sv})", (0, {"shortcuts": shortcut_list(bound)})))
    if method == "ListShortcuts":
        return invocation.return_value(GLib.Variant("(ua{sv})", (0, {})))
    if method == "SetAnswer":
        answer = args[0]
        return invocation.return_value(None)
    if method == "Record":
        return invocation.return_value(GLib.Variant("(s)", (json.dumps(record),)))
    if method == "Press":
        options = {"activation_token": GLib.Variant("s", args[2])}
        conn.emit_signal(None, PATH, SHORTCUTS.name, "Activated",
                         GLib.Variant("(osta{sv})", (args[0], args[1], 1, options)))
        return invocation.return_value(None)


def on_property(conn, sender, path, iface, name):
    return GLib.Variant("u", 1)


def on_bus(conn, name):
    conn.register_object(PATH, SHORTCUTS, on_call, on_property, None)
    conn.register_object(PATH, CONTROL, on_call, None, None)


loop = GLib.MainLoop()
Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, on_bus, None, lambda *_: loop.quit())
loop.run()
