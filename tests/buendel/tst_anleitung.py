#!/usr/bin/env python3
"""What docs/macos.md and the workflow speak of is there: they are for people who cannot try it here first.

    tests/buendel/tst_anleitung.py CLASS

KALVARO_BAU is the build folder."""
import json
import os
import pathlib
import re
import subprocess
import unittest

QUELLE = pathlib.Path(__file__).resolve().parent.parent.parent
MACOS = QUELLE / "packaging/macos"


def quellen():
    return [datei for endung in ("cpp", "h", "mm") for datei in (QUELLE / "src").rglob(f"*.{endung}")]


def schritte():
    """The words that bauen.sh understands."""
    return re.findall(r"^    ([a-z]+)\) ", (MACOS / "bauen.sh").read_text(), flags=re.MULTILINE)


class Anleitung(unittest.TestCase):
    def setUp(self):
        self.text = (QUELLE / "docs/macos.md").read_text()
        self.stellen = re.findall(r"`([^`\n]+)`", self.text)

    def test_sie_sagt_zuerst_was_nie_gelaufen_ist(self):
        self.assertEqual(self.text.splitlines()[2].split("**")[1], "Nothing of this has ever run on a Mac.")

    def test_jede_datei_gibt_es(self):
        pfade = {stelle.split()[0] for stelle in self.stellen
                 if re.match(r"(src|tests|packaging|cmake|tools|docs)/", stelle)}
        self.assertGreater(len(pfade), 20)
        for pfad in sorted(pfade):
            with self.subTest(pfad):
                self.assertTrue((QUELLE / pfad).exists())

    def test_jedes_skript_gibt_es(self):
        for name in sorted({s for s in self.stellen if re.fullmatch(r"[a-z]+\.(sh|py)", s)}):
            with self.subTest(name):
                self.assertTrue((MACOS / name).exists())

    def test_jeder_test_laeuft(self):
        antwort = subprocess.run(["ctest", "--test-dir", os.environ["KALVARO_BAU"], "--show-only=json-v1"],
                                 check=True, stdout=subprocess.PIPE)
        alle = {test["name"] for test in json.loads(antwort.stdout)["tests"]}
        genannt = {stelle for stelle in self.stellen if stelle.startswith("tst_")}
        self.assertGreater(len(genannt), 4)
        self.assertEqual(genannt - alle, set())

    def test_jede_variable_wirkt(self):
        texte = [p.read_text() for p in MACOS.iterdir() if p.suffix == ".sh"]
        texte += [p.read_text() for p in quellen()]
        for name in sorted(set(re.findall(r"\bKALVARO_[A-Z_]+\b|\bCFFIXED_USER_HOME\b", self.text))):
            with self.subTest(name):
                self.assertTrue(any(name in text for text in texte))

    def test_jedes_wort_von_bauen_wird_verstanden(self):
        bauteil = self.text.split("## Build it\n")[1].split("\n## ")[0]
        tabelle = re.findall(r"^\| `([a-z]+)` \|", bauteil, flags=re.MULTILINE)
        self.assertEqual(sorted(tabelle), sorted(schritte()))
        for stelle in re.findall(r"packaging/macos/bauen\.sh((?: [a-z]+)*)`", self.text):
            self.assertEqual([wort for wort in stelle.split() if wort not in schritte()], [])

    def test_ausgelassenes_heisst_wie_im_skript(self):
        ohne = re.search(r"^ohne='\^\((.*)\)\$'$", (MACOS / "bauen.sh").read_text(), flags=re.MULTILINE)
        zeile = re.search(r"^\| `testen` \|(.*)\|$", self.text, flags=re.MULTILINE).group(1)
        self.assertEqual(re.findall(r"`(\w+)`", zeile), ohne.group(1).split("|"))

    def logmuster(self):
        """For each call that logs, what its line begins with, and anything that is put in."""
        muster = []
        for datei in quellen():
            for ruf in re.findall(r"\bprotokoll\(\s*(u\"[^;]*);", datei.read_text()):
                anfang = re.match(r'u"((?:[^"\\]|\\.)*)"', ruf).group(1)
                ganz = ".*".join(re.escape(stueck) for stueck in re.split(r"%\d", anfang))
                muster.append(ganz if "%" in anfang else ganz + ".*")
        return muster

    def test_jede_logzeile_wird_geschrieben(self):
        teil = self.text.split("### The log\n")[1].split("\n### ")[0]
        zeilen = [zeile for reihe in re.findall(r"^\| ((?:(?:, )?`[^`]+`)+) \|", teil, flags=re.MULTILINE)
                  for zeile in re.findall(r"`([^`]+)`", reihe)]
        self.assertGreater(len(zeilen), 10)
        muster = self.logmuster()
        anlaesse = re.findall(r'u"(\w+)"', (QUELLE / "src/assessment/anlass.cpp").read_text())
        for zeile in zeilen:
            with self.subTest(zeile):
                self.assertTrue(any(re.fullmatch(m, zeile.replace("\\|", "|")) for m in muster))
                if zeile.startswith("Abgleich ("):
                    self.assertIn(zeile.split("(")[1].split(")")[0], anlaesse)
        # And what the checklist quotes is one of these.
        for stelle in self.stellen:
            if re.match(r"(Abgleich|gestartet|rekordbox|Start beim|Mitteilung|Keine) ", stelle):
                self.assertIn(stelle, zeilen)

    def test_jeder_deutsche_satz_steht_im_programm(self):
        texte = "".join(p.read_text() for p in quellen()).replace('"\n', "")
        for satz in ("kalvaro ist auf diesem Mac noch nicht eingerichtet.",
                     "Niemand ist am Bildschirm dieses Macs angemeldet."):
            self.assertIn(f'"{satz}"', self.text)
            self.assertIn(satz, texte)

    def test_was_nur_ein_mac_zeigt_steht_in_der_liste(self):
        liste = self.text.split("## Checklist for the first Mac")[1]
        for was in ("Dock icon", "light menu bar", "banner", "click on the offer", "After the next login",
                    "Gatekeeper", "After waking"):
            with self.subTest(was):
                self.assertIn(was, liste)
        # Each with how to see it, and where to look.
        for zeile in re.findall(r"^\|(.*)\|$", liste, flags=re.MULTILINE):
            felder = [feld.strip() for feld in re.split(r"(?<!\\)\|", zeile)]
            self.assertIn(len(felder), (2, 3))
            self.assertNotIn("", felder)


