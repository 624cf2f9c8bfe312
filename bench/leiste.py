#!/usr/bin/python3
"""A tray: watcher and host of StatusNotifierItem on the session bus. Says "da" when it is there and a line
for each item; asks an item for what hosts show."""

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.kde.StatusNotifierWatcher"


class Leiste(dbus.service.Object):
    @dbus.service.method(NAME, in_signature="s", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, dienst, sender):
        name, pfad = (sender, dienst) if dienst.startswith("/") else (dienst, "/StatusNotifierItem")
        bus.get_object(name, pfad, introspect=False).GetAll(
            "org.kde.StatusNotifierItem", dbus_interface=dbus.PROPERTIES_IFACE,
            reply_handler=lambda _: print("eintrag", flush=True), error_handler=lambda _: None)

    @dbus.service.method(NAME, in_signature="s")
    def RegisterStatusNotifierHost(self, _):
        pass

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, _, name):
        return self.GetAll(_)[name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, _):
        return {"IsStatusNotifierHostRegistered": True, "ProtocolVersion": dbus.Int32(0),
                "RegisteredStatusNotifierItems": dbus.Array([], signature="s")}

    @dbus.service.signal(NAME)
    def StatusNotifierHostRegistered(self):
        pass


DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
leiste = Leiste(bus, "/StatusNotifierWatcher")
namen = [dbus.service.BusName(name, bus) for name in (NAME, "org.kde.StatusNotifierHost-bench")]
leiste.StatusNotifierHostRegistered()
print("da", flush=True)
GLib.MainLoop().run()
