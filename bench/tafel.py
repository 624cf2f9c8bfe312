#!/usr/bin/python3
"""What kalvaro costs, against the floor: a bare Qt Widgets window in the same run.

    bench/tafel.py BUILD_FOLDER [--json] [--laeufe 5] [--nur NAME] [--bau]

Each row is the median of five runs; ratios are those of five pairs, kalvaro and floor in turn. `--nur` takes
one group of rows (start, verborgen, blatt, halt, zahlen); `--bau` measures a whole build and all tests as
well, which takes minutes. Holds of the event loop are waits for an answer of the program's own, less what its
main thread waited for a processor; memory is PSS.
"""

import argparse
import json
import os
import re
import shutil
import statistics
import subprocess
import sys

import antworten
import anweisungen
from buehne import Buehne, Cloud, Fenster, Heim, Prozess, warten

VIELE = 100_000
PLAYLISTEN = "/api/playlisten"
ABGLEICH = "/api/abgleich"


class Tafel:
    def __init__(self, laeufe):
        self.laeufe = laeufe
        self.reihen = []

    def reihe(self, was, werte, ziel, einheit="", boden=None):
        """`werte` and `boden` are those of the pairs; with a floor the aim is a ratio."""
        jetzt = statistics.median(werte)
        zeile = {"was": was, "jetzt": jetzt, "einheit": einheit, "ziel": ziel, "werte": werte}
        if boden is not None:
            zeile["boden"] = statistics.median(boden)
            zeile["anteile"] = [a / b for a, b in zip(werte, boden)]
            zeile["anteil"] = statistics.median(zeile["anteile"])
        zeile["gut"] = ziel is None or zeile.get("anteil", jetzt) <= ziel
        self.reihen.append(zeile)
        print(self.text(zeile), file=sys.stderr, flush=True)

    @staticmethod
    def text(zeile):
        def zahl(wert, einheit):
            return f"{wert:.4g} {einheit}".strip() if wert < 1000 else f"{wert:,.0f} {einheit}".strip()

        boden = zahl(zeile["boden"], zeile["einheit"]) if "boden" in zeile else ""
        anteil = f"{zeile['anteil']:.2f}" if "anteil" in zeile else ""
        ziel = "" if zeile["ziel"] is None else \
            "≤ " + zahl(zeile["ziel"], "" if anteil else zeile["einheit"])
        marke = "ok" if zeile["gut"] else "over"
        return (f"{zeile['was']:<52}{zahl(zeile['jetzt'], zeile['einheit']):>16}{boden:>16}"
                f"{anteil:>8}{ziel:>12}  {marke if ziel else ''}")


def starten(tafel, bau):
    """The start with a window, and the memory then."""
    with Buehne() as buehne:
        cloud = Cloud()
        cloud.antworten[ABGLEICH] = antworten.urteil()

        def eins(befehl, urteil):
            heim = Heim(buehne, cloud.adresse)
            fenster = Fenster(buehne, bau, [befehl], heim.umgebung)
            if urteil:
                heim.urteil()
            fenster.prozess.ruhe()
            pss = fenster.prozess.pss() / 1024
            fenster.schluss()
            return fenster.dauer, pss

        eins(f"{bau}/kalvaro-bench-boden", False)  # warm caches for both
        eins(f"{bau}/kalvaro", True)
        paare = [(eins(f"{bau}/kalvaro-bench-boden", False), eins(f"{bau}/kalvaro", True))
                 for _ in range(tafel.laeufe)]
        for i, was, ziel, einheit in ((0, "start to window", 1.2, "ms"),
                                      (1, "memory with a window", 1.25, "MiB")):
            tafel.reihe(was, [k[i] for _, k in paare], ziel, einheit, [b[i] for b, _ in paare])


