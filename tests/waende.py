#!/usr/bin/env python3
"""The walls of the house hold: a source sees the headers of the rooms that its room sees, and no
others; and docs/architecture.md shows the graph that is.

    tests/waende.py BUILD_FOLDER

Tries it: for each room and each header that it must not see, a source that includes it is compiled
as that room's sources are, and must fail for want of that header.
"""
import json
import pathlib
import re
import shlex
import subprocess
import sys

BAU = pathlib.Path(sys.argv[1]).resolve()
QUELLE = pathlib.Path(__file__).resolve().parent.parent


def raeume():
    zeilen = (BAU / "raeume.txt").read_text().splitlines()
    return {name.strip(): set(sieht.split()) for name, sieht in (z.split("→") for z in zeilen)}


def alles_sichtbare(graph, raum):
    gesehen, offen = set(), [raum]
    while offen:
        naechster = offen.pop()
        if naechster not in gesehen:
            gesehen.add(naechster)
            offen.extend(graph[naechster])
    return gesehen


def befehle():
    """How the sources of each room are compiled, without source and outputs."""
    ergebnis = {}
    for eintrag in json.loads((BAU / "compile_commands.json").read_text()):
        datei = pathlib.Path(eintrag["file"])
        if not datei.is_relative_to(QUELLE / "src"):
            continue
        worte = shlex.split(eintrag["command"])
        worte = worte[1:] if worte[0].endswith("ccache") else worte
        behalten, ueberspringen = [], False
        for wort in worte:
            if ueberspringen or wort in ("-c", "-MD", eintrag["file"]):
                ueberspringen = False
            elif wort in ("-o", "-MT", "-MF"):
                ueberspringen = True
            else:
                behalten.append(wort)
        raum = "_".join(datei.parent.relative_to(QUELLE / "src").parts)
        ergebnis["main" if datei.name == "main.cpp" else raum] = behalten
    return ergebnis


def kopfdatei(raum):
    wurzel = BAU / "raeume" / raum
    return sorted(wurzel.rglob("*.h"))[0].relative_to(wurzel)


def findet(befehl, datei):
    """Whether a source compiled like that finds the header."""
    lauf = subprocess.run(
        befehl + ["-w", "-E", "-x", "c++", "-", "-o", "/dev/null"],
        input=f'#include "{datei}"\n', text=True, capture_output=True,
        env={"PATH": "/usr/bin:/bin", "LC_ALL": "C"}, cwd=BAU, check=False)
    if lauf.returncode != 0 and not re.search(re.escape(str(datei)) + r".*(No such file|not found)",
                                              lauf.stderr):
        sys.exit(f"Trying {datei} failed for another reason:\n{lauf.stderr}")
    return lauf.returncode == 0


def main():
    graph = raeume()
    maengel = [f"{raum} has no sources" for raum in set(graph) - set(befehle())]
    for raum, befehl in sorted(befehle().items()):
        sichtbar = alles_sichtbare(graph, "app" if raum == "main" else raum)
        for anderer in graph:
            darf = anderer in sichtbar
            if findet(befehl, kopfdatei(anderer)) != darf:
                maengel.append(f"{raum} {'cannot' if darf else 'can'} include {kopfdatei(anderer)}")
    for datei in sorted((QUELLE / "src").rglob("*.[hc]*")):
        if re.search(r'#include "\.\.', datei.read_text(errors="replace")):
            maengel.append(f"{datei.relative_to(QUELLE)} climbs over the wall with \"..\"")
    if (BAU / "raeume.txt").read_text() not in (QUELLE / "docs/architecture.md").read_text():
        maengel.append("docs/architecture.md does not show the graph of raeume.txt")
    print("\n".join(maengel) or f"The walls of {len(graph)} rooms hold.")
    return 1 if maengel else 0


if __name__ == "__main__":
    sys.exit(main())
