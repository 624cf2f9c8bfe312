#!/usr/bin/python3
"""What the real program tells screen readers, heard over the accessibility bus.

On a display of its own; vorlesen.sh gives it a session bus and a process table of its own.
    tests/e2e/vorlesen.sh KALVARO DEMOCLOUD APPLICATIONS
"""
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time

GEDULD = 30  # seconds
ANSAGE = "Announcement"

try:
    import pyatspi
    from gi.repository import GLib
except ImportError as fehler:
    print(f"SKIP   : TestVorlesen::alles(needs {fehler.name})")
    sys.exit(0)
for programm in ("Xvfb", "openbox", "xdotool", "dbus-daemon"):
    if not shutil.which(programm):
        print(f"SKIP   : TestVorlesen::alles(needs {programm})")
        sys.exit(0)


class Gescheitert(Exception):
    pass


class Gehoert:
    """Keeps what was told, as pairs of what and whom (or what is said)."""

    def __init__(self):
        self.alles = []
        pyatspi.Registry.registerEventListener(
            self.merken,
            "object:state-changed:showing",
            "object:state-changed:focused",
            "object:state-changed:checked",
            "object:state-changed:expanded",
            "object:property-change:accessible-description",
            "object:announcement",
        )

    def merken(self, ereignis):
        art = str(ereignis.type)
        try:
            name = ereignis.source.name
            if art.startswith("object:announcement"):
                self.alles.append((ANSAGE, ereignis.any_data))
            elif art.endswith("showing"):
                if ereignis.detail1 and ereignis.source.getRole() == pyatspi.ROLE_NOTIFICATION:
                    self.alles.append((ANSAGE, name))
            elif art.endswith("description"):
                if isinstance(ereignis.any_data, str):
                    self.alles.append(("description", ereignis.any_data))
            elif ereignis.detail1 or not art.endswith("focused"):
                self.alles.append((f"{art.rsplit(':', 1)[1]} {ereignis.detail1}", name))
        except GLib.Error:
            pass  # what it is about is gone

    def ansagen(self):
        return [inhalt for art, inhalt in self.alles if art == ANSAGE]

    def leeren(self):
        self.alles.clear()


def laufen(sekunden):
    schleife = GLib.MainLoop()
    GLib.timeout_add(int(sekunden * 1000), schleife.quit)
    schleife.run()


def bald(bedingung, was):
    ende = time.monotonic() + GEDULD
    while not bedingung():
        if time.monotonic() > ende:
            raise Gescheitert(was() if callable(was) else was)
        laufen(0.02)


def gleich(ist, soll):
    if ist != soll:
        raise Gescheitert(f"is {ist!r}, should be {soll!r}")


