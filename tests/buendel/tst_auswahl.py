#!/usr/bin/env python3
"""Which tests a Mac runs: all but those whose labels say that they need something that it does not have.

KALVARO_BAU is the build folder."""
import json
import os
import pathlib
import re
import subprocess
import unittest

QUELLE = pathlib.Path(__file__).resolve().parent.parent.parent
# What only a build on Linux has, or what only Linux understands.
FREMD = ("tests_platform_linux", "tests_loesen", "tests_e2e", "tests_einbau", "tests_bilder",
         "eigene-prozesse.sh", "faults", "unshare")


def tests(*worte):
    antwort = subprocess.run(["ctest", "--test-dir", os.environ["KALVARO_BAU"], "--show-only=json-v1",
                              *worte], check=True, stdout=subprocess.PIPE)
    return {test["name"]: test for test in json.loads(antwort.stdout)["tests"]}


class Auswahl(unittest.TestCase):
    def setUp(self):
        skript = (QUELLE / "packaging/macos/bauen.sh").read_text()
        self.ohne = re.search(r"^ohne='(.*)'$", skript, flags=re.MULTILINE).group(1)
        self.alle = tests()
        self.mac = tests("-LE", self.ohne)

    def test_nichts_was_es_dort_nicht_gibt(self):
        for name, test in self.mac.items():
            with self.subTest(name):
                befehl = " ".join(test["command"])
                self.assertEqual([wort for wort in FREMD if wort in befehl], [])

    def test_alles_andere_laeuft(self):
        # One of each room, so that a label too many is noticed.
        for name in ("streng", "werte", "konto", "formate", "protokoll", "nebenarbeit", "zentrale",
                     "bewerten", "plist", "merkprozesse", "rekordbox", "abgleicher", "karte",
                     "einstellungenfenster", "hauptfenster_abgleich", "statusmenue", "pruefung",
                     "kommandozeile", "democloud", "tagesablauf", "simulation_1", "handbuch"):
            with self.subTest(name):
                self.assertIn(f"tst_{name}", self.mac)
        self.assertGreater(len(self.mac), 100)

    def test_wer_fehlt_sagt_warum(self):
        warum = set(re.search(r"\((.*)\)", self.ohne).group(1).split("|"))
        self.assertEqual(warum, {"dbus", "x11", "proc", "linux"})
        for name in self.alle.keys() - self.mac.keys():
            with self.subTest(name):
                labels = next(e["value"] for e in self.alle[name]["properties"] if e["name"] == "LABELS")
                self.assertTrue(warum & set(labels))


if __name__ == "__main__":
    unittest.main(verbosity=2)
