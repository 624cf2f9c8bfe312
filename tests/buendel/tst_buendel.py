#!/usr/bin/env python3
"""What kalvaro.app says of itself, and its icon.

    tests/buendel/tst_buendel.py CLASS

KALVARO_INFO_PLIST is the property list as configured, KALVARO_VERSION and KALVARO_MINDESTENS what CMake
says: the version of the project and the oldest macOS.
"""
import os
import pathlib
import plistlib
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree

QUELLE = pathlib.Path(__file__).resolve().parent.parent.parent
MACOS = QUELLE / "packaging/macos"
INFO = pathlib.Path(os.environ["KALVARO_INFO_PLIST"])


def gelesen(datei):
    """The property list as libplist understands it, and not only Python: asked for XML, plistutil would
    hand XML on unread."""
    with tempfile.NamedTemporaryFile() as binaer:
        subprocess.run(["plistutil", "-i", datei, "-f", "bin", "-o", binaer.name], check=True,
                       stderr=subprocess.PIPE)
        return plistlib.loads(binaer.read())


def konstante(name):
    """The text that a constant of the program has."""
    text = (QUELLE / "src/foundation/konstanten.h").read_text()
    return re.search(rf'QString {name} = QStringLiteral\("(.*)"\)', text).group(1)


def texte(sprache):
    text = (MACOS / f"{sprache}.lproj/InfoPlist.strings").read_text()
    rest = re.sub(r"/\*.*?\*/", "", text, flags=re.DOTALL)
    paare = re.findall(r'^"([^"]*)" = "([^"]*)";\n', rest, flags=re.MULTILINE)
    assert re.sub(r'^"[^"]*" = "[^"]*";\n', "", rest, flags=re.MULTILINE).strip() == "", text
    return dict(paare)


class Angaben(unittest.TestCase):
    def setUp(self):
        self.info = gelesen(INFO)

    def test_jede_liste_ist_eine(self):
        for datei in (INFO, MACOS / "kalvaro.entitlements"):
            with self.subTest(datei.name):
                self.assertEqual(gelesen(datei), plistlib.loads(datei.read_bytes()))

    def test_eine_kaputte_faellt_auf(self):
        with tempfile.NamedTemporaryFile(suffix=".plist") as kaputt:
            kaputt.write(INFO.read_bytes().replace(b"</dict>", b"</dikt>", 1))
            kaputt.flush()
            with self.assertRaises((plistlib.InvalidFileException, subprocess.CalledProcessError)):
                gelesen(kaputt.name)

    def test_was_das_buendel_ist(self):
        for schluessel, wert in {
            "CFBundlePackageType": "APPL",
            "CFBundleExecutable": "kalvaro",
            "CFBundleName": "kalvaro",
            "CFBundleDisplayName": "kalvaro",
            "CFBundleDevelopmentRegion": "de",
            "CFBundleLocalizations": ["de", "en"],
            "LSApplicationCategoryType": "public.app-category.music",
            "LSMultipleInstancesProhibited": True,
            "NSPrincipalClass": "NSApplication",
            "NSHighResolutionCapable": True,
            "NSAppTransportSecurity": {"NSAllowsLocalNetworking": True},
        }.items():
            with self.subTest(schluessel):
                self.assertEqual(self.info[schluessel], wert)

    def test_dock_symbol_erlaubt(self):
        # It comes and goes with the window, so the list may not forbid it.
        self.assertNotIn("LSUIElement", self.info)
        self.assertNotIn("LSBackgroundOnly", self.info)

    def test_versionen_wie_ueberall(self):
        version = os.environ["KALVARO_VERSION"]
        metainfo = xml.etree.ElementTree.parse(QUELLE / "packaging/de.kalvaro.kalvaro.metainfo.xml")
        self.assertEqual(self.info["CFBundleShortVersionString"], version)
        self.assertEqual(self.info["CFBundleVersion"], version)
        self.assertEqual(konstante("VERSION"), version)
        self.assertEqual(metainfo.find("releases/release").get("version"), version)

    def test_kennung_wie_ueberall(self):
        kennung = self.info["CFBundleIdentifier"]
        metainfo = xml.etree.ElementTree.parse(QUELLE / "packaging/de.kalvaro.kalvaro.metainfo.xml")
        self.assertEqual(konstante("KENNUNG"), kennung)
        self.assertEqual(metainfo.find("id").text, kennung)
        self.assertIn(f"set(kennung {kennung})", (QUELLE / "cmake/installieren.cmake").read_text())

    def test_aeltestes_macos_wie_gebaut(self):
        self.assertEqual(self.info["LSMinimumSystemVersion"], os.environ["KALVARO_MINDESTENS"])
        self.assertEqual(self.info["LSMinimumSystemVersion"], "13.0")

    def test_symbol_liegt_bei(self):
        self.assertTrue((MACOS / f"{self.info['CFBundleIconFile']}.icns").exists())

    def test_beide_sprachen_sagen_dasselbe_auf(self):
        self.assertEqual(sorted(texte("de")), sorted(texte("en")))
        for sprache in self.info["CFBundleLocalizations"]:
            for schluessel, wert in texte(sprache).items():
                with self.subTest(f"{sprache} {schluessel}"):
                    self.assertIn(schluessel, self.info)
                    self.assertNotEqual(wert, "")

    def test_deutsch_ist_wie_in_der_liste(self):
        for schluessel, wert in texte("de").items():
            self.assertEqual(self.info[schluessel], wert)

    def test_alles_liegt_im_buendel(self):
        cmake = (QUELLE / "cmake/buendel.cmake").read_text()
        for datei, ordner in {
            "kalvaro.icns": "Resources",
            "de.lproj/InfoPlist.strings": "Resources/de.lproj",
            "en.lproj/InfoPlist.strings": "Resources/en.lproj",
        }.items():
            self.assertIn(f"kalvaro_beilage(${{quelle}}/{datei} {ordner})", cmake)

    def test_nichts_weicht_die_haertung_auf(self):
        self.assertEqual(gelesen(MACOS / "kalvaro.entitlements"),
                         {"com.apple.security.app-sandbox": False})


