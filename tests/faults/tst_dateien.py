"""Files that are not what they should be: nothing hangs, nothing breaks off, nothing is lost."""

import json
import os
import socket
import subprocess

from pruefstand import Welt, faelle, fall, main, passt, pruefen, warten
from server import Server, antwort, cloud

GROSS = 20 << 30


def rohr(pfad):
    os.mkfifo(pfad)


def geraet(wohin):
    return lambda pfad: os.symlink(wohin, pfad)


def ordner(pfad):
    os.mkdir(pfad)


def buchse(pfad):
    with socket.socket(socket.AF_UNIX) as s:
        s.bind(pfad)


def duenn(pfad):
    """20 GB on paper, nothing on the disk."""
    with open(pfad, "wb") as datei:
        datei.truncate(GROSS)


def kreis(pfad):
    os.symlink(os.path.basename(pfad), pfad)


def ins_leere(pfad):
    os.symlink("/gibt/es/nicht", pfad)


def volle_platte(welt):
    """The data folder on a file system of its own that has no byte left."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=128k", "kalvaro", welt.daten], check=True)
    welt.aufraeumen_.callback(subprocess.run, ["umount", "-l", welt.daten], check=True)


def fuellen(welt):
    try:
        with open(os.path.join(welt.daten, "fuellung"), "wb", buffering=0) as datei:
            while True:
                datei.write(b"x" * 4096)
    except OSError:
        pass


@faelle([
    ("log is a pipe", rohr), ("log is a full device", geraet("/dev/full")),
    ("log is a silent device", geraet("/dev/null")), ("log is a terminal", geraet("/dev/tty")),
    ("log is a folder", ordner), ("log is a socket", buchse), ("log is a link to itself", kreis),
    ("log leads nowhere", ins_leere),
])
def protokoll(machen):
    """The program does its work without a log."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        machen(os.path.join(welt.daten, "kalvaro.log"))
        passt("^Bibliothek ist abgeglichen", welt.bild(geduld=20))


@fall("log on a full disk")
def protokoll_ohne_platz():
    with Welt() as welt, Server(cloud(antwort())) as server:
        volle_platte(welt)
        welt.konto(server.url)
        fuellen(welt)
        passt("^Bibliothek ist abgeglichen", welt.bild(geduld=20))


def wach(welt):
    """Returns when the program's event loop has come round: a second start is answered."""
    pruefen(welt.starten("--hintergrund").ende(20) == 0, "no answer to a second start")


@fall("settings lost on a full disk")
def einstellungen_ohne_platz():
    """The offer of an update is saved; where it cannot be, the old file stays whole."""
    angebot = json.dumps({"ergebnis": {"zustand": "aktuell"},
                          "app": {"version": "99", "url": "https://x.test/"}}).encode()
    with Welt() as welt, Server(cloud(antwort(angebot))) as server:
        volle_platte(welt)
        welt.konto(server.url)
        welt.einstellungen(autostart=False, version="6.8.5", update_gemeldet="")
        pfad = os.path.join(welt.daten, "einstellungen.json")
        with open(pfad, encoding="utf-8") as datei:
            vorher = datei.read()
        fuellen(welt)
        lauf = welt.starten()
        warten(lambda: server.posts() == 1)
        wach(welt)
        lauf.beenden()
        with open(pfad, encoding="utf-8") as datei:
            jetzt = datei.read()
        pruefen(jetzt == vorher or json.loads(jetzt)["version"] == "6.8.5", jetzt[:200])


@faelle([
    ("account is a pipe", rohr, "keine gewöhnliche Datei"),
    ("account is a device without an end", geraet("/dev/zero"), "keine gewöhnliche Datei"),
    ("account is a folder", ordner, "keine gewöhnliche Datei"),
    ("account is a socket", buchse, "keine gewöhnliche Datei"),
    ("account of 20 GB", duenn, "zu groß"),
    ("account is a link to itself", kreis, "(?i)verknüpfung|verweis|kreis"),
    ("account leads nowhere", ins_leere, "existiert nicht"),
])
def konto(machen, muster):
    """One sentence names the file and the reason."""
    with Welt() as welt:
        machen(os.path.join(welt.daten, "konto.json"))
        lauf = welt.starten("--hintergrund")
        pruefen(lauf.ende(20) == 0, "status", lauf.prozess.returncode)
        passt("noch nicht eingerichtet", lauf.fehler())
        passt("konto.json", lauf.fehler())
        passt(muster, lauf.fehler())


