#!/usr/bin/env python3
"""Puts one fault at a time into what draws and lays out, and says which test notices.

  tests/bilder/fehlerversuch.py BUILD_FOLDER [--anzahl N] [--keim N] [--datei PART_OF_PATH]

A fault drops a statement that paints or places something, changes a number by one or a fifth, or
takes another colour. By hand, with nothing uncommitted below src/: it takes half a minute for each.
"""

import argparse
import collections
import pathlib
import random
import re
import subprocess
import sys

RAEUME = ["ui", "settingswindow", "mainwindow"]
ANWEISUNG = re.compile(
    r"^\s*(?:\w+(?:\.|->))*(?:\w*[mM]alen|draw\w+|fill\w+|translate|rotate|set(?!Object|Accessible|Auto"
    r"|Tab|Buddy|Window)\w+|add(?!Action)\w+|resize|move\w*|update|show|hide|insert\w+)\(.*\);$")
ZAHL = re.compile(r"(?<![\w.\"])(\d+(?:\.\d+)?)(?![\w.\"])")
FARBE = re.compile(r"Farbe::(gut|warn|krit|schrift|sekundaer|tertiaer|akzentSchrift|akzent|flaeche|fenster"
                   r"|haarlinie|verweis|systemGruen|systemOrange|systemRot|gutWeich|warnWeich|kritWeich)\b")
HEX = re.compile(r"0x[0-9a-f]{6}\b")
FARBEN = ["schrift", "sekundaer", "akzent", "flaeche", "krit", "haarlinie"]

Fehler = collections.namedtuple("Fehler", "datei zeile neu art")


def andere_zahl(text, davor):
    if re.search(r"QColor\([^()]*$", davor):
        return str((int(text) + 40) % 256)
    if "." in text:
        return f"{float(text) * 1.2:g}"
    wert = int(text)
    return str(wert + 1) if wert < 10 else str(round(wert * 1.2))


def fehler_der_zeile(zeile):
    roh = zeile.rstrip("\n")
    if roh.lstrip().startswith(("//", "#", "using", "*")):
        return
    ohne_texte = re.sub(r'u?"(?:[^"\\]|\\.)*"', lambda m: "~" * len(m.group()), roh)
    code = ohne_texte.split("//")[0]
    if ANWEISUNG.match(code.rstrip()):
        yield "", "dropped"
    for fund in ZAHL.finditer(code):
        yield (roh[:fund.start()] + andere_zahl(fund.group(1), roh[:fund.start()]) + roh[fund.end():], "number")
    for fund in FARBE.finditer(code):
        andere = next(f for f in FARBEN if f != fund.group(1))
        yield (roh[:fund.start()] + "Farbe::" + andere + roh[fund.end():], "colour")
    for fund in HEX.finditer(code):
        verschoben = int(fund.group()[2:], 16) ^ 0x060606
        yield (roh[:fund.start()] + f"0x{verschoben:06x}" + roh[fund.end():], "colour")


def alle_fehler(wurzel, teil):
    for raum in RAEUME:
        for datei in sorted((wurzel / "src" / raum).glob("*.cpp")):
            if teil not in str(datei) or datei.name in ("knoten.cpp", "baumzugang.cpp"):
                continue
            for nummer, zeile in enumerate(datei.read_text().splitlines()):
                for neu, art in fehler_der_zeile(zeile):
                    yield Fehler(datei, nummer, neu, art)


def lauf(*befehl, **umgebung):
    return subprocess.run(befehl, capture_output=True, text=True, errors="replace", **umgebung)


def bemerkt(bau, raum):
    """The tests that fail: the pictures', else the room's own; None where it does not build."""
    if lauf("ninja", "-C", bau, "-j2", "tests_bilder", f"tests_{raum}").returncode != 0:
        return None
    for name in ("tst_bilder$", "tst_bilder_doppelt$", "tst_bilder_krumm$"):
        ergebnis = lauf("ctest", "--test-dir", bau, "-R", name, "--timeout", "120")
        if ergebnis.returncode != 0:
            return "pictures"
    ergebnis = lauf("env", "QT_QPA_PLATFORM=offscreen", "timeout", "120", f"{bau}/tests/tests_{raum}")
    return "room" if ergebnis.returncode != 0 else ""


def main():
    frage = argparse.ArgumentParser(description=__doc__)
    frage.add_argument("bau")
    frage.add_argument("--anzahl", type=int, default=40)
    frage.add_argument("--keim", type=int, default=1)
    frage.add_argument("--datei", default="")
    wahl = frage.parse_args()
    wurzel = pathlib.Path(__file__).resolve().parents[2]
    if lauf("git", "-C", str(wurzel), "status", "--porcelain", "src").stdout:
        sys.exit("There are changes below src/ that are not committed.")
    alle = list(alle_fehler(wurzel, wahl.datei))
    random.Random(wahl.keim).shuffle(alle)
    zaehler = collections.Counter()
    print(f"{len(alle)} faults to choose from", flush=True)
    for fehler in alle:
        if sum(zaehler.values()) - zaehler["no build"] >= wahl.anzahl:
            break
        vorher = fehler.datei.read_text()
        zeilen = vorher.splitlines(keepends=True)
        alt = zeilen[fehler.zeile]
        zeilen[fehler.zeile] = fehler.neu + "\n"
        try:
            fehler.datei.write_text("".join(zeilen))
            wer = bemerkt(wahl.bau, fehler.datei.parent.name)
        finally:
            fehler.datei.write_text(vorher)
        urteil = "no build" if wer is None else wer or "MISSED"
        zaehler[urteil] += 1
        if urteil != "no build":
            ort = f"{fehler.datei.relative_to(wurzel)}:{fehler.zeile + 1}"
            print(f"{urteil:9} {fehler.art:8} {ort}: {alt.strip()} -> {fehler.neu.strip()}",
                  flush=True)
    print(dict(zaehler))


if __name__ == "__main__":
    main()
