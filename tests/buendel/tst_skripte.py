#!/usr/bin/env python3
"""The scripts that make a bundle fit for other Macs, against doubles of the Mac's commands, which record
how they were called. What the real ones make of it, only a Mac tells."""
import json
import os
import pathlib
import plistlib
import subprocess
import tempfile
import unittest

MACOS = pathlib.Path(__file__).resolve().parent.parent.parent / "packaging/macos"
MACHO = b"\xcf\xfa\xed\xfe"

# One program under many names. A file of code is the magic number and, as lines, what otool says of it.
DOPPEL = r'''#!/bin/sh
name=${0##*/}
echo "$name${*:+ $*}" >>"$AUFRUFE"
case $name in
otool)
    [ "$1" = -l ] || echo "$2:"
    tail -c +5 "$2" | while read -r art wert; do
        case $1$art in
        -Lbraucht | -List) printf '\t%s (compatibility version 1.0.0, current version 1.0.0)\n' "$wert" ;;
        -Dist) echo "$wert" ;;
        -lminos) printf '      cmd LC_BUILD_VERSION\n    minos %s\n      sdk 26.0\n' "$wert" ;;
        -lrpath) printf '      cmd LC_RPATH\n     path %s (offset 12)\n' "$wert" ;;
        esac
    done
    ;;
plutil) python3 -IS "$LISTEN" "$@" ;;
qtpaths) echo "$QT_TEXTE" ;;
brew)
    shift
    echo "/opt/homebrew${*:+/opt/$*}"
    ;;
esac
[ "${SCHEITERT:-}" != "$name" ]
'''
LISTEN = """import pathlib, plistlib, sys
liste = pathlib.Path(sys.argv[-1])
inhalt = plistlib.loads(liste.read_bytes())
if sys.argv[1] == "-extract":
    print(inhalt[sys.argv[2]])
else:
    inhalt[sys.argv[2]] = sys.argv[4]
    liste.write_bytes(plistlib.dumps(inhalt))
"""
NAMEN = ("otool", "plutil", "qtpaths", "brew", "macdeployqt", "codesign", "hdiutil", "xcrun", "cmake",
         "ctest")