@faelle([
    ("settings are a pipe", rohr), ("settings are a device without an end", geraet("/dev/zero")),
    ("settings are a folder", ordner), ("settings of 20 GB", duenn),
    ("settings are a link to itself", kreis), ("settings lead nowhere", ins_leere),
    ("settings are empty", lambda pfad: open(pfad, "wb").close()),
    ("settings are no JSON", lambda pfad: os.symlink("/bin/true", pfad)),
])
def einstellungen(machen):
    """They count as missing, and the program does its work."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        machen(os.path.join(welt.daten, "einstellungen.json"))
        lauf = welt.starten()
        passt("gut: Bibliothek", welt.urteil(20))
        pruefen(lauf.spitze() < 200 * 1024, lauf.spitze(), "KiB")
        lauf.beenden()


@faelle([
    ("data folder is a file", lambda w: (os.rmdir(w.daten), open(w.daten, "wb").close())),
    ("data folder is a pipe", lambda w: (os.rmdir(w.daten), os.mkfifo(w.daten))),
    ("data folder is a link to itself", lambda w: (os.rmdir(w.daten), kreis(w.daten))),
    ("parent of the data folder is a file",
     lambda w: (os.rmdir(w.daten), os.rmdir(w.pfad("daten")), open(w.pfad("daten"), "wb").close())),
])
def datenordner(machen):
    with Welt() as welt:
        machen(welt)
        lauf = welt.starten("--hintergrund")
        pruefen(lauf.ende(20) == 0, "status", lauf.prozess.returncode)
        passt("noch nicht eingerichtet", lauf.fehler())


@fall("temporary files of killed saves stay for ever")
def verwaiste():
    """The next start that is not for a picture takes them away, and nothing else."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        fremd = ["einstellungen.json.bak", "einstellungen.json.alt123x", "notizen.AbCdEf",
                 "einstellungen.json.Ab"]
        for name in ["einstellungen.json.AbCdEf", "einstellungen.json.XyZabc", *fremd]:
            with open(os.path.join(welt.daten, name), "wb") as datei:
                datei.write(b"{")
        os.mkdir(os.path.join(welt.daten, "einstellungen.json.OrdNer"))
        welt.bild()
        pruefen("einstellungen.json.AbCdEf" in os.listdir(welt.daten), "a picture took them away")
        lauf = welt.starten()
        welt.urteil()
        lauf.beenden()
        da = os.listdir(welt.daten)
        pruefen("einstellungen.json.AbCdEf" not in da and "einstellungen.json.XyZabc" not in da, da)
        pruefen(all(name in da for name in [*fremd, "einstellungen.json.OrdNer"]), da)


@faelle([("relative XDG_DATA_HOME", "daten"), ("XDG_DATA_HOME with a dot", "./daten"),
         ("XDG_DATA_HOME with two dots", "../daten"), ("empty XDG_DATA_HOME", "")])
