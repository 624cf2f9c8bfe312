#!/usr/bin/python3
"""Counts instructions with callgrind: what a program does, however busy the machine is.

    bench/anweisungen.py BUILD_FOLDER              compares with bench/stand.json; 1 when a row has grown
    bench/anweisungen.py BUILD_FOLDER --erneuern   writes bench/stand.json
    bench/anweisungen.py BUILD_FOLDER --laeufe 10  prints the rows of ten runs and their spread
"""

import json
import os
import re
import resource
import signal
import subprocess
import sys

import antworten
from buehne import HIER, Buehne, Gescheitert, Heim, Prozess

NIEMAND = "http://127.0.0.1:1"  # nobody listens there, so the verdict is "offline"
STAND = os.path.join(HIER, "stand.json")
WACHSTUM = 1.05
PLAYLISTEN = 2000

BODEN = "bare window"
REIHEN = {
    "start": "from exec to the shown offline verdict",
    "blatt": f"from the answer with {PLAYLISTEN} playlists to the sheet, each playlist",
    "blick": "a tick of the watch, 500 processes",
}


def _callgrind(buehne, umgebung, *befehl):
    """Starts a program under callgrind; what it says is in the file `zahl` of the stage."""
    zahl = os.path.join(buehne.ordner, "zahl")
    with open(zahl, "w", encoding="ascii") as fehler:
        # A profile is not wanted, and a program that is ended by a signal dumps no core.
        return buehne.starten(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                               *befehl], env=umgebung, stdout=subprocess.DEVNULL, stderr=fehler,
                              preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CORE, (0, 0)))


def _gezaehlt(buehne):
    with open(os.path.join(buehne.ordner, "zahl"), encoding="utf-8", errors="replace") as datei:
        text = datei.read()
    zahl = re.search(r"Collected : (\d+)", text)
    if not zahl:
        raise Gescheitert("callgrind counted nothing: " + text[-500:])
    return int(zahl[1])


def start(buehne, *befehl, urteil=False):
    """From exec until all is shown and the program rests; with `urteil`, its verdict as well."""
    heim = Heim(buehne, NIEMAND)
    kind = _callgrind(buehne, heim.umgebung, *befehl)
    if urteil:
        heim.urteil()
    Prozess(kind.pid).ruhe()
    # No program of these handles this signal, so not one instruction of an end is counted.
    buehne.beenden(kind, signal.SIGUSR2)
    return _gezaehlt(buehne)


def wenigste(*umstaende, **weitere):
    """The least of three starts: how often a window is laid out depends on when its events come together."""
    return min(start(*umstaende, **weitere) for _ in range(3))


def lauf(buehne, *befehl):
    """A program that ends by itself."""
    heim = Heim(buehne, NIEMAND)
    kind = _callgrind(buehne, heim.umgebung, *befehl)
    if kind.wait() != 0:
        raise Gescheitert(f"{befehl[0]} failed")
    buehne.kinder.remove(kind)
    return _gezaehlt(buehne)


def _zuwachs(buehne, programm, *argumente):
    """What the second of two runs takes more than the first."""
    eins, zwei = (lauf(buehne, programm, argument) for argument in argumente)
    return zwei - eins


def zaehlen(bau):
    """The instructions of all rows and of the floor."""
    with Buehne() as buehne:
        ordner = buehne.ordner
        return {
            BODEN: wenigste(buehne, f"{bau}/kalvaro-bench-boden"),
            "start": wenigste(buehne, f"{bau}/kalvaro", urteil=True),
            "blatt": _zuwachs(buehne, f"{bau}/kalvaro-bench-einstellungen",
                              antworten.playlistendatei(ordner, 100),
                              antworten.playlistendatei(ordner, 100 + PLAYLISTEN)) // PLAYLISTEN,
            "blick": _zuwachs(buehne, f"{bau}/kalvaro-bench-prozesse", "20", "120") // 100,
        }


def _cache(bau, name):
    with open(f"{bau}/CMakeCache.txt", encoding="utf-8", errors="replace") as datei:
        treffer = re.search(rf"^{name}:[A-Z]+=(.*)$", datei.read(), re.M)
    return treffer[1] if treffer else ""


def machart(bau):
    """What the figures depend on beside our code."""
    qt = subprocess.run(["qmake6", "-query", "QT_VERSION"], capture_output=True, text=True, check=False)
    uebersetzer = subprocess.run([_cache(bau, "CMAKE_CXX_COMPILER"), "-dumpfullversion"],
                                 capture_output=True, text=True, check=False)
    return {"qt": qt.stdout.strip(), "compiler": uebersetzer.stdout.strip()}


def vergleichen(zahlen, heute, stand):
    """Prints a line for each row; whether none has grown too much."""
    # With another Qt, compiler or set of fonts the floor moves as well; then shares of it are compared.
    boden = zahlen[BODEN] / stand["zahlen"][BODEN]
    gleich = heute == stand["machart"] and abs(boden - 1) < 0.02
    mass = 1 if gleich else boden
    if not gleich:
        print(f"Taken with {stand['machart']}, now {heute}: compared by the floor, "
              f"which takes {boden:.3f} of what it took.")
    gut = True
    for reihe, was in REIHEN.items():
        soll = stand["zahlen"][reihe] * mass
        anteil = zahlen[reihe] / soll
        zuviel = anteil > WACHSTUM
        gut = gut and not zuviel
        print(f"{'GROWN ' if zuviel else 'ok    '} {was}: {zahlen[reihe]:,} instructions, "
              f"{anteil:.3f} of {soll:,.0f}")
    if not gut:
        print("More than 5 % above bench/stand.json. If that is what it has to cost:\n"
              "    bench/anweisungen.py BUILD_FOLDER --erneuern")
    return gut


def streuung(bau, laeufe):
    alle = []
    for _ in range(laeufe):
        alle.append(zaehlen(bau))
        print(json.dumps(alle[-1]), flush=True)
    for name in alle[0]:
        werte = sorted(z[name] for z in alle)
        print(f"{name}: {werte[0]:,} to {werte[-1]:,}, spread {(werte[-1] / werte[0] - 1) * 100:.2f} %")


def main():
    bau, *rest = sys.argv[1:]
    bau = os.path.abspath(bau)
    if rest[:1] == ["--laeufe"]:
        streuung(bau, int(rest[1]))
        return 0
    zahlen = zaehlen(bau)
    if rest == ["--erneuern"]:
        with open(STAND, "w", encoding="utf-8") as datei:
            json.dump({"machart": machart(bau), "zahlen": zahlen}, datei, indent=2)
            datei.write("\n")
        return 0
    with open(STAND, encoding="utf-8") as datei:
        stand = json.load(datei)
    return 0 if vergleichen(zahlen, machart(bau), stand) else 1


if __name__ == "__main__":
    sys.exit(main())
