"""What the cases stand on: a runner, and a home for the real program.

A file of cases declares them with @fall or faelle() and ends with pruefstand.main(). Several cases run at
the same time; each has folders, servers and processes of its own and leaves none of them behind.
"""

import concurrent.futures
import contextlib
import fcntl
import json
import os
import re
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time
import traceback

PROGRAMM = os.environ["KALVARO_PROGRAMM"]
GEDULD = float(os.environ.get("KALVARO_GEDULD", "60"))  # seconds until a condition counts as never met
ENDE = 1.0  # seconds in which the program has to leave
REKORDBOX = "7.1.4"

_faelle = []


def fall(name, stufe=0):
    """Declares a case. Those of a stage run when all of the stages before are through."""

    def merken(tun):
        _faelle.append((name, tun, stufe))
        return tun

    return merken


def faelle(tabelle, stufe=0):
    """Declares a case for each row of a table: name, and the arguments of the function."""

    def merken(tun):
        for name, *werte in tabelle:
            _faelle.append((name, lambda werte=werte: tun(*werte), stufe))
        return tun

    return merken


def pruefen(bedingung, *was):
    if not bedingung:
        raise AssertionError(" ".join(str(teil) for teil in was))


def passt(muster, text):
    pruefen(re.search(muster, text, re.S), f"{text!r:.600} does not match {muster!r}")


def warten(bedingung, geduld=GEDULD, was="the condition"):
    """Waits until the condition holds and returns its value."""
    ende = time.monotonic() + geduld
    while True:
        wert = bedingung()
        if wert:
            return wert
        if time.monotonic() > ende:
            raise AssertionError(f"{was} was not met in {geduld:g} s")
        time.sleep(0.002)


def logzeilen(pfad, ende=None):
    """The texts of the whole lines of a log, or of those in its last `ende` bytes, without their time
    stamps. The kernel may show the first half of a line that is being written: at the end of a page."""
    try:
        with open(pfad, "rb") as datei:
            if ende is not None:
                datei.seek(max(0, os.path.getsize(pfad) - ende))
            ganze = datei.read().rpartition(b"\n")[0]
    except OSError:
        return []
    return [zeile.decode(errors="replace")[21:] for zeile in ganze.split(b"\n") if zeile]


class Lauf:
    """A process of the program in a home."""

    def __init__(self, befehl, umgebung, **weiteres):
        self.ausgabe_ = tempfile.TemporaryFile()
        self.fehler_ = tempfile.TemporaryFile()
        self.beginn = time.monotonic()
        self.prozess = subprocess.Popen(
            befehl, env=umgebung, stdin=subprocess.DEVNULL, stdout=self.ausgabe_,
            stderr=self.fehler_, start_new_session=True, **weiteres)

    @property
    def pid(self):
        return self.prozess.pid

    @staticmethod
    def _lesen(datei):
        datei.flush()
        return os.pread(datei.fileno(), 1 << 27, 0).decode("utf-8", "replace")

    def ausgabe(self):
        return self._lesen(self.ausgabe_)

    def fehler(self):
        """Standard error without what the toolkit says about the display that nobody sees."""
        zeilen = self._lesen(self.fehler_).splitlines(keepends=True)
        return "".join(z for z in zeilen if "plugin does not support" not in z)

    def laeuft(self):
        return self.prozess.poll() is None

    def ende(self, geduld=GEDULD):
        """The exit status, negative for a signal; how long the process lasted is in `dauer`."""
        try:
            status = self.prozess.wait(geduld)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program has not ended after {geduld:g} s; it said "
                                 f"{self.ausgabe()!r:.300} {self.fehler()!r:.300}") from None
        self.dauer = time.monotonic() - self.beginn
        return status

    def beenden(self, nummer=signal.SIGTERM, frist=ENDE):
        """Asks the program to end, which must not take longer than `frist` seconds."""
        beginn = time.monotonic()
        self.prozess.send_signal(nummer)
        try:
            status = self.prozess.wait(GEDULD)
        except subprocess.TimeoutExpired:
            raise AssertionError("the program does not end") from None
        dauer = time.monotonic() - beginn
        pruefen(dauer <= frist, f"the end took {dauer:.2f} s")
        return status

    def toeten(self):
        if self.laeuft():
            with contextlib.suppress(ProcessLookupError):
                os.killpg(self.pid, signal.SIGKILL)
            self.prozess.wait()

    def status(self, feld):
        """A figure of /proc/PID/status; memory in KiB."""
        with open(f"/proc/{self.pid}/status", encoding="ascii", errors="replace") as datei:
            for zeile in datei:
                if zeile.startswith(feld + ":"):
                    return int(zeile.split()[1])
        raise AssertionError(f"no {feld} in the process status")

    def spitze(self):
        """The most memory that it has had so far, in KiB."""
        return self.status("VmHWM")

    def rechenzeit(self):
        """The processor time that it has had so far, in seconds."""
        with open(f"/proc/{self.pid}/stat", encoding="ascii", errors="replace") as datei:
            felder = datei.read().rpartition(")")[2].split()
        return (int(felder[11]) + int(felder[12])) / os.sysconf("SC_CLK_TCK")

    def deskriptoren(self):
        return len(os.listdir(f"/proc/{self.pid}/fd"))