def relativ(wert):
    """Ignored, as its rules say; the usual folder takes its place, and none is made elsewhere."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.daten = welt.pfad(".local/share/kalvaro")
        os.makedirs(welt.daten)
        welt.konto(server.url)
        welt.umgebung["XDG_DATA_HOME"] = wert
        arbeit = welt.pfad("arbeit/hier")
        os.makedirs(arbeit)
        passt("^Bibliothek ist abgeglichen", welt.bild(cwd=arbeit))
        pruefen(os.listdir(arbeit) == [], os.listdir(arbeit))
        pruefen("gestartet (1.4, Gerät faults-mac)" in welt.protokoll(), welt.protokoll())


KOPF = b'<?xml version="1.0" encoding="UTF-8"?>\n'
SCHLUSS = (b"<key>CFBundleShortVersionString</key><string>7.1.4</string></dict></plist>")


def gesucht(wert):
    return (b"<plist><dict><key>CFBundleShortVersionString</key><string>" + wert +
            b"</string></dict></plist>")


def lachen():
    """Entities of entities: 10^9 of the smallest."""
    zeilen = [b'<!ENTITY a0 "lol">']
    zeilen += [b'<!ENTITY a%d "%s">' % (i, b"&a%d;" % (i - 1) * 10) for i in range(1, 10)]
    return KOPF + b"<!DOCTYPE plist [" + b"".join(zeilen) + b"]>" + gesucht(b"&a9;")


def einer_oft(wohin=gesucht):
    """One entity, named again and again in less than 1 MiB."""
    return (KOPF + b'<!DOCTYPE plist [<!ENTITY a "' + b"x" * 4000 + b'">]>' +
            wohin(b"&a;" * 340_000))


def daneben(wert):
    return b"<plist><dict><key>X</key><string>" + wert + b"</string>" + SCHLUSS


def fremd(inhalt):
    """The same in an encoding where it does not look like that."""
    return inhalt.decode().replace("UTF-8", "IBM037").encode("cp037")


def attribute():
    namen = b" ".join(b'a%d="x"' % i for i in range(60_000))
    return KOPF + b"<plist " + namen + b"><dict>" + SCHLUSS


def tief():
    return KOPF + b"<plist>" + b"<dict><key>a</key>" * 50_000 + SCHLUSS


def binaer_teilen():
    """Binary, 64 lists of which each holds the next one 255 times."""
    objekte = [bytes([0xD1, 1, 2])]
    objekte.append(b"\x5f\x10\x1a" + b"CFBundleShortVersionString")
    for i in range(64):
        objekte.append(b"\xaf\x10\xff" + bytes([min(i + 3, 65)]) * 255)
    daten, orte = b"bplist00", []
    for objekt in objekte:
        orte.append(len(daten))
        daten += objekt
    tafel = len(daten)
    daten += b"".join(ort.to_bytes(2, "big") for ort in orte)
    return daten + bytes(6) + b"\2\1" + len(orte).to_bytes(8, "big") + bytes(8) + tafel.to_bytes(8, "big")


@faelle([
    ("Info.plist: entities of entities", lachen), ("Info.plist: an entity many times", einer_oft),
    ("Info.plist: an entity many times beside", lambda: einer_oft(daneben)),
    ("Info.plist: entities in another encoding", lambda: fremd(einer_oft())),
    ("Info.plist: attributes in another encoding", lambda: fremd(attribute())),
    ("Info.plist: 60,000 attributes", attribute), ("Info.plist: 50,000 deep", tief),
    ("Info.plist: shared lists", binaer_teilen),
    ("Info.plist: external entity", lambda: KOPF + b'<!DOCTYPE plist [<!ENTITY x SYSTEM '
     b'"file:///etc/passwd">]><plist><dict><key>X</key><string>&x;</string>' + SCHLUSS),
])
def info(machen):
    """Costs neither memory nor time beyond its size: the window comes, and it ends when it should."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        welt.rekordbox(info=machen())
        lauf = welt.starten()
        passt("gut: Bibliothek", welt.urteil(20))
        pruefen(lauf.spitze() < 128 * 1024, lauf.spitze(), "KiB")
        lauf.beenden()


@faelle([("Info.plist is a pipe", rohr), ("Info.plist of 20 GB", duenn),
         ("Info.plist is a link to itself", kreis),
         ("Info.plist is a device without an end", geraet("/dev/zero"))])
def info_art(machen):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        welt.rekordbox()
        pfad = os.path.join(welt.programme, "rekordbox 7/rekordbox.app/Contents/Info.plist")
        os.unlink(pfad)
        machen(pfad)
        passt("^Bibliothek ist abgeglichen", welt.bild(geduld=20))


if __name__ == "__main__":
    main()