def verborgen(tafel, bau):
    """In the tray since the start, after the first sync."""
    sekunden = 30
    with Buehne() as buehne:
        cloud = Cloud()
        cloud.antworten[ABGLEICH] = antworten.urteil()
        paare = []
        for lauf in range(tafel.laeufe):
            heim = Heim(buehne, cloud.adresse)
            fenster = Fenster(buehne, bau, [f"{bau}/kalvaro-bench-boden"], heim.umgebung)
            fenster.prozess.ruhe()
            boden = (fenster.prozess.pss() / 1024, len(fenster.prozess.faeden()))
            fenster.schluss()
            kind = buehne.starten([f"{bau}/kalvaro", "--hintergrund"], env=heim.umgebung,
                                  stderr=subprocess.DEVNULL)
            prozess = Prozess(kind.pid)
            heim.urteil()
            prozess.ruhe()
            paare.append((boden, (prozess.pss() / 1024, len(prozess.faeden()))))
            if lauf == 0:
                ruhe = ruhen(prozess, sekunden)
            buehne.beenden(kind)
        tafel.reihe("memory hidden since the start", [k[0] for _, k in paare], 1.0, "MiB",
                    [b[0] for b, _ in paare])
        tafel.reihe("threads hidden", [k[1] for _, k in paare], 1.0, "", [b[1] for b, _ in paare])
        tafel.reihe("wake-ups hidden, each 3 s", [ruhe[0] * 3 / sekunden], 1.0)
        tafel.reihe(f"processes forked in {sekunden} s hidden", [ruhe[1]], 0)


def ruhen(prozess, sekunden):
    """How often a process was woken in that time, and how many processes were begun in its namespace."""

    def letzte():  # proc(5), "loadavg": the process id that was given last
        with open("/proc/loadavg", encoding="ascii") as datei:
            return int(datei.read().split()[4])

    vorher = prozess.weckungen(), letzte()
    warten(lambda zeit=[0]: zeit.__setitem__(0, zeit[0] + 1) or zeit[0] * 0.02 >= sekunden, "time",
           sekunden * 2)
    return prozess.weckungen() - vorher[0], letzte() - vorher[1]


def halten(tafel, bau):
    """How long the event loop of the real program is held by large answers, and what the sheet takes."""
    with Buehne() as buehne:
        cloud = Cloud()
        gross = [antwortHalt(buehne, bau, cloud) for _ in range(tafel.laeufe)]
        tafel.reihe("longest hold, a verdict of 50 MiB", gross, 30, "ms")
        cloud.antworten[ABGLEICH] = antworten.urteil()
        cloud.antworten[PLAYLISTEN] = antworten.playlisten(VIELE)
        cloud.verzug = {PLAYLISTEN: 2}
        blaetter = [blattHalt(buehne, bau, cloud) for _ in range(tafel.laeufe)]
        tafel.reihe("longest hold, the sheet with 100,000 playlists", [b[0] for b in blaetter], 30, "ms")
        tafel.reihe("memory of the sheet, 100,000", [b[1] for b in blaetter], 60, "MB")
        tafel.reihe("left of it when it has closed", [b[2] for b in blaetter], 6, "MB")


def antwortHalt(buehne, bau, cloud):
    cloud.antworten[ABGLEICH] = antworten.urteil(50 << 20)
    cloud.verzug = {ABGLEICH: 2}
    heim = Heim(buehne, cloud.adresse)
    fenster = Fenster(buehne, bau, [f"{bau}/kalvaro"], heim.umgebung)
    fenster.prozess.ruhe(0.5)
    fenster.takt()
    heim.urteil()
    fenster.prozess.still()
    halt = fenster.halt()
    fenster.schluss()
    return halt


def blattHalt(buehne, bau, cloud):
    heim = Heim(buehne, cloud.adresse)
    fenster = Fenster(buehne, bau, [f"{bau}/kalvaro"], heim.umgebung)
    heim.urteil()
    fenster.prozess.ruhe()
    cloud.gefragt.clear()
    vorher = fenster.prozess.pss()
    fenster.taste("Tab", "Tab", "space")
    fenster.prozess.ruhe(0.5)  # the sheet is there, the answer is still to come
    fenster.takt()
    warten(lambda: cloud.hat(PLAYLISTEN), "the playlists are asked for")
    fenster.prozess.still()
    offen = fenster.prozess.pss()
    fenster.taste("Escape")
    fenster.prozess.still()
    halt = fenster.halt()
    danach = fenster.prozess.pss()
    fenster.schluss()
    return halt, (offen - vorher) * 1024 / 1e6, (danach - vorher) * 1024 / 1e6


