"""A session bus of a case's own, and what may go wrong with it."""

import os
import signal
import subprocess

from pruefstand import pruefen


class Bus:
    """Started with the bus; the home's programs find it from then on."""

    def __init__(self, welt):
        self.adresse = "unix:path=" + welt.pfad("bus")
        with open(welt.pfad("bus.conf"), "w", encoding="ascii") as datei:
            datei.write('<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration '
                        '1.0//EN" "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">'
                        f"<busconfig><type>session</type><listen>{self.adresse}</listen>"
                        "<auth>EXTERNAL</auth><policy context=\"default\">"
                        '<allow send_destination="*"/><allow receive_sender="*"/>'
                        '<allow own="*"/></policy></busconfig>')
        self.prozess = subprocess.Popen(
            ["dbus-daemon", "--nofork", "--nopidfile", "--print-address",
             "--config-file=" + welt.pfad("bus.conf")], stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, env=welt.umgebung, start_new_session=True)
        pruefen(self.prozess.stdout.readline(), "the bus does not start")
        welt.umgebung["DBUS_SESSION_BUS_ADDRESS"] = self.adresse
        welt.halten(self)

    def anhalten(self):
        os.kill(self.prozess.pid, signal.SIGSTOP)

    def toeten(self):
        if self.prozess.poll() is None:
            self.prozess.kill()
            self.prozess.wait()
        self.prozess.stdout.close()


class Fremder:
    """A stranger who holds the name; for the kinds see fremder.py."""

    def __init__(self, welt, art):
        self.prozess = subprocess.Popen(
            ["/usr/bin/python3", "-B", os.path.join(os.path.dirname(__file__), "fremder.py"), art],
            stdout=subprocess.PIPE, env=welt.umgebung, start_new_session=True)
        pruefen(self.prozess.stdout.readline() == b"ready\n", "the stranger does not start")
        welt.halten(self)

    def toeten(self):
        self.prozess.kill()
        self.prozess.wait()
        self.prozess.stdout.close()
