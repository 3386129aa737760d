"""polkit_agent.py PROCESS ANSWER [PASSWORD]: whom polkit asks on behalf of one process.

Prints "ready" when it can be asked, and each question as a line of JSON. ANSWER is "password",
"cancel", "never" or "die", which is what it does when it is asked. Ends with its input.
"""

import json
import os
import pwd
import subprocess
import sys

from gi.repository import Gio, GLib

NAME, AUTHORITY = "org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority"
PATH, INTERFACE = "/org/freedesktop/PolicyKit1/AuthenticationAgent", NAME + ".AuthenticationAgent"
# Runs as root, checks the password and tells polkit about it.
CHECKER = "/usr/lib/polkit-1/polkit-agent-helper-1"

DESCRIPTION = f"""<node><interface name="{INTERFACE}">
  <method name="BeginAuthentication"><arg type="s" direction="in"/><arg type="s" direction="in"/>
    <arg type="s" direction="in"/><arg type="a{{ss}}" direction="in"/>
    <arg type="s" direction="in"/><arg type="a(sa{{sv}})" direction="in"/></method>
  <method name="CancelAuthentication"><arg type="s" direction="in"/></method>
</interface></node>"""


def started_at(process):
    with open(f"/proc/{process}/stat", encoding="utf-8") as stream:
        # The name, in brackets, may hold anything.
        return int(stream.read().rpartition(")")[2].split()[19])


class Agent:
    def __init__(self, answer, password):
        self.answer, self.password = answer, password

    def register(self, bus, process):
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        bus.register_object(PATH, interface, self.called, None, None)
        subject = ("unix-process", {"pid": GLib.Variant("u", process),
                                    "start-time": GLib.Variant("t", started_at(process)),
                                    "uid": GLib.Variant("i", os.getuid())})
        bus.call_sync(NAME, AUTHORITY, NAME + ".Authority", "RegisterAuthenticationAgent",
                      GLib.Variant("((sa{sv})ss)", (subject, "C.UTF-8", PATH)), None,
                      Gio.DBusCallFlags.NONE, -1, None)

    def called(self, _bus, _sender, _path, _interface, method, parameters, invocation):
        if method != "BeginAuthentication":
            invocation.return_value(None)
            return
        action, message, _, details, cookie, identities = parameters.unpack()
        users = [pwd.getpwuid(identity["uid"]).pw_name for _, identity in identities]
        print(json.dumps({"action": action, "message": message, "details": details,
                          "users": users}), flush=True)
        if self.answer == "die":
            os._exit(1)
        if self.answer == "cancel":
            invocation.return_dbus_error(NAME + ".Error.Cancelled", "dismissed")
        elif self.answer == "password":
            self.check(cookie)
            invocation.return_value(None)

    def check(self, cookie):
        own = pwd.getpwuid(os.getuid()).pw_name
        subprocess.run([CHECKER, own], input=f"{cookie}\n{self.password}\n", encoding="utf-8",
                       stdout=subprocess.DEVNULL, check=False)


def main():
    process, answer, password = int(sys.argv[1]), sys.argv[2], "".join(sys.argv[3:])
    bus = Gio.bus_get_sync(Gio.BusType.SYSTEM, None)
    loop = GLib.MainLoop()
    GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, lambda *_: loop.quit())
    Agent(answer, password).register(bus, process)
    print("ready", flush=True)
    loop.run()


if __name__ == "__main__":
    main()
