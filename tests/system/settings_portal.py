"""A desktop's settings service that knows one setting: whether the user wants programs dark.

Prints "ready" when programs can ask. Each line on its input, "dark" or "light", is a change.
"""

import sys

from gi.repository import Gio, GLib

NAMESPACE, KEY = "org.freedesktop.appearance", "color-scheme"
CODES = {"dark": 1, "light": 2}
PATH, INTERFACE = "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"

DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="v" direction="out"/></method>
  <method name="ReadAll"><arg type="as" direction="in"/>
    <arg type="a{{sa{{sv}}}}" direction="out"/></method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
  <property name="version" type="u" access="read"/>
</interface></node>"""


class Portal:
    def __init__(self, appearance):
        self.appearance = appearance
        self.connection = None

    def value(self):
        return GLib.Variant("u", CODES[self.appearance])

    def offer(self, connection, _name):
        self.connection = connection
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        connection.register_object(PATH, interface, self.answer, self.version, None)

    def answer(self, _connection, _sender, _path, _interface, method, parameters, invocation):
        if method == "ReadAll":
            settings = GLib.Variant("(a{sa{sv}})", ({NAMESPACE: {KEY: self.value()}},))
            invocation.return_value(settings)
        elif parameters.unpack() == (NAMESPACE, KEY):
            # The service of real desktops wraps the value twice here, for programs of old.
            wrapped = GLib.Variant("v", self.value())
            invocation.return_value(GLib.Variant.new_tuple(GLib.Variant.new_variant(wrapped)))
        else:
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound",
                                         "Requested setting not found")

    @staticmethod
    def version(*_arguments):
        return GLib.Variant("u", 1)

    def read_change(self, _source, _condition):
        line = sys.stdin.readline().strip()
        if line not in CODES:
            return False
        self.appearance = line
        self.connection.emit_signal(None, PATH, INTERFACE, "SettingChanged",
                                    GLib.Variant("(ssv)", (NAMESPACE, KEY, self.value())))
        return True


def main():
    portal = Portal(sys.argv[1])
    Gio.bus_own_name(Gio.BusType.SESSION, "org.freedesktop.portal.Desktop",
                     Gio.BusNameOwnerFlags.NONE, portal.offer,
                     lambda *_: print("ready", flush=True), lambda *_: sys.exit("no bus"))
    GLib.io_add_watch(0, GLib.IO_IN | GLib.IO_HUP, portal.read_change)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