def bedienen(tafel, bau):
    """The sheet, by a program that links the same rooms; and the watch."""
    with Buehne(mitBus=False) as buehne:
        heim = Heim(buehne, anweisungen.NIEMAND)

        def zeiten(*befehl):
            ausgabe = subprocess.run(befehl, env=heim.umgebung, capture_output=True, text=True,
                                     check=True).stdout
            return {name: float(wert) for name, wert in re.findall(r"^(\w+) ([\d.]+)$", ausgabe, re.M)}

        def blatt(anzahl):
            return zeiten(f"{bau}/kalvaro-bench-einstellungen",
                          antworten.playlistendatei(buehne.ordner, anzahl), str(anzahl))

        blatt(1000)
        paare = [(blatt(VIELE // 2), blatt(VIELE)) for _ in range(tafel.laeufe)]
        halb, ganz = zip(*paare)
        tafel.reihe("answer to usable sheet, 100,000", [g["blatt"] for g in ganz], 200, "ms")
        tafel.reihe("… against 50,000", [g["blatt"] for g in ganz], 2.2, "ms", [h["blatt"] for h in halb])
        for name, was, ziel in (("taste", "keystroke in the search, 100,000", 16),
                                ("haken", "checking all, 100,000", None),
                                ("aufklappen", "opening all folders, 100,000", None),
                                ("seite", "scrolling by a page, 100,000", None)):
            tafel.reihe(was, [g[name] for g in ganz], ziel, "ms")
        tafel.reihe("tick of the watch, 500 processes",
                    [zeiten(f"{bau}/kalvaro-bench-prozesse")["blick"] for _ in range(tafel.laeufe)],
                    0.1, "ms")


def zaehlen(tafel, bau):
    zahlen = anweisungen.zaehlen(bau)
    tafel.reihe("instructions, exec to shown offline verdict", [zahlen["start"] / 1e6], 1.6, "M",
                [zahlen[anweisungen.BODEN] / 1e6])
    tafel.reihe("instructions of the sheet, each playlist", [zahlen["blatt"]], None)
    tafel.reihe("instructions of a tick of the watch", [zahlen["blick"] / 1e6], None, "M")


def bauen(tafel):
    """A whole build and all tests on two processors, in a build folder of its own."""
    ordner = "build/bench-bau"
    shutil.rmtree(ordner, ignore_errors=True)
    zeile = re.compile(r"^(?:gesamt )([\d.]+)$", re.M)

    def dauer(*befehl):
        lauf = subprocess.run(["bash", "-c", 'TIMEFORMAT="gesamt %R"; time "$@" >build/bench-bau.log 2>&1',
                               "bash", *befehl], capture_output=True, text=True, check=True)
        return float(zeile.search(lauf.stderr)[1])

    subprocess.run(["cmake", "--preset", "release", "-B", ordner], check=True, stdout=subprocess.DEVNULL)
    zwei = ["taskset", "-c", "0,1"]
    demo = dauer(*zwei, "ninja", "-C", ordner, "-j2", "kalvaro", "kalvaro-democloud",
                 "kalvaro-demorekordbox")
    rest = dauer(*zwei, "ninja", "-C", ordner, "-j2")
    tests = dauer(*zwei, "ctest", "--test-dir", ordner, "-j2")
    tafel.reihe("first make demo, 2 processors", [demo], 45, "s")
    tafel.reihe("first make test after it, 2 processors", [rest + tests], 107, "s")
    tafel.reihe("… of it the tests", [tests], None, "s")


GRUPPEN = {"start": starten, "zahlen": zaehlen, "verborgen": verborgen, "halt": halten, "blatt": bedienen}


def main():
    leser = argparse.ArgumentParser()
    leser.add_argument("bau")
    leser.add_argument("--json", action="store_true")
    leser.add_argument("--laeufe", type=int, default=5)
    leser.add_argument("--nur", choices=GRUPPEN)
    leser.add_argument("--bau", action="store_true", dest="mitBau")
    wahl = leser.parse_args()
    bau = os.path.abspath(wahl.bau)
    tafel = Tafel(wahl.laeufe)
    print(f"{'':<52}{'now':>16}{'floor':>16}{'ratio':>8}{'aim':>12}", file=sys.stderr)
    for name, gruppe in GRUPPEN.items():
        if wahl.nur in (None, name):
            gruppe(tafel, bau)
    if wahl.mitBau:
        bauen(tafel)
    if wahl.json:
        json.dump({"machart": anweisungen.machart(bau), "reihen": tafel.reihen}, sys.stdout, indent=2,
                  ensure_ascii=False)
        print()
    return 0


if __name__ == "__main__":
    sys.exit(main())
