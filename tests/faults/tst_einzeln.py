"""One program for one data folder, whatever happens to the bus and to the first one: its window comes, or the
second takes over, or one sentence is said with status 1. Never silence with 0, never two."""

import os
import signal
import subprocess
import threading

from bus import Bus, Fremder
from pruefstand import Welt, faelle, fall, main, passt, pruefen, warten
from server import Server, antwort, cloud

GESTARTET = "gestartet (1.4, Gerät faults-mac)"
KEINER = "unix:path=/gibt/es/nicht"


class Paar:
    """A home with a cloud, and the starts in it."""

    def __init__(self, welt, server):
        self.welt = welt
        self.server = server
        welt.konto(server.url)

    def starts(self):
        return self.welt.protokoll().count(GESTARTET)

    def ende_erster(self):
        return self.erster.beenden()

    def ersten(self, *argumente):
        self.erster = self.welt.starten(*argumente)
        warten(lambda: self.starts() == 1 and self.server.posts() == 1, was="the first start")
        warten(lambda: any(z.startswith("  ->") for z in self.welt.protokoll()))
        return self.erster

    def zweiter_ruft(self, frist=4.5):
        """A second start has the first one sync again, and ends with 0 before it is too late."""
        zweiter = self.welt.starten()
        status = zweiter.ende(20)
        pruefen(status == 0, "the second start ends with", status, zweiter.fehler())
        warten(lambda: self.server.posts() == 2, 10, "another sync by the first one")
        pruefen(zweiter.dauer < frist, f"the second start took {zweiter.dauer:.1f} s")
        pruefen(self.starts() == 1 and self.erster.laeuft(), self.welt.protokoll())


def paar(tun):
    """A case with a home and a cloud."""

    def mit(*werte):
        with Welt() as welt, Server(cloud(antwort())) as server:
            tun(Paar(welt, server), *werte)

    return mit


def ohne_bus(_welt):
    pass


BUSSE = [("without a bus", ohne_bus), ("with a bus", Bus)]


@faelle([(f"second start {name}", machen) for name, machen in BUSSE])
@paar
def zweiter(p, machen):
    machen(p.welt)
    p.ersten()
    p.zweiter_ruft()
    p.ende_erster()


@fall("first with a bus, second without")
@paar
def nur_erster_mit_bus(p):
    Bus(p.welt)
    p.ersten()
    p.welt.umgebung["DBUS_SESSION_BUS_ADDRESS"] = KEINER
    p.zweiter_ruft()


@fall("first without a bus, second with one")
@paar
def nur_zweiter_mit_bus(p):
    p.ersten()
    Bus(p.welt)
    p.zweiter_ruft()


@fall("first and second with different buses")
@paar
def zwei_busse(p):
    Bus(p.welt)
    p.ersten()
    os.rename(p.welt.pfad("bus"), p.welt.pfad("alter-bus"))
    Bus(p.welt)
    p.zweiter_ruft()


@fall("bus killed")
@paar
def bus_tot(p):
    bus = Bus(p.welt)
    p.ersten()
    bus.toeten()
    p.zweiter_ruft()


@fall("bus stopped")
@paar
def bus_steht(p):
    bus = Bus(p.welt)
    p.ersten()
    bus.anhalten()
    p.zweiter_ruft()


@fall("bus stopped before the first start")
@paar
def bus_stand_schon(p):
    Bus(p.welt).anhalten()
    p.ersten()
    p.zweiter_ruft()


@faelle([("bus killed, --beenden", lambda b: b.toeten()),
         ("bus stopped, --beenden", lambda b: b.anhalten())])
def beenden_ohne_bus(tun):
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        bus = Bus(welt)
        erster = p.ersten()
        tun(bus)
        pruefen(welt.starten("--beenden").ende(10) == 0, "--beenden fails")
        pruefen(erster.ende(5) == 0, "the first one lives on")


@faelle([(f"first stopped, {name} {' '.join(argumente)}", machen, argumente) for name, machen in BUSSE
         for argumente in ((), ("--abgleichen",), ("--beenden",))])