class Auftritt:
    """The program with a cloud, on a display."""

    def __init__(self, programme):
        self.kalvaro, self.cloudprogramm, self.applications = programme
        self.ordner = tempfile.mkdtemp(prefix="kalvaro-vorlesen.")
        self.kinder = []
        lesen, schreiben = os.pipe()
        self.starten(
            ["Xvfb", "-displayfd", str(schreiben), "-screen", "0", "800x1000x24", "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[schreiben], stderr=subprocess.DEVNULL)
        os.close(schreiben)
        self.anzeige = f":{os.fdopen(lesen).readline().strip()}"
        # Without a window manager nobody gives the keyboard back when a dialogue goes.
        self.starten(["openbox", "--sm-disable", "--config-file", "/dev/null"],
                     env=dict(os.environ, DISPLAY=self.anzeige), stderr=subprocess.DEVNULL)
        self.cloud = self.starten([self.cloudprogramm, "--port", "0", "--dauer", "0.2"],
                                  stdout=subprocess.PIPE, text=True)
        self.adresse = f"http://127.0.0.1:{self.cloud.stdout.readline().strip().split('=')[1]}"
        self.gehoert = Gehoert()

    def starten(self, befehl, **mehr):
        kind = subprocess.Popen(befehl, **mehr)
        self.kinder.append(kind)
        return kind

    def aufmachen(self):
        daten = os.path.join(self.ordner, "kalvaro")
        os.makedirs(daten)
        with open(os.path.join(daten, "konto.json"), "w", encoding="utf-8") as datei:
            json.dump({"name": "Demo-Mac", "geraet": "demo-mac", "schluessel": "demo-schluessel",
                       "server": [self.adresse]}, datei)
        with open(os.path.join(daten, "einstellungen.json"), "w", encoding="utf-8") as datei:
            json.dump({"autostart": True}, datei)
        umgebung = dict(os.environ, DISPLAY=self.anzeige, QT_QPA_PLATFORM="xcb",
                        QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1", XDG_DATA_HOME=self.ordner,
                        XDG_CONFIG_HOME=self.ordner, XDG_RUNTIME_DIR=self.ordner, HOME=self.ordner,
                        KALVARO_APPLICATIONS=self.applications)
        for name in ("WAYLAND_DISPLAY", "NO_AT_BRIDGE", "QT_ACCESSIBILITY"):
            umgebung.pop(name, None)
        self.starten([self.kalvaro], env=umgebung)

    def taste(self, *namen):
        for name in namen:
            subprocess.run(["xdotool", "key", name], check=True,
                           env=dict(os.environ, DISPLAY=self.anzeige))

    def schluss(self):
        for kind in reversed(self.kinder):
            kind.kill()
            kind.wait()
        shutil.rmtree(self.ordner, ignore_errors=True)

    def finden(self, rolle, name="", muster=None):
        """The first object of this kind that can be seen; waits for it."""
        gefunden = []

        def suchen(teil):
            try:
                passt = re.search(muster, teil.name) if muster else teil.name == name
                if teil.getRole() == rolle and passt and teil.getState().contains(
                        pyatspi.STATE_SHOWING):
                    gefunden.append(teil)
                    return True
                return any(suchen(kind) for kind in teil if kind)
            except GLib.Error:
                return False

        def da():
            gefunden.clear()
            return any(a and a.name == "kalvaro" and suchen(a)
                       for a in pyatspi.Registry.getDesktop(0))

        bald(da, f"no {rolle} {name or muster}")
        return gefunden[0]

    def druecken(self, name, aktion="press"):
        knopf = self.finden(pyatspi.ROLE_PUSH_BUTTON, name)
        tun = knopf.queryAction()
        nummer = [tun.getName(i).lower() for i in range(tun.nActions)].index(aktion)
        tun.doAction(nummer)


def warten(a, art, inhalt):
    bald(lambda: any(x == art and re.search(inhalt, str(y)) for x, y in a.gehoert.alles),
         lambda: f"not told: {art} {inhalt}; only {a.gehoert.alles}")


def urteil_und_countdown(a):
    a.aufmachen()
    warten(a, ANSAGE, "^rekordbox startet in 5 s$")
    a.druecken("Abbrechen")
    warten(a, ANSAGE, "^Start von rekordbox abgebrochen$")
    gleich(len(a.gehoert.ansagen()), 3)
    if not a.gehoert.ansagen()[0].startswith("Bibliothek ist abgeglichen. "):
        raise Gescheitert(a.gehoert.ansagen()[0])


def neuer_abgleich_ist_neu(a):
    a.gehoert.leeren()
    for _ in range(2):
        bisher = len(a.gehoert.ansagen())
        a.druecken("Jetzt abgleichen")
        bald(lambda: len(a.gehoert.ansagen()) > bisher, "no verdict")
    if not all(x.startswith("Bibliothek ist abgeglichen. ") for x in a.gehoert.ansagen()):
        raise Gescheitert(a.gehoert.ansagen())
    gleich(len(a.gehoert.ansagen()), 2)


def tastatur_kommt_aus_dem_blatt_zurueck(a):
    def zuletzt(name):
        bald(lambda: a.gehoert.alles[-1:] == [("focused 1", name)],
             lambda: f"{name}: {a.gehoert.alles}")

    a.gehoert.leeren()
    a.druecken("Einstellungen …", "setfocus")
    zuletzt("Einstellungen …")
    for taste in ("Escape", "Return"):  # cancels, saves
        a.taste("space")
        zuletzt("Immer die neueste (7.1.4)")
        a.taste("Tab", taste)
        zuletzt("Einstellungen …")


def fenster_und_zahlen(a):
    a.finden(pyatspi.ROLE_FRAME, "kalvaro")
    for was in ("Titel", "Playlisten", "Hot Cues"):
        a.finden(pyatspi.ROLE_LABEL, muster=rf"^{was}: [\d.]+$")
    a.finden(pyatspi.ROLE_LABEL, muster=r"^Musik: [\d.,]+ GB$")


def auswahl_sagt_ihren_wert(a):
    a.druecken("Einstellungen …")
    feld = a.finden(pyatspi.ROLE_COMBO_BOX, muster="neueste|Diese Version")
    bald(lambda: feld.getState().contains(pyatspi.STATE_FOCUSED), "the box has no focus")
    gleich(feld.description, "Immer die neueste (7.1.4)")
    beschriftet = [r.getTarget(0).name for r in feld.getRelationSet()
                   if r.getRelationType() == pyatspi.RELATION_LABELLED_BY]
    gleich(beschriftet, ["Diese Version starten:"])
    a.gehoert.leeren()
    a.taste("Down")
    warten(a, "description", "^rekordbox 7.1.4$")
    a.taste("Up")


def baum_nennt_zeilen(a):
    baum = a.finden(pyatspi.ROLE_TREE, muster="Playlisten")
    bald(lambda: baum.childCount > 1, "no rows")
    a.gehoert.leeren()
    a.taste("Tab", "Tab", "Tab", "Tab")
    zeile = baum[0]
    # The row has the last word, not the tree.
    bald(lambda: a.gehoert.alles[-1:] == [("focused 1", zeile.name)],
         lambda: f"{a.gehoert.alles}")
    stand = zeile.getState()
    for state in (pyatspi.STATE_EXPANDABLE, pyatspi.STATE_COLLAPSED, pyatspi.STATE_FOCUSED):
        if not stand.contains(state):
            raise Gescheitert(f"{zeile.name} lacks {state}")
    if not zeile.description.endswith("Ebene 1"):
        raise Gescheitert(zeile.description)
    gleich(zeile.queryAction().getName(0), "toggle")
    gleich(zeile.childCount, 0)


def baum_meldet_klappen_und_haken(a):
    baum = a.finden(pyatspi.ROLE_TREE, muster="Playlisten")
    name = baum[0].name
    bisher = baum.childCount
    a.gehoert.leeren()
    a.taste("Right")
    warten(a, "expanded 1", f"^{re.escape(name)}$")
    bald(lambda: baum.childCount > bisher, "no more rows")
    if not baum[1].description.endswith("Ebene 2"):
        raise Gescheitert(baum[1].description)
    a.taste("space")
    warten(a, "checked 1", f"^{re.escape(name)}$")
    warten(a, ANSAGE, "^angehakt$")
    a.taste("Left")
    warten(a, "expanded 0", f"^{re.escape(name)}$")
    zeile = baum[1]
    zeile.queryAction().doAction(0)
    bald(lambda: zeile.getState().contains(pyatspi.STATE_CHECKED), "not checked")


def fehler_werden_angesagt(a):
    a.cloud.kill()
    a.cloud.wait()
    a.gehoert.leeren()
    a.druecken("Sichern")
    warten(a, ANSAGE, "^Nicht gespeichert: .")
    a.druecken("Abbrechen")
    a.druecken("Einstellungen …")
    warten(a, ANSAGE, "^Playlisten nicht ladbar: .")
    gleich(len(a.gehoert.ansagen()), 2)


def main():
    a = Auftritt(sys.argv[1:4])
    schlecht = 0
    try:
        for fall in (urteil_und_countdown, neuer_abgleich_ist_neu,
                     tastatur_kommt_aus_dem_blatt_zurueck, fenster_und_zahlen,
                     auswahl_sagt_ihren_wert, baum_nennt_zeilen, baum_meldet_klappen_und_haken,
                     fehler_werden_angesagt):
            try:
                fall(a)
                print(f"PASS   : TestVorlesen::{fall.__name__}()", flush=True)
            except Gescheitert as grund:
                schlecht += 1
                print(f"FAIL!  : TestVorlesen::{fall.__name__}() {grund}", flush=True)
                break  # the others go on from here
    finally:
        a.schluss()
    return 1 if schlecht else 0


sys.exit(main())
