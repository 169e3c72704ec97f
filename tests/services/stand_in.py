#!/usr/bin/python3
# SPDX-FileCopyrightText: Hush Mode developers
# SPDX-License-Identifier: MIT

"""Stand-ins for desktop services on the session bus, each as small as it can be: they take what they are asked, and
write down what there is to see.

usage as a program: stand_in.py NAME FOLDER, with NAME one of "feedback", "icons", "display"
"""
import pathlib
import sys

PROGRAMS = {"/usr/lib/python3/dist-packages/gi": "python3-gi"}

FEEDBACK = """<node><interface name="org.sigxcpu.Feedback">
  <method name="TriggerFeedback"><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
  <method name="EndFeedback"><arg type="u" direction="in"/></method>
  <signal name="FeedbackEnded"><arg type="u"/><arg type="u"/></signal>
  <property name="Profile" type="s" access="read"/>
</interface></node>"""

ICONS = """<node><interface name="org.kde.StatusNotifierWatcher">
  <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
  <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
  <property name="ProtocolVersion" type="i" access="read"/>
  <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
  <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
  <signal name="StatusNotifierHostRegistered"/>
</interface></node>"""

DISPLAY = """<node><interface name="org.gnome.Mutter.DisplayConfig">
  <property name="PowerSaveMode" type="i" access="readwrite"/>
</interface></node>"""


def start(session, name, bus_name):
    """Starts the stand-in in a session of run_with.py."""
    session.spawn(["/usr/bin/python3", __file__, name, str(session.folder)])
    session.wait_for_name(bus_name)


class StandIn:
    """One object on the bus, driven by GLib's main loop."""

    def __init__(self, bus_name, path, xml):
        import gi
        gi.require_version("Gio", "2.0")
        from gi.repository import Gio, GLib
        self.gio, self.glib = Gio, GLib
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.path, self.interface = path, Gio.DBusNodeInfo.new_for_xml(xml).interfaces[0]
        self.bus.register_object(path, self.interface, self.on_call, self.on_get, self.on_set)
        Gio.bus_own_name_on_connection(self.bus, bus_name, Gio.BusNameOwnerFlags.NONE, None, None)

    def run(self):
        self.glib.MainLoop().run()

    def on_call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        invocation.return_value(self.call(sender, method, arguments.unpack()))

    def on_get(self, _bus, _sender, _path, _interface, name):
        return self.property(name)

    def on_set(self, _bus, _sender, _path, _interface, name, value):
        self.set_property(name, value)
        changed = self.glib.Variant("(sa{sv}as)", (self.interface.name, {name: value}, []))
        self.bus.emit_signal(None, self.path, "org.freedesktop.DBus.Properties", "PropertiesChanged", changed)
        return True


class Feedback(StandIn):
    def __init__(self, _folder):
        super().__init__("org.sigxcpu.Feedback", "/org/sigxcpu/Feedback", FEEDBACK)
        self.last = 0

    def call(self, _sender, method, _arguments):
        if method != "TriggerFeedback":
            return None
        self.last += 1
        return self.glib.Variant("(u)", (self.last,))

    def property(self, _name):
        return self.glib.Variant("s", "full")


class Icons(StandIn):
    """Writes "shown" or "hidden" into the file "icon" of the folder."""

    def __init__(self, folder):
        self.file, self.items = folder / "icon", []
        self.file.write_text("hidden\n")
        super().__init__("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", ICONS)
        self.bus.signal_subscribe(None, "org.kde.StatusNotifierItem", "NewStatus", None, None, 0, self.on_status)

    def on_status(self, _bus, _sender, _path, _interface, _signal, values):
        self.show(values.unpack()[0])

    def show(self, status):
        self.file.write_text("hidden\n" if status == "Passive" else "shown\n")

    def call(self, sender, _method, arguments):
        name, path = (sender, arguments[0]) if arguments[0].startswith("/") else (arguments[0], "/StatusNotifierItem")
        self.items.append(name + path)
        self.bus.call(name, path, "org.freedesktop.DBus.Properties", "Get",
                      self.glib.Variant("(ss)", ("org.kde.StatusNotifierItem", "Status")), None, 0, 5000, None,
                      lambda bus, result: self.show(bus.call_finish(result).unpack()[0]))

    def property(self, name):
        return {"IsStatusNotifierHostRegistered": self.glib.Variant("b", True),
                "ProtocolVersion": self.glib.Variant("i", 0),
                "RegisteredStatusNotifierItems": self.glib.Variant("as", self.items)}[name]


class Display(StandIn):
    def __init__(self, _folder):
        self.mode = 3
        super().__init__("org.gnome.Mutter.DisplayConfig", "/org/gnome/Mutter/DisplayConfig", DISPLAY)

    def property(self, _name):
        return self.glib.Variant("i", self.mode)

    def set_property(self, _name, value):
        self.mode = value.unpack()


if __name__ == "__main__":
    {"feedback": Feedback, "icons": Icons, "display": Display}[sys.argv[1]](pathlib.Path(sys.argv[2])).run()
