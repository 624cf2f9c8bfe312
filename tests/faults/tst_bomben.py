"""Small answers that unfold, and large ones: what they may cost is bounded, and nothing of it holds up the
end of the program."""

import gzip
import json
import signal
import threading
import zlib

from pruefstand import GEDULD, Welt, faelle, main, passt, pruefen, warten
from server import GUT, Server, antwort, cloud

MIB = 1 << 20
_grundlast = []


def gepackt(teile, fenster=31):
    packer = zlib.compressobj(9, zlib.DEFLATED, fenster)
    return b"".join([*(packer.compress(teil) for teil in teile), packer.flush()])


def nullen(mib):
    return (bytes(MIB) for _ in range(mib))


def kopf(kodierung):
    return b"Content-Encoding: %s\r\n" % kodierung


def spitze(tun, wurf=None):
    """The most memory in KiB that a program with a window has had when the verdict is there."""
    with Welt() as welt, Server(cloud(tun)) as server:
        welt.konto(server.url)
        lauf = welt.starten()
        zeile = welt.urteil()
        if wurf:
            passt(wurf, zeile)
        ergebnis = lauf.spitze()
        lauf.beenden()
        pruefen(server.posts() == 1, server.posts(), "posts")
        return ergebnis


def grundlast():
    if not _grundlast:
        _grundlast.append(spitze(antwort(), "gut"))
    return _grundlast[0]


def liste(anzahl):
    return b'{"ergebnis":{"zustand":"aktuell"},"liste":[' + b"0," * anzahl + b"0]}"


def objekte(anzahl):
    return b'{"ergebnis":{"zustand":"aktuell"},"liste":[' + b"{}," * anzahl + b"{}]}"


GESCHEITERT = "warn: Nicht abgeglichen"

BOMBEN = [
    ("gzip bomb of 10 GiB", lambda: gepackt(nullen(256)) * 40, b"gzip", GESCHEITERT),
    ("gzip bomb in gzip", lambda: gzip.compress(gepackt(nullen(512))), b"gzip, gzip",
     GESCHEITERT),
    ("gzip bomb three deep", lambda: gzip.compress(gzip.compress(gepackt(nullen(512)))),
     b"gzip, gzip, gzip", GESCHEITERT),
    ("deflate bomb of 512 MiB", lambda: gepackt(nullen(512), 15), b"deflate", GESCHEITERT),
    ("raw deflate bomb of 512 MiB", lambda: gepackt(nullen(512), -15), b"deflate", GESCHEITERT),
    ("blanks just below the bound", lambda: gepackt([b" " * MIB] * 60 + [GUT]), b"gzip",
     "gut: Bibliothek|" + GESCHEITERT),
    ("three million list entries", lambda: gepackt([liste(3_000_000)]), b"gzip",
     "gut: Bibliothek|" + GESCHEITERT),
    ("three million maps in a list", lambda: gepackt([objekte(3_000_000)]), b"gzip",
     "gut: Bibliothek|" + GESCHEITERT),
    ("twenty million list entries", lambda: gepackt([liste(20_000_000)]), b"gzip",
     "gut: Bibliothek|" + GESCHEITERT),
    ("a text of 60 MiB", lambda: gepackt([b'{"ergebnis":{"zustand":"', b"x" * (60 * MIB), b'"}}']),
     b"gzip", "warn: ", 60 * MIB),
    ("a million gzip members", lambda: gzip.compress(b"") * 300_000 + gzip.compress(GUT), b"gzip",
     "gut: Bibliothek|" + GESCHEITERT),
]


def bombe(machen, kodierung, wurf, entpackt=0):
    """What is kept as an answer may cost by its decoded size, if it is within the bound; nothing else may
    cost more than by the bytes received."""
    daten = machen()
    gebraucht = spitze(antwort(daten, kopf=kopf(kodierung)), wurf)
    erlaubt = 64 * 1024 + 3 * max(len(daten), entpackt) // 1024 + grundlast()
    pruefen(gebraucht <= erlaubt, f"{gebraucht / 1024:.0f} MiB for {len(daten) / 1024:.0f} KiB;",
            f"allowed are {erlaubt / 1024:.0f} MiB")


