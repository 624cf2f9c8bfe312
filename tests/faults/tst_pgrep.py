"""/usr/bin/pgrep slow, hanging, missing or talking nonsense, with and without a rekordbox that runs: no sync
begins beside it, and the program stays awake."""

import os
import signal
import subprocess

from pruefstand import Welt, faelle, main, passt, pruefen, warten
from server import Server, antwort, cloud

# What takes the tool's place. Each writes down that it was called.
WERKZEUGE = {
    "slow": "sleep 4; exit 1",
    "hanging": "trap '' TERM INT HUP; while :; do sleep 100; done",
    "endless": "while :; do echo 1; done",
    "erring": "exit 2",
    "crashing": "kill -SEGV $$",
    "with nonsense": "printf '\\377\\376\\n'; exit 3",
    "leaving its output open": "sleep 1000 & exit 1",
}


def ersetzen(welt, was):
    """The command before a program that then finds another tool in that place."""
    marke = welt.pfad("gefragt")
    werkzeug = welt.pfad("pgrep")
    with open(werkzeug, "w", encoding="ascii") as datei:
        datei.write(f"#!/bin/sh\n: >>{marke}\n{was}\n")
    os.chmod(werkzeug, 0o755 if was else 0o644)
    return ["unshare", "--mount", "sh", "-c",
            'mount --bind "$0" /usr/bin/pgrep && exec "$@"', werkzeug], marke


def rekordbox_laeuft(welt):
    """A process in a bundle, as a running application is one. Every program here sees it, so cases
    without one come in a later stage."""
    prozess = subprocess.Popen([welt.rekordbox(programm="/bin/sleep", name="rekordbox"), "1000"])

    class Halter:
        @staticmethod
        def toeten():
            prozess.kill()
            prozess.wait()

    welt.halten(Halter)
    pfad = f"/proc/{prozess.pid}/exe"
    warten(lambda: os.readlink(pfad).endswith("/rekordbox.app/Contents/MacOS/rekordbox"))


TABELLE = [(f"pgrep {name}", was) for name, was in WERKZEUGE.items()] + [("pgrep missing", "")]
OHNE_ANTWORT = [zeile for zeile in TABELLE if zeile[0] != "pgrep leaving its output open"]


@faelle([(f"{name}, rekordbox runs: synced beside it", was)
         for name, was in OHNE_ANTWORT])
def kein_abgleich(was):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        vor, _ = ersetzen(welt, was)
        rekordbox_laeuft(welt)
        passt("^rekordbox läuft\n", welt.bild(vor=vor, geduld=30))
        pruefen(server.verbindungen == 0, "the server was asked", server.anfragen[:1])


@faelle([(f"{name}, no rekordbox: no sync", was) for name, was in TABELLE], stufe=1)
def doch_ein_abgleich(was):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        vor, _ = ersetzen(welt, was)
        passt("^Bibliothek ist abgeglichen\n", welt.bild(vor=vor, geduld=30))


@faelle([(f"{name}: the end waits for it", was) for name, was in TABELLE[:4]], stufe=1)
def ende(was):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        vor, marke = ersetzen(welt, was)
        lauf = welt.starten(vor=vor)
        warten(lambda: os.path.exists(marke), was="the question to pgrep")
        lauf.beenden(signal.SIGTERM)


@faelle([(f"{name}: the window is frozen", was) for name, was in TABELLE[:3]])
def wach(was):
    """Every question that the program may ask meanwhile is answered within half a second."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        vor, marke = ersetzen(welt, was)
        rekordbox_laeuft(welt)
        lauf = welt.starten(vor=vor)
        for male in range(3):
            warten(lambda: os.path.exists(marke), was="the question to pgrep")
            zweiter = welt.starten("--hintergrund")
            pruefen(zweiter.ende(20) == 0, zweiter.fehler())
            pruefen(zweiter.dauer < 1.0, f"question {male}: {zweiter.dauer:.1f} s")
        lauf.beenden(signal.SIGTERM)


if __name__ == "__main__":
    main(4)
