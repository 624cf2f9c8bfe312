"""The time limits: 4 s for the status question, 8 s for the last look before rekordbox starts, whatever the
server does with its time. None ends early, none is stretched by a server that says something now and then."""

import socket
import struct
import threading
import time

from pruefstand import GEDULD, Welt, faelle, main, passt, pruefen, warten
from server import Server, antwort, cloud

FRUEH = 0.1  # seconds: the request comes a little later than the program's clock begins
SPAET = 1.5  # a machine that is busy with other things


class Uhr:
    """Measures from the coming of a request to the moment when the other side hangs up."""

    def __init__(self, tun):
        self.tun = tun
        self.dauer = None
        self.vorbei = threading.Event()

    def __call__(self, verbindung):
        # When it came the kernel knows, however late this thread has its turn (tcp(7), TCP_INFO).
        info = verbindung.leitung.getsockopt(socket.IPPROTO_TCP, socket.TCP_INFO, 104)
        beginn = time.monotonic() - struct.unpack_from("I", info, 52)[0] / 1000
        try:
            self.tun(verbindung)
            verbindung.schweigen()
        except OSError:
            pass
        self.dauer = time.monotonic() - beginn
        self.vorbei.set()

    def pruefen(self, limit):
        pruefen(self.vorbei.wait(GEDULD), "the other side never hangs up")
        pruefen(limit - FRUEH <= self.dauer <= limit + SPAET, f"{self.dauer:.2f} s, not {limit} s")


def nichts(_verbindung):
    pass


def kopf_tropfen(verbindung):
    verbindung.troepfeln(b"HTTP/1.1 200 OK\r\nX: " + b"y" * 4000, 0.05)


def koerper_tropfen(verbindung):
    verbindung.senden(b"HTTP/1.1 200 OK\r\nContent-Length: 4000\r\n\r\n")
    verbindung.troepfeln(b" " * 4000, 0.05)


def chunk_tropfen(verbindung):
    verbindung.senden(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n")
    verbindung.troepfeln(b"1\r\n \r\n" * 1000, 0.05)


def zwischen_tropfen(verbindung):
    for _ in range(400):
        verbindung.senden(b"HTTP/1.1 102 Processing\r\n\r\n")
        verbindung.server.zu.wait(0.05)


def im_kreis(verbindung):
    """Leads on to itself, slowly: ten jumps together have no more time than one."""
    verbindung.server.zu.wait(1)
    verbindung.senden(b"HTTP/1.1 302 Found\r\nLocation: /api/status\r\nContent-Length: 0\r\n\r\n")


ARTEN = [
    ("a silent server", nichts),
    ("header bytes now and then", kopf_tropfen),
    ("body bytes now and then", koerper_tropfen),
    ("chunks now and then", chunk_tropfen),
    ("interim answers now and then", zwischen_tropfen),
]


@faelle([("status question, " + name, tun) for name, tun in ARTEN])
def statusfrage(tun):
    uhr = Uhr(tun)
    with Welt() as welt, Server(cloud(antwort(), status=uhr)) as server:
        welt.konto(server.url)
        lauf = welt.starten("--bild", welt.pfad("bild.png"))
        uhr.pruefen(4.0)
        pruefen(lauf.ende() == 0, "status")
        passt(r"^Nicht abgeglichen\n.*\(Die Cloud hat nicht rechtzeitig geantwortet\.\)",
              lauf.ausgabe())
        pruefen(server.posts() == 0, "a sync was asked for without a status")


@faelle([("status question, slow redirects in a circle",)])
def umleitungen():
    with Welt() as welt, Server(cloud(antwort(), status=im_kreis)) as server:
        welt.konto(server.url)
        beginn = time.monotonic()
        ausgabe = welt.bild()
        dauer = time.monotonic() - beginn
        passt(r"^Nicht abgeglichen\n.*nicht rechtzeitig", ausgabe)
        pruefen(4.0 - FRUEH <= dauer <= 4.0 + 2 * SPAET, f"{dauer:.2f} s")


@faelle([("two silent addresses",)])
def zwei_adressen():
    """Each address has its own 4 s, and the second gets its turn."""
    erste, zweite = Uhr(nichts), Uhr(nichts)
    with Welt() as welt, Server(cloud(antwort(), status=erste)) as a, \
            Server(cloud(antwort(), status=zweite)) as b:
        welt.konto(a.url, b.url)
        passt("^Nicht abgeglichen\n.*nicht rechtzeitig", welt.bild())
        erste.pruefen(4.0)
        zweite.pruefen(4.0)


@faelle([("silent first address keeps the second from being asked",)])
def zweite_adresse():
    erste = Uhr(nichts)
    with Welt() as welt, Server(cloud(antwort(), status=erste)) as a, \
            Server(cloud(antwort())) as b:
        welt.konto(a.url, b.url)
        passt("^Bibliothek ist abgeglichen", welt.bild())
        erste.pruefen(4.0)
        pruefen((a.posts(), b.posts()) == (0, 1), a.posts(), b.posts())


@faelle([("start check, " + name, tun) for name, tun in ARTEN])
def startpruefung(tun):
    """rekordbox then starts with the library as it is."""
    uhr = Uhr(tun)
    with Welt() as welt, Server(cloud(antwort(), stand=uhr)) as server:
        welt.konto(server.url)
        welt.einstellungen(autostart=True)
        welt.rekordbox()
        lauf = welt.starten()
        uhr.pruefen(8.0)
        warten(lambda: "rekordbox 7.1.4 gestartet" in welt.protokoll())
        lauf.beenden()


if __name__ == "__main__":
    main(12)