faelle(BOMBEN)(bombe)


@faelle([
    ("gzip in two members refused", lambda: gzip.compress(GUT[:9]) + gzip.compress(GUT[9:]),
     b"x-gzip"),
    ("deflate refused", lambda: zlib.compress(GUT), b"deflate"),
    ("deflate without a head refused", lambda: gepackt([GUT], -15), b"deflate"),
])
def gepackte(machen, kodierung):
    with Welt() as welt, Server(cloud(antwort(machen(), kopf=kopf(kodierung)))) as server:
        welt.konto(server.url)
        passt("^Bibliothek ist abgeglichen", welt.bild())


@faelle([
    ("gzip cut short taken for whole", lambda: gzip.compress(GUT)[:-9], b"gzip"),
    ("gzip with a wrong check sum", lambda: gzip.compress(GUT)[:-8] + b"\0" * 8, b"gzip"),
    ("gzip followed by more", lambda: gzip.compress(GUT) + b"more", b"gzip"),
    ("coding that nobody knows", lambda: GUT, b"br"),
    ("two layers of gzip", lambda: gzip.compress(gzip.compress(GUT)), b"gzip, gzip"),
    ("three layers of gzip", lambda: gzip.compress(gzip.compress(gzip.compress(GUT))),
     b"gzip, gzip, gzip"),
    ("gzip in deflate", lambda: zlib.compress(gzip.compress(GUT)), b"gzip, deflate"),
    ("eleven codings", lambda: GUT, b"gzip, " * 10 + b"gzip"),
])
def beschaedigt(machen, kodierung):
    with Welt() as welt, Server(cloud(antwort(machen(), kopf=kopf(kodierung)))) as server:
        welt.konto(server.url)
        passt(r"^Nicht abgeglichen\n.*nicht verständlich", welt.bild())


@faelle([
    ("a body without an end", lambda v: (v.senden(b"HTTP/1.1 200 OK\r\n\r\n"), v.endlos(b"x" * MIB))),
    ("chunks without an end",
     lambda v: (v.senden(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"),
                v.endlos(b"100000\r\n" + b"x" * MIB + b"\r\n"))),
])
def ohne_ende(tun):
    gebraucht = spitze(tun, r"zu groß|nicht verständlich")
    # The bound is 64 MiB; what has come in when it is noticed counts as received.
    erlaubt = 64 * 1024 + 3 * 68 * 1024 + grundlast()
    pruefen(gebraucht <= erlaubt, gebraucht, "KiB; allowed are", erlaubt)


@faelle([
    ("the end while a bomb unfolds", lambda: gepackt(nullen(256)) * 40),
    ("the end while a large list is read", lambda: gepackt([liste(20_000_000)])),
])
def ende_in_der_bombe(machen):
    """Whatever the answer has made the program do so far, it leaves in time when it is asked to."""
    daten = antwort(machen(), kopf=kopf(b"gzip"))
    for arbeit in (0.0, 0.02, 0.05, 0.1, 0.2, 0.4):
        with Welt() as welt:
            gesendet = threading.Event()

            def tun(verbindung):
                verbindung.senden(daten)
                gesendet.set()
                verbindung.schweigen()

            with Server(cloud(tun)) as server:
                welt.konto(server.url)
                lauf = welt.starten()
                pruefen(gesendet.wait(GEDULD), "the sync is not asked for")
                ziel = lauf.rechenzeit() + arbeit
                warten(lambda: lauf.rechenzeit() >= ziel or
                       any(zeile.startswith("  ->") for zeile in welt.protokoll()))
                lauf.beenden(signal.SIGTERM)


if __name__ == "__main__":
    main(2)
