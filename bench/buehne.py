"""Where programs are measured: a display and a bus of their own, homes that nobody has used, a cloud that
answers as it is told, and what the kernel tells of a process."""

import contextlib
import http.server
import json
import os
import shutil
import signal
import subprocess
import tempfile
import threading
import time

HIER = os.path.dirname(os.path.abspath(__file__))
GEDULD = 90  # seconds until a condition counts as never met

# No service of the machine's is started, whatever is installed.
BUSREGELN = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><policy context="default">
<allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy>
</busconfig>"""


class Gescheitert(Exception):
    pass


def warten(bedingung, was, geduld=GEDULD):
    """Waits until the condition holds and returns its value."""
    ende = time.monotonic() + geduld
    while True:
        wert = bedingung()
        if wert:
            return wert
        if time.monotonic() > ende:
            raise Gescheitert(f"{was}: not within {geduld} s")
        time.sleep(0.02)


def lesen(pfad):
    try:
        with open(pfad, encoding="utf-8", errors="replace") as datei:
            return datei.read()
    except OSError:
        return ""


class Prozess:
    """What the kernel tells of a process."""

    def __init__(self, pid):
        self.ort = f"/proc/{pid}"

    def pss(self):
        """Its memory in KiB; what several share counts in parts."""
        for zeile in lesen(f"{self.ort}/smaps_rollup").splitlines():
            if zeile.startswith("Pss:"):
                return int(zeile.split()[1])
        raise Gescheitert("no memory to read")

    def faeden(self):
        return sorted(os.listdir(f"{self.ort}/task"))

    def _stat(self):
        for faden in self.faeden():
            yield lesen(f"{self.ort}/task/{faden}/stat").rpartition(")")[2].split()

    def rechenzeit(self):
        return sum(int(f[11]) + int(f[12]) for f in self._stat() if f)

    def ruht(self):
        return all(f[0] == "S" for f in self._stat() if f)

    def weckungen(self):
        """How often its threads were woken so far."""
        return sum(int(zeile.split()[1]) for faden in self.faeden()
                   for zeile in lesen(f"{self.ort}/task/{faden}/status").splitlines()
                   if zeile.startswith("voluntary_ctxt_switches"))

    def ruhe(self, sekunden=1.0):
        """Waits until it has slept for a while; waking now and then does not count."""
        schritt = 0.05
        noetig = still = int(sekunden / schritt)
        zeit = self.rechenzeit()
        ende = time.monotonic() + GEDULD
        while still > 0:
            time.sleep(schritt)
            neu = self.rechenzeit()
            still = still - 1 if self.ruht() and neu - zeit <= 1 else noetig
            zeit = neu
            if time.monotonic() > ende:
                raise Gescheitert("the program never rests")


    def still(self):
        """Waits until the main thread does next to nothing, also while it is asked whether it lives."""
        haupt = self.ort + "/task/" + os.path.basename(self.ort) + "/stat"
        ruhige = 0
        ende = time.monotonic() + GEDULD
        while ruhige < 3:
            rennt = 0
            for _ in range(20):
                time.sleep(0.02)
                rennt += lesen(haupt).rpartition(")")[2].split()[0] == "R"
            ruhige = ruhige + 1 if rennt <= 6 else 0
            if time.monotonic() > ende:
                raise Gescheitert("the program never rests")


class Cloud:
    """Answers on the loopback. `antworten`: path without query → bytes; `verzug`: path → seconds.
    `gefragt` has the paths that were answered in full."""

    def __init__(self):
        self.antworten = {}
        self.verzug = {}
        self.gefragt = []
        cloud = self

        class Antworter(http.server.BaseHTTPRequestHandler):
            def log_message(self, *_):
                pass

            def do_GET(self):
                self.rfile.read(int(self.headers.get("Content-Length", 0)))
                pfad = self.path.partition("?")[0]
                time.sleep(cloud.verzug.get(pfad, 0))
                daten = cloud.antworten.get(pfad, b"{}")
                self.send_response(200)
                self.send_header("Content-Type", "application/json")
                self.send_header("Content-Length", str(len(daten)))
                self.end_headers()
                with contextlib.suppress(OSError):
                    self.wfile.write(daten)
                    cloud.gefragt.append(pfad)

            do_POST = do_GET

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Antworter)
        self.server.daemon_threads = True
        threading.Thread(target=self.server.serve_forever, daemon=True).start()

    @property
    def adresse(self):
        return f"http://127.0.0.1:{self.server.server_port}"

    def hat(self, pfad):
        return pfad in self.gefragt


class Heim:
    """Folders as a user has them, with an account and one rekordbox."""

    def __init__(self, buehne, server):
        self.ordner = tempfile.mkdtemp(prefix="heim.", dir=buehne.ordner)
        self.daten = self.unter("daten/kalvaro")
        for ordner in (self.daten, self.unter("lauf"), self.unter("config"), self.unter("cache")):
            os.makedirs(ordner, mode=0o700)
        self._schreiben("daten/kalvaro/konto.json", json.dumps(
            {"name": "Bench", "geraet": "bench", "schluessel": "bench-schluessel", "server": [server]}))
        inhalt = "programme/rekordbox 7/rekordbox.app/Contents/"
        os.makedirs(self.unter(inhalt + "MacOS"))
        self._schreiben(inhalt + "Info.plist", """<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict><key>CFBundleShortVersionString</key><string>7.1.4</string>