class Skripte(unittest.TestCase):
    def setUp(self):
        ordner = tempfile.TemporaryDirectory()
        self.addCleanup(ordner.cleanup)
        self.ordner = pathlib.Path(ordner.name)
        werkzeug = self.ordner / "bin"
        werkzeug.mkdir()
        for name in NAMEN:
            (werkzeug / name).write_text(DOPPEL)
            (werkzeug / name).chmod(0o755)
        (self.ordner / "listen.py").write_text(LISTEN)
        (self.ordner / "texte").mkdir()
        (self.ordner / "texte/qtbase_de.qm").write_bytes(b"qm")
        self.umgebung = {"PATH": f"{werkzeug}:/usr/bin:/bin", "AUFRUFE": str(self.ordner / "aufrufe"),
                         "QT_TEXTE": str(self.ordner / "texte"), "LISTEN": str(self.ordner / "listen.py"),
                         "LC_ALL": "C"}
        self.app = self.ordner / "bau/kalvaro.app"
        self.code("MacOS/kalvaro", "braucht /usr/lib/libSystem.B.dylib",
                  "braucht @executable_path/../Frameworks/libcurl.4.dylib",
                  "braucht @rpath/QtCore.framework/Versions/A/QtCore", "minos 13.0")
        self.code("Frameworks/libcurl.4.dylib", "ist @executable_path/../Frameworks/libcurl.4.dylib",
                  "braucht @loader_path/libssl.3.dylib", "minos 13.0")
        self.code("Frameworks/libssl.3.dylib", "ist /somewhere/else/libssl.3.dylib", "minos 9.5")
        self.code("Frameworks/QtCore.framework/Versions/A/QtCore",
                  "ist @executable_path/../Frameworks/QtCore.framework/Versions/A/QtCore",
                  "braucht /System/Library/Frameworks/AppKit.framework/Versions/C/AppKit")
        self.code("PlugIns/platforms/libqcocoa.dylib", "minos 13.0")
        self.code("PlugIns/styles/libqmacstyle.dylib", "minos 13.0")
        self.datei("Info.plist", plistlib.dumps({"LSMinimumSystemVersion": "13.0",
                                                 "CFBundleShortVersionString": "1.4"}))
        self.datei("Resources/translations/qtbase_de.qm", b"qm")

    def datei(self, name, inhalt):
        ziel = self.app / "Contents" / name
        ziel.parent.mkdir(parents=True, exist_ok=True)
        ziel.write_bytes(inhalt)

    def code(self, name, *zeilen):
        self.datei(name, MACHO + "".join(zeile + "\n" for zeile in zeilen).encode())

    def lauf(self, skript, *worte, **umgebung):
        return subprocess.run([MACOS / skript, *worte], env=self.umgebung | umgebung, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)

    def aufrufe(self, name=""):
        datei = pathlib.Path(self.umgebung["AUFRUFE"])
        zeilen = datei.read_text().splitlines() if datei.exists() else []
        return [zeile for zeile in zeilen if zeile.startswith(name)]

    # What a bundle may need

    def test_ein_ganzes_buendel_genuegt_sich(self):
        lauf = self.lauf("pruefen.sh", self.app)
        self.assertEqual((lauf.returncode, lauf.stdout), (0, f"{self.app} needs nothing outside.\n"))

    def beanstandet(self, satz):
        lauf = self.lauf("pruefen.sh", self.app)
        self.assertEqual(lauf.returncode, 1, lauf.stdout)
        self.assertEqual(lauf.stdout.splitlines(), [satz])

    def test_bibliothek_von_homebrew(self):
        self.code("Frameworks/libplist.dylib", "braucht /opt/homebrew/opt/icu4c/lib/libicuuc.78.dylib")
        self.beanstandet(f"{self.app}/Contents/Frameworks/libplist.dylib needs "
                         "/opt/homebrew/opt/icu4c/lib/libicuuc.78.dylib, which another Mac does not have")

    def test_fehlende_bibliothek(self):
        (self.app / "Contents/Frameworks/libssl.3.dylib").unlink()
        self.beanstandet(f"{self.app}/Contents/Frameworks/libcurl.4.dylib needs "
                         "@loader_path/libssl.3.dylib, which is not in the bundle")

    def test_fehlender_rahmen(self):
        self.code("PlugIns/imageformats/libqsvg.dylib", "braucht @rpath/QtSvg.framework/Versions/A/QtSvg")
        self.beanstandet(f"{self.app}/Contents/PlugIns/imageformats/libqsvg.dylib needs "
                         "@rpath/QtSvg.framework/Versions/A/QtSvg, which is not in the bundle")

    def test_libcurl_des_systems(self):
        self.code("MacOS/kalvaro", "braucht /usr/lib/libcurl.4.dylib")
        self.beanstandet(f"{self.app}/Contents/MacOS/kalvaro needs the system's libcurl")

    def test_suchpfad_nach_draussen(self):
        self.code("MacOS/kalvaro", "rpath @executable_path/../Frameworks", "rpath /opt/homebrew/lib")
        self.beanstandet("kalvaro would also look in /opt/homebrew/lib")

    def test_ohne_deutsche_texte_von_qt(self):
        (self.app / "Contents/Resources/translations/qtbase_de.qm").unlink()
        self.beanstandet("Qt's German texts are missing")

    def test_ohne_ein_zusatzteil_von_qt(self):
        for teil in ("platforms/libqcocoa", "styles/libqmacstyle"):
            with self.subTest(teil):
                datei = self.app / f"Contents/PlugIns/{teil}.dylib"
                inhalt = datei.read_bytes()
                datei.unlink()
                self.beanstandet(f"Qt's plug-in {teil} is missing")
                datei.write_bytes(inhalt)

    def test_ohne_code(self):
        self.assertEqual(self.lauf("pruefen.sh", self.ordner / "texte").returncode, 1)

    # Signatures

    def test_von_innen_nach_aussen(self):
        self.assertEqual(self.lauf("signieren.sh", self.app).returncode, 0)
        drin = f"{self.app}/Contents"
        self.assertEqual([aufruf.split()[-1] for aufruf in self.aufrufe("codesign --force")], [
            f"{drin}/Frameworks/libcurl.4.dylib", f"{drin}/Frameworks/libssl.3.dylib",
            f"{drin}/PlugIns/platforms/libqcocoa.dylib", f"{drin}/PlugIns/styles/libqmacstyle.dylib",
            f"{drin}/Frameworks/QtCore.framework", str(self.app)])
        self.assertEqual(self.aufrufe()[-1], f"codesign --verify --deep --strict {self.app}")

    def test_ohne_ausweis_ohne_haertung(self):
        self.lauf("signieren.sh", self.app)
        for aufruf in self.aufrufe("codesign --force"):
            self.assertIn("--timestamp=none --sign - ", aufruf)
            self.assertNotIn("runtime", aufruf)

    def test_mit_ausweis_gehaertet(self):
        self.lauf("signieren.sh", self.app, KALVARO_SIGNATUR="Developer ID Application: X (Y)")
        rechte = []
        for aufruf in self.aufrufe("codesign --force"):
            self.assertIn("--timestamp --options runtime --sign Developer ID Application: X (Y) ", aufruf)
            rechte.append("--entitlements" in aufruf)
        self.assertEqual(rechte, [False] * 5 + [True])

    def test_misslungene_unterschrift_bricht_ab(self):
        self.assertNotEqual(self.lauf("signieren.sh", self.app, SCHEITERT="codesign").returncode, 0)
        self.assertEqual(len(self.aufrufe("codesign")), 1)

    # Apple's word

    def test_ohne_zugang_keine_frage(self):
        lauf = self.lauf("beglaubigen.sh", "a.dmg", KALVARO_SIGNATUR="X")
        self.assertEqual((lauf.returncode, self.aufrufe()), (0, []))
        self.assertIn("Not notarised", lauf.stdout)

    def test_mit_profil(self):
        self.lauf("beglaubigen.sh", "a.dmg", KALVARO_SIGNATUR="X", KALVARO_NOTAR_PROFIL="p")
        self.assertEqual(self.aufrufe(), [
            "xcrun notarytool submit a.dmg --wait --keychain-profile p", "xcrun stapler staple a.dmg"])

    def test_mit_schluessel(self):
        self.lauf("beglaubigen.sh", "a.dmg", KALVARO_SIGNATUR="X", KALVARO_NOTAR_DATEI="k.p8",
                  KALVARO_NOTAR_KENNUNG="K", KALVARO_NOTAR_AUSSTELLER="A")
        self.assertEqual(self.aufrufe()[0],
                         "xcrun notarytool submit a.dmg --wait --key k.p8 --key-id K --issuer A")

    def test_schluessel_ohne_aussteller(self):
        lauf = self.lauf("beglaubigen.sh", "a.dmg", KALVARO_SIGNATUR="X", KALVARO_NOTAR_DATEI="k.p8",
                         KALVARO_NOTAR_KENNUNG="K")
        self.assertNotEqual(lauf.returncode, 0)
        self.assertEqual(self.aufrufe(), [])

    def test_ohne_ausweis_keine_beglaubigung(self):
        lauf = self.lauf("beglaubigen.sh", "a.dmg", KALVARO_NOTAR_PROFIL="p")
        self.assertEqual((lauf.returncode, self.aufrufe()), (1, []))

    # A home for tests and pictures

    def test_testheim_ist_ein_eigenes_und_geht_wieder(self):
        lauf = self.lauf("testheim.sh", "sh", "-c", 'echo "$HOME"; echo "$CFFIXED_USER_HOME"; ls -A "$HOME"',
                         HOME="/home/anna")
        heim, auch = lauf.stdout.splitlines()
        self.assertEqual((lauf.returncode, auch), (0, heim))
        self.assertNotEqual(heim, "/home/anna")
        self.assertFalse(pathlib.Path(heim).exists())

    def test_testheim_laesst_ein_gewaehltes(self):
        lauf = self.lauf("testheim.sh", "sh", "-c", 'echo "$CFFIXED_USER_HOME"', CFFIXED_USER_HOME="/dev/null")
        self.assertEqual(lauf.stdout, "/dev/null\n")

    def test_testheim_endet_wie_der_test(self):
        self.assertEqual(self.lauf("testheim.sh", "sh", "-c", "exit 3").returncode, 3)

    def zeichnen(self, **umgebung):
        """With a cloud and a program that only say where they were told to look."""
        for name, zeilen in {
            "kalvaro-democloud": 'echo port=4711; exec sleep 60',
            "kalvaro.app/Contents/MacOS/kalvaro":
                'cat "$CFFIXED_USER_HOME/Library/Application Support/kalvaro/konto.json" >"$2"; '
                'echo "$1 $HOME $CFFIXED_USER_HOME $KALVARO_APPLICATIONS" >>"$2"; exit "${MISSLINGT:-0}"',
        }.items():
            (self.ordner / "bau" / name).write_text(f"#!/bin/sh\n{zeilen}\n")
            (self.ordner / "bau" / name).chmod(0o755)
        bild = self.ordner / "bild.png"
        lauf = subprocess.run(["sh", MACOS / "bild.sh", self.ordner / "bau", bild], check=False, text=True,
                              env=self.umgebung | {"HOME": str(self.ordner)} | umgebung,
                              cwd=MACOS.parent.parent, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return lauf, bild

    def test_bild_mit_eigenem_konto(self):
        lauf, bild = self.zeichnen()
        self.assertEqual((lauf.returncode, lauf.stdout), (0, ""))
        konto, wie = bild.read_text().splitlines()
        self.assertEqual(json.loads(konto)["server"], ["http://127.0.0.1:4711"])
        option, heim, auch, programme = wie.split()
        self.assertEqual((option, heim, programme),
                         ("--bild", auch, f"{self.ordner}/bau/demo/Applications"))
        self.assertFalse(pathlib.Path(heim).exists())

    def test_kein_bild_neben_einem_echten_konto(self):
        (self.ordner / "Library/Application Support/kalvaro").mkdir(parents=True)
        (self.ordner / "Library/Application Support/kalvaro/konto.json").write_text("{}")
        lauf, bild = self.zeichnen()
        self.assertEqual((lauf.returncode, bild.exists()), (1, False))
        self.assertIn("has an account", lauf.stdout)

    def test_misslungenes_bild(self):
        self.assertEqual(self.zeichnen(MISSLINGT="4")[0].returncode, 4)

    # The front

    def test_ohne_wort_wird_gebaut(self):
        self.assertEqual(self.lauf("bauen.sh", KALVARO_CMAKE="-DA=1 -DB=2").returncode, 0)
        wurzeln = ";".join(f"/opt/homebrew/opt/{paket}" for paket in ("icu4c", "curl", "openssl@3"))
        self.assertEqual(self.aufrufe("cmake"), [
            f"cmake --preset release -DCMAKE_PREFIX_PATH={wurzeln};/opt/homebrew -DA=1 -DB=2",
            "cmake --build --preset release -- -k 0"])

    def test_misslungener_bau_endet_dort(self):
        self.assertNotEqual(self.lauf("bauen.sh", "bauen", "testen", SCHEITERT="cmake").returncode, 0)
        self.assertEqual(self.aufrufe("ctest"), [])

    def test_testen_laesst_aus_was_es_dort_nicht_gibt(self):
        self.assertEqual(self.lauf("bauen.sh", "testen").returncode, 0)
        self.assertTrue(self.aufrufe()[0].startswith("ctest --preset release -LE ^(dbus|x11|proc|linux)$ -j "))

    def test_unbekanntes_wort(self):
        self.assertEqual(self.lauf("bauen.sh", "backen").returncode, 2)
        self.assertEqual(self.aufrufe(), [])

    # All of it

    def buendeln(self, **umgebung):
        lauf = self.lauf("buendeln.sh", self.ordner / "bau", **umgebung)
        self.assertEqual(lauf.returncode, 0, lauf.stdout)
        ziel = self.ordner / "bau/buendel"
        return ziel, plistlib.loads((ziel / "kalvaro.app/Contents/Info.plist").read_bytes()), lauf.stdout

    def test_reihenfolge(self):
        self.buendeln(KALVARO_SIGNATUR="X", KALVARO_NOTAR_PROFIL="p")
        reihe = []
        for aufruf in self.aufrufe():
            name = aufruf.split()[0]
            if name in ("macdeployqt", "codesign", "hdiutil", "xcrun") and reihe[-1:] != [name]:
                reihe.append(name)
        self.assertEqual(reihe, ["macdeployqt", "codesign", "hdiutil", "codesign", "xcrun"])

    def test_das_gebaute_bleibt_wie_es_war(self):
        vorher = {p: p.read_bytes() for p in self.app.rglob("*") if p.is_file()}
        self.buendeln()
        self.assertEqual(vorher, {p: p.read_bytes() for p in self.app.rglob("*") if p.is_file()})

    def test_qt_findet_seine_texte(self):
        (self.app / "Contents/Resources/translations/qtbase_de.qm").unlink()
        ziel, _, _ = self.buendeln()
        ressourcen = ziel / "kalvaro.app/Contents/Resources"
        self.assertEqual((ressourcen / "translations/qtbase_de.qm").read_bytes(), b"qm")
        self.assertEqual((ressourcen / "qt.conf").read_text(),
                         "[Paths]\nPlugins = PlugIns\nTranslations = Resources/translations\n")

    def test_bibliotheken_bestimmen_das_aelteste_macos(self):
        self.code("Frameworks/libssl.3.dylib", "minos 15.0")
        _, info, ausgabe = self.buendeln()
        self.assertEqual(info["LSMinimumSystemVersion"], "15.0")
        self.assertIn("The libraries need macOS 15.0, so the bundle does.", ausgabe)

    def test_aeltere_bibliotheken_aendern_nichts(self):
        _, info, _ = self.buendeln()  # "9.5" is less than "13.0"
        self.assertEqual(info["LSMinimumSystemVersion"], "13.0")

    def test_abbild_heisst_nach_version_und_prozessor(self):
        ziel, _, ausgabe = self.buendeln()
        abbild = f"{ziel}/kalvaro-1.4-{os.uname().machine}.dmg"
        self.assertEqual(ausgabe.splitlines()[-1], abbild)
        self.assertTrue(self.aufrufe("hdiutil")[0].endswith(f"-format UDZO -ov {abbild}"))

    def test_was_draussen_braucht_wird_nicht_verteilt(self):
        self.code("Frameworks/libssl.3.dylib", "braucht /opt/homebrew/lib/libz.dylib")
        self.assertNotEqual(self.lauf("buendeln.sh", self.ordner / "bau").returncode, 0)
        self.assertEqual(self.aufrufe("codesign") + self.aufrufe("hdiutil"), [])


if __name__ == "__main__":
    unittest.main(verbosity=2)