def erster_steht(machen, argumente):
    """The second says so after 3 s and ends with 1."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        machen(welt)
        erster = p.ersten()
        os.kill(erster.pid, signal.SIGSTOP)
        zweiter = welt.starten(*argumente)
        status = zweiter.ende(15)
        pruefen(status == 1, "status", status, zweiter.fehler())
        pruefen(2.5 <= zweiter.dauer <= 5, f"{zweiter.dauer:.1f} s")
        passt(r"^[^\n]*kalvaro[^\n]*antwortet[^\n]*\n$", zweiter.fehler())
        os.kill(erster.pid, signal.SIGCONT)
        pruefen(erster.laeuft(), "the first one is gone")


@faelle([(f"first killed while the second asks, {name}", machen) for name, machen in BUSSE])
def erster_stirbt(machen):
    """The second takes over."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        machen(welt)
        erster = p.ersten()
        os.kill(erster.pid, signal.SIGSTOP)
        zweiter = welt.starten()
        stand = [0.0]

        def wartet():
            """It has stopped working for a while: it waits for the answer."""
            vorher, stand[0] = stand[0], zweiter.rechenzeit()
            threading.Event().wait(0.2)
            return stand[0] > 0 and vorher == stand[0]

        warten(wartet)
        erster.toeten()
        warten(lambda: p.starts() == 2, 10, "a second start")
        warten(lambda: server.posts() == 2, 10, "its sync")
        pruefen(zweiter.laeuft(), "the second has ended with", zweiter.prozess.returncode)
        zweiter.beenden()


@faelle([(f"start right after the first was killed, {name}", machen) for name, machen in BUSSE])
def nach_dem_abschuss(machen):
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        machen(welt)
        p.ersten().toeten()
        zweiter = welt.starten()
        warten(lambda: server.posts() == 2, 10, "a sync by the second")
        pruefen(p.starts() == 2, welt.protokoll())
        zweiter.beenden()


@faelle([(f"stranger holds the name: {art}", art) for art in ("silent", "erring", "empty")])
def fremder(art):
    """Stops neither the first nor the second."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        Bus(welt)
        Fremder(welt, art)
        p.ersten()
        p.zweiter_ruft()
        p.ende_erster()


@faelle([(f"start while a young one ends, {name}", machen) for name, machen in BUSSE])
def ende_und_anfang(machen):
    """The one that ends confirms nothing: the new start stays."""
    for _ in range(24):
        with Welt() as welt, Server(cloud(antwort())) as server:
            p = Paar(welt, server)
            machen(welt)
            erster = welt.starten("--hintergrund")
            warten(lambda: p.starts() == 1)
            os.kill(erster.pid, signal.SIGTERM)
            neuer = welt.starten()
            erster.ende(5)
            warten(lambda: p.starts() == 2 or not neuer.laeuft(), 10)
            pruefen(p.starts() == 2, "the new start ended with", neuer.prozess.poll(),
                    neuer.fehler())
            neuer.toeten()


@faelle([("data folder that cannot be written, with a bus", Bus)])
def nur_lesbar(machen):
    """One still starts, and the bus decides who is first."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        for befehl in (["mount", "--bind", welt.daten, welt.daten],
                       ["mount", "-o", "remount,ro,bind", welt.daten]):
            subprocess.run(befehl, check=True)
        welt.aufraeumen_.callback(subprocess.run, ["umount", "-l", welt.daten], check=True)
        machen(welt)
        erster = welt.starten()
        warten(lambda: server.posts() == 1, was="a sync")
        zweiter = welt.starten()
        pruefen(zweiter.ende(10) == 0, zweiter.fehler())
        warten(lambda: server.posts() == 2, 10, "another sync by the first one")
        erster.beenden()


@faelle([("two data folders", ohne_bus), ("two data folders on one bus", Bus)])
def zwei_ordner(machen):
    """They are two programs."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        machen(welt)
        p.ersten()
        welt.daten = welt.pfad("andere/kalvaro")
        os.makedirs(welt.daten)
        welt.umgebung["XDG_DATA_HOME"] = welt.pfad("andere")
        welt.konto(server.url)
        zweiter = welt.starten()
        warten(lambda: server.posts() == 2 and p.starts() == 1, 10, "a sync of the other program")
        pruefen(zweiter.laeuft() and p.erster.laeuft(), "one of the two is gone")


def viele(machen, anzahl):
    """Exactly one stays."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        p = Paar(welt, server)
        machen(welt)
        alle = [welt.starten("--hintergrund") for _ in range(anzahl)]
        warten(lambda: sum(lauf.laeuft() for lauf in alle) <= 1, 100, "the end of all but one")
        bleibende = [lauf for lauf in alle if lauf.laeuft()]
        pruefen(len(bleibende) == 1, [lauf.prozess.returncode for lauf in alle])
        pruefen(p.starts() == 1, p.starts(), "starts")
        schlecht = [(lauf.prozess.returncode, lauf.fehler()) for lauf in alle
                    if lauf not in bleibende and lauf.prozess.returncode != 0 and
                    not (lauf.prozess.returncode == 1 and "antwortet" in lauf.fehler())]
        pruefen(not schlecht, schlecht[:3])
        bleibende[0].beenden()


for nummer_, (name_, machen_) in enumerate(BUSSE):
    fall(f"200 starts at once {name_}", stufe=1 + nummer_)(
        lambda machen=machen_: viele(machen, 200))

if __name__ == "__main__":
    main()