<key>CFBundleExecutable</key><string>rekordbox</string></dict></plist>""")
        self._schreiben(inhalt + "MacOS/rekordbox", "")
        self.umgebung = dict(buehne.umgebung, HOME=self.ordner, XDG_DATA_HOME=self.unter("daten"),
                             XDG_CONFIG_HOME=self.unter("config"), XDG_CACHE_HOME=self.unter("cache"),
                             XDG_RUNTIME_DIR=self.unter("lauf"),
                             KALVARO_APPLICATIONS=self.unter("programme"))

    def unter(self, name):
        return os.path.join(self.ordner, name)

    def _schreiben(self, name, text):
        with open(self.unter(name), "w", encoding="utf-8") as datei:
            datei.write(text)

    def urteil(self, geduld=GEDULD):
        """Waits for a verdict in the log."""
        warten(lambda: "  -> " in lesen(self.unter("daten/kalvaro/kalvaro.log")), "a verdict", geduld)


class Buehne:
    """A display, and with `leiste` a bus with a tray."""

    def __init__(self, mitBus=True):
        self.ordner = tempfile.mkdtemp(prefix="kalvaro-bench.")
        self.kinder = []
        kein = "unix:path=" + os.path.join(self.ordner, "keinbus")
        self.umgebung = {"PATH": "/usr/local/bin:/usr/bin:/bin", "LC_ALL": "C.UTF-8",
                         "QT_QPA_PLATFORM": "xcb", "DBUS_SESSION_BUS_ADDRESS": kein,
                         "DBUS_SYSTEM_BUS_ADDRESS": kein, "NO_AT_BRIDGE": "1", "QT_HASH_SEED": "0"}
        lesen_, schreiben = os.pipe()
        self.starten(["Xvfb", "-displayfd", str(schreiben), "-screen", "0", "1280x1024x24", "-nolisten",
                      "tcp", "-noreset"], pass_fds=[schreiben], stderr=subprocess.DEVNULL)
        os.close(schreiben)
        with os.fdopen(lesen_) as ende:
            self.umgebung["DISPLAY"] = ":" + ende.readline().strip()
        if mitBus:
            regeln = os.path.join(self.ordner, "bus.conf")
            with open(regeln, "w", encoding="ascii") as datei:
                datei.write(BUSREGELN)
            bus = self.starten(["dbus-daemon", "--config-file=" + regeln, "--nofork", "--print-address"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
            self.umgebung["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().strip()
            leiste = self.starten(["/usr/bin/python3", "-B", os.path.join(HIER, "leiste.py")],
                                  env=self.umgebung, stdout=subprocess.PIPE, text=True)
            if leiste.stdout.readline() != "da\n":
                raise Gescheitert("no tray: are python3-dbus and python3-gi installed?")
            self.leiste = leiste.stdout

    def starten(self, befehl, **mehr):
        kind = subprocess.Popen(befehl, **mehr)
        self.kinder.append(kind)
        return kind

    def beenden(self, kind, nummer=signal.SIGTERM):
        kind.send_signal(nummer)
        kind.wait(GEDULD)
        self.kinder.remove(kind)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for kind in reversed(self.kinder):
            kind.kill()
            kind.wait()
        shutil.rmtree(self.ordner, ignore_errors=True)


class Fenster:
    """A program with a window, started and watched by kalvaro-bench-fenster."""

    def __init__(self, buehne, bau, befehl, umgebung):
        self.buehne = buehne
        self.umgebung = umgebung
        self.messer = buehne.starten([f"{bau}/kalvaro-bench-fenster", *befehl], env=umgebung,
                                     stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                     stderr=subprocess.DEVNULL, text=True, bufsize=1)
        wort, dauer, pid = self.messer.stdout.readline().split()
        if wort != "fenster":
            raise Gescheitert("no window")
        self.dauer = float(dauer)  # ms until it was there
        self.prozess = Prozess(pid)

    def takt(self):
        self.messer.stdin.write("takt\n")

    def halt(self):
        """The longest hold since takt(), in ms."""
        self.messer.stdin.write("halt\n")
        return float(self.messer.stdout.readline().split()[1])

    def taste(self, *namen):
        for name in namen:
            subprocess.run(["xdotool", "key", name], check=True, env=self.umgebung)

    def schluss(self):
        self.messer.stdin.close()
        self.messer.wait(GEDULD)
        self.buehne.kinder.remove(self.messer)
