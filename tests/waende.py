#!/usr/bin/env python3
"""The walls of the house hold: a source sees the headers of the rooms that its room sees, and no
others; and docs/architecture.md shows the graph that is.

    tests/waende.py BUILD_FOLDER

Tries it: the preprocessor, called as for that room's sources, is asked for a header of each room.
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
            elif wort in ("-o", "-MT", "-MF", "-include"):  # what is precompiled are others' headers
                ueberspringen = True
            else:
                behalten.append(wort)
        raum = "_".join(datei.parent.relative_to(QUELLE / "src").parts)
        ergebnis["main" if datei.name == "main.cpp" else raum] = behalten
    return ergebnis


def kopfdatei(raum):
    wurzel = BAU / "raeume" / raum
    return sorted(wurzel.rglob("*.h"))[0].relative_to(wurzel)


def gefunden(befehl, dateien):
    """Which of the headers a source compiled like that finds."""
    frage = "".join(f'#if __has_include("{datei}")\n"{datei}"\n#endif\n' for datei in dateien)
    lauf = subprocess.run(
        befehl + ["-w", "-E", "-P", "-x", "c++", "-", "-o", "-"], input=frage, text=True,
        capture_output=True, env={"PATH": "/usr/bin:/bin", "LC_ALL": "C"}, cwd=BAU, check=False)
    if lauf.returncode != 0:
        sys.exit(f"The preprocessor failed:\n{lauf.stderr}")
    return {pathlib.Path(datei) for datei in re.findall('"(.*)"', lauf.stdout)}


def main():
    graph = raeume()
    maengel = [f"{raum} has no sources" for raum in set(graph) - set(befehle())]
    kopfdateien = {raum: kopfdatei(raum) for raum in graph}
    for raum, befehl in sorted(befehle().items()):
        findet = gefunden(befehl, kopfdateien.values())
        sichtbar = alles_sichtbare(graph, "app" if raum == "main" else raum)
        for anderer in graph:
            darf = anderer in sichtbar
            if (kopfdateien[anderer] in findet) != darf:
                maengel.append(
                    f"{raum} {'cannot' if darf else 'can'} include {kopfdateien[anderer]}")
    for datei in sorted((QUELLE / "src").rglob("*.[hc]*")):
        if re.search(r'#include "\.\.', datei.read_text(errors="replace")):
            maengel.append(f"{datei.relative_to(QUELLE)} climbs over the wall with \"..\"")
    if (BAU / "raeume.txt").read_text() not in (QUELLE / "docs/architecture.md").read_text():
        maengel.append("docs/architecture.md does not show the graph of raeume.txt")
    print("\n".join(maengel) or f"The walls of {len(graph)} rooms hold.")
    return 1 if maengel else 0


if __name__ == "__main__":
    sys.exit(main())
