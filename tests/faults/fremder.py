"""Takes kalvaro's name on the session bus and does not do what it stands for:
  fremder.py silent|erring|empty
Says "ready" once it has the name."""

import signal
import sys

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib


class Irrender(dbus.service.Object):
    @dbus.service.method("org.freedesktop.Application", in_signature="a{sv}")
    def Activate(self, _daten):
        raise dbus.DBusException("no", name="test.No")

    @dbus.service.method("org.freedesktop.Application", in_signature="sava{sv}")
    def ActivateAction(self, _name, _werte, _daten):
        raise dbus.DBusException("no", name="test.No")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
name = dbus.service.BusName("de.kalvaro.kalvaro", bus)
if sys.argv[1] == "erring":
    Irrender(bus, "/de/kalvaro/kalvaro")
print("ready", flush=True)
if sys.argv[1] == "silent":
    signal.pause()
GLib.MainLoop().run()