class Welt:
    """Folders as a user has them; everything in it ends with the case."""

    def __init__(self):
        self.wurzel = tempfile.mkdtemp(prefix="kalvaro-faults-")
        self.aufraeumen_ = contextlib.ExitStack()
        self.daten = self.pfad("daten/kalvaro")
        self.programme = self.pfad("programme")
        for ordner in (self.daten, self.programme, self.pfad("lauf")):
            os.makedirs(ordner, mode=0o700)
        keinBus = "unix:path=" + self.pfad("keinbus")
        self.umgebung = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "HOME": self.wurzel,
            "XDG_DATA_HOME": self.pfad("daten"),
            "XDG_CONFIG_HOME": self.pfad("config"),
            "XDG_CACHE_HOME": self.pfad("cache"),
            "XDG_RUNTIME_DIR": self.pfad("lauf"),
            "KALVARO_APPLICATIONS": self.programme,
            "DBUS_SESSION_BUS_ADDRESS": keinBus,
            "DBUS_SYSTEM_BUS_ADDRESS": keinBus,
            "QT_QPA_PLATFORM": "offscreen",
            "LC_ALL": "C",
        }
        for name in ("ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"):
            if name in os.environ:
                self.umgebung[name] = os.environ[name]

    def __enter__(self):
        return self

    def __exit__(self, _art, fehler, _spur):
        if isinstance(fehler, AssertionError):
            fehler.args = ("\n".join([str(fehler), *self.protokoll()[-20:]]),)
        self.aufraeumen_.close()
        shutil.rmtree(self.wurzel, ignore_errors=True)

    def pfad(self, name):
        return os.path.join(self.wurzel, name)

    def halten(self, ding):
        """Keeps something that has `toeten` until the case ends."""
        self.aufraeumen_.callback(ding.toeten)
        return ding

    def konto(self, *server, schluessel="geheimer-schluessel"):
        with open(os.path.join(self.daten, "konto.json"), "w", encoding="utf-8") as datei:
            json.dump({"name": "Faults", "geraet": "faults-mac", "schluessel": schluessel,
                       "server": list(server)}, datei)

    def einstellungen(self, **felder):
        with open(os.path.join(self.daten, "einstellungen.json"), "w", encoding="utf-8") as datei:
            json.dump(felder, datei)

    def rekordbox(self, info=None, programm=None, name="start"):
        """Installs a bundle; returns the path of its executable. All cases share one table of processes,
        so one that bears the name "rekordbox", or runs from a bundle of that name, runs for all of them.
        Without `programm` it is a link to one that ends at once: the kernel tells where that leads."""
        buendel = os.path.join(self.programme, "rekordbox 7", "rekordbox.app", "Contents")
        os.makedirs(os.path.join(buendel, "MacOS"))
        if info is None:
            info = (b'<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>'
                    b"<key>CFBundleShortVersionString</key><string>" + REKORDBOX.encode() +
                    b"</string><key>CFBundleExecutable</key><string>" + name.encode() +
                    b"</string></dict></plist>")
        with open(os.path.join(buendel, "Info.plist"), "wb") as datei:
            datei.write(info)
        ziel = os.path.join(buendel, "MacOS", name)
        if programm is None:
            os.symlink("/bin/true", ziel)
        else:
            shutil.copy(programm, ziel)
        return ziel

    def starten(self, *argumente, vor=(), **weiteres):
        """Starts the program; `vor` is a command that runs it."""
        return self.halten(Lauf([*vor, PROGRAMM, *argumente], self.umgebung, **weiteres))

    def bild(self, *argumente, geduld=GEDULD, **weiteres):
        """One sync in picture mode: its headline and detail, each on a line."""
        lauf = self.starten("--bild", self.pfad("bild.png"), *argumente, **weiteres)
        status = lauf.ende(geduld)
        pruefen(status == 0, "status", status, repr(lauf.fehler())[:1000])
        self.letzter = lauf
        return lauf.ausgabe()

    def protokoll(self):
        """The lines of the log without their time stamps."""
        return logzeilen(os.path.join(self.daten, "kalvaro.log"))

    def urteil(self, geduld=GEDULD):
        """Waits for the log line with what the sync of a program with a window came to."""
        return warten(lambda: next((z for z in self.protokoll() if z.startswith("  -> ")), None),
                      geduld, "a verdict in the log")


def loopback():
    """Brings up the only device of this network."""
    with socket.socket() as s:
        fcntl.ioctl(s, 0x8914, struct.pack("16sh14x", b"lo", 0x1 | 0x40))  # IFF_UP | IFF_RUNNING


_adressen = iter(range(1, 250 * 250))
_adressriegel = threading.Lock()


def adresse():
    """An address of the loopback that nobody else uses, so that every port on it is free."""
    with _adressriegel:
        nummer = next(_adressen)
    return f"127.1.{nummer // 250}.{nummer % 250 + 1}"


def _einer(name, tun):
    beginn = time.monotonic()
    try:
        tun()
        ergebnis = ""
    except AssertionError as fehler:
        ergebnis = str(fehler)
    except Exception:  # a case that breaks must not end the others
        ergebnis = traceback.format_exc()
    zeile = f"{'FAIL!  ' if ergebnis else 'PASS   '}: {name} ({time.monotonic() - beginn:.1f} s)\n"
    if ergebnis:
        zeile += "   " + ergebnis[:4000].replace("\n", "\n   ") + "\n"
    sys.stdout.write(zeile)  # at once, so that lines of two cases never mix
    sys.stdout.flush()
    return not ergebnis


def main(zugleich=6):
    """Runs the cases whose names contain one of the arguments, or all."""
    loopback()
    wahl = [f for f in _faelle
            if len(sys.argv) < 2 or any(teil in f[0] for teil in sys.argv[1:])]
    gut = []
    for stufe in sorted({f[2] for f in wahl}):
        with concurrent.futures.ThreadPoolExecutor(zugleich) as gruppe:
            gut += gruppe.map(lambda f: _einer(f[0], f[1]), [f for f in wahl if f[2] == stufe])
    print(f"{sum(gut)} of {len(gut)} cases passed")
    sys.exit(0 if gut and all(gut) else 1)