PNG = b"\x89PNG\r\n\x1a\n"


class Symbol(unittest.TestCase):
    def setUp(self):
        self.ordner = tempfile.TemporaryDirectory()
        self.addCleanup(self.ordner.cleanup)
        self.datei = MACOS / "kalvaro.icns"

    def teile(self):
        alles = self.datei.read_bytes()
        self.assertEqual(struct.unpack(">4sI", alles[:8]), (b"icns", len(alles)))
        stelle, teile = 8, {}
        while stelle < len(alles):
            art, laenge = struct.unpack(">4sI", alles[stelle:stelle + 8])
            teile[art.decode()] = alles[stelle + 8:stelle + laenge]
            stelle += laenge
        self.assertEqual(stelle, len(alles))
        return teile

    def ausgepackt(self):
        subprocess.run(["icns2png", "-x", "-o", self.ordner.name, self.datei], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return {int(bild.name.split("_")[1].split("x")[0]): bild
                for bild in pathlib.Path(self.ordner.name).iterdir()}

    def test_jede_groesse_laesst_sich_auspacken(self):
        bilder = self.ausgepackt()
        # Newer versions of icns2png read those for fine screens, too; of these 64 is a size of its own.
        self.assertEqual(sorted(bilder.keys() - {64}), [16, 32, 128, 256, 512, 1024])
        for seite, bild in bilder.items():
            kopf = bild.read_bytes()[:24]
            self.assertEqual(struct.unpack(">II", kopf[16:]), (seite, seite))

    def test_fuer_feine_bildschirme_je_doppelt_so_viele_punkte(self):
        # icns2png passes over these.
        teile = self.teile()
        for art, seite in {"ic11": 32, "ic12": 64, "ic13": 256, "ic14": 512, "ic10": 1024}.items():
            with self.subTest(art):
                self.assertEqual(teile[art][:8], PNG)
                self.assertEqual(struct.unpack(">II", teile[art][16:24]), (seite, seite))

    def test_zeigt_das_programmzeichen(self):
        # The tile is smaller on a Mac: 412 points of 512, elsewhere 448.
        def kachel(bild, seite):
            rand = (512 - seite) // 2
            ziel = pathlib.Path(self.ordner.name) / f"kachel{seite}.png"
            subprocess.run(["convert", bild, "-background", "white", "-alpha", "remove",
                            "-crop", f"{seite}x{seite}+{rand}+{rand}", "+repage",
                            "-resize", "128x128!", ziel], check=True)
            return ziel

        symbol = kachel(self.ausgepackt()[512], 412)
        vorlage = kachel(QUELLE / "packaging/icons/hicolor/512x512/apps/de.kalvaro.kalvaro.png", 448)
        lauf = subprocess.run(["compare", "-metric", "RMSE", symbol, vorlage, "null:"],
                              stderr=subprocess.PIPE, text=True, check=False)
        abstand = float(re.search(r"\((.*)\)", lauf.stderr).group(1))
        self.assertLess(abstand, 0.02, "packaging/macos/symbol.sh draws it anew")


if __name__ == "__main__":
    unittest.main(verbosity=2)