class Ablaufplan(unittest.TestCase):
    def setUp(self):
        self.text = (QUELLE / ".github/workflows/macos.yml").read_text()

    def test_beide_prozessoren(self):
        self.assertEqual(set(re.findall(r"prozessor: (\w+)", self.text)), {"arm64", "x86_64"})

    def test_jedes_skript_gibt_es_und_versteht_sein_wort(self):
        gerufen = re.findall(r"(packaging/macos/[\w.]+)(?: (\w+))?", self.text)
        self.assertTrue(gerufen)
        for pfad, wort in gerufen:
            with self.subTest(f"{pfad} {wort}"):
                self.assertTrue((QUELLE / pfad).exists())
                if pfad.endswith("bauen.sh"):
                    self.assertIn(wort, schritte())

    def test_gebaut_getestet_gezeichnet_gebuendelt(self):
        self.assertEqual(re.findall(r"bauen\.sh (\w+)", self.text), ["bauen", "testen", "bild", "buendeln"])

    def test_bild_und_abbild_werden_aufgehoben(self):
        pfade = self.text.split("upload-artifact")[1]
        self.assertIn("build/release/bild.png", pfade)
        self.assertIn("build/release/bild.png", (MACOS / "bauen.sh").read_text())
        self.assertIn("build/release/buendel/*.dmg", pfade)

    def test_kein_schritt_faellt_still_aus(self):
        self.assertNotIn("continue-on-error", self.text)


if __name__ == "__main__":
    unittest.main(verbosity=2)
