"""Servers on the loopback that do as a case tells them, and what they may answer."""

import contextlib
import json
import socket
import ssl
import struct
import threading

from pruefstand import GEDULD, adresse

GUT = json.dumps({"ergebnis": {"zustand": "aktuell"}}).encode()


def antwort(daten=GUT, status="200 OK", kopf=b""):
    """An answer with its length; `kopf` holds further lines, each with its CRLF."""
    return (f"HTTP/1.1 {status}\r\nContent-Length: {len(daten)}\r\n".encode() + kopf + b"\r\n" +
            daten)


class Verbindung:
    """One connection that a server has taken."""

    def __init__(self, leitung, server):
        self.leitung = leitung
        self.server = server
        self.anfrage = b""

    def lesen(self):
        """Reads one whole request; its first line."""
        while b"\r\n\r\n" not in self.anfrage:
            self._mehr()
        kopf, _, rest = self.anfrage.partition(b"\r\n\r\n")
        laenge = 0
        for zeile in kopf.split(b"\r\n"):
            name, _, wert = zeile.partition(b":")
            if name.lower() == b"content-length":
                laenge = int(wert)
        while len(rest) < laenge:
            rest += self._mehr()
        self.server.anfragen.append(self.anfrage)
        return self.anfrage.partition(b"\r\n")[0].decode()

    def _mehr(self):
        stueck = self.leitung.recv(65536)
        if not stueck:
            raise ConnectionError
        self.anfrage += stueck
        return stueck

    def senden(self, daten):
        self.leitung.sendall(daten)

    def schweigen(self):
        """Says nothing more until the other side hangs up."""
        with contextlib.suppress(OSError):
            while self.leitung.recv(65536):
                pass

    def troepfeln(self, daten, abstand=0.02):
        """Sends the bytes one by one for as long as the other side listens."""
        for i in range(len(daten)):
            self.senden(daten[i:i + 1])
            if self.server.zu.wait(abstand):
                return

    def endlos(self, stueck):
        """Sends the same over and over until the other side hangs up."""
        while not self.server.zu.is_set():
            self.senden(stueck)

    def verabschieden(self):
        """Says under TLS that nothing more comes, without waiting for the other side to say so too."""
        self.leitung.settimeout(0)
        with contextlib.suppress(ssl.SSLError):
            self.leitung.unwrap()
        self.leitung.settimeout(GEDULD)

    def abreissen(self):
        """Ends the connection with a reset, under TLS without a farewell."""
        self.leitung.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.leitung.close()

    def kappen(self):
        """Closes the connection below TLS: the other side sees an end without close_notify."""
        nackt = socket.socket(fileno=self.leitung.detach())
        nackt.shutdown(socket.SHUT_WR)
        with contextlib.suppress(OSError):
            while nackt.recv(65536):
                pass
        nackt.close()


class Server:
    """Takes connections and does `verhalten(verbindung)` on each, in a thread of its own."""

    def __init__(self, verhalten, tls=None, wo=None, port=0):
        self.verhalten = verhalten
        self.tls = tls
        self.zu = threading.Event()
        self.anfragen = []
        self.verbindungen = 0
        self.lauscher = socket.create_server((wo or adresse(), port), backlog=128)
        self.wo, self.port = self.lauscher.getsockname()[:2]
        threading.Thread(target=self._annehmen, daemon=True).start()

    @property
    def url(self):
        return f"{'https' if self.tls else 'http'}://{self.wo}:{self.port}"

    def posts(self):
        return sum(a.startswith(b"POST ") for a in self.anfragen)

    def toeten(self):
        self.zu.set()
        with contextlib.suppress(OSError):
            self.lauscher.shutdown(socket.SHUT_RDWR)
        self.lauscher.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.toeten()

    def _annehmen(self):
        while not self.zu.is_set():
            try:
                leitung, _ = self.lauscher.accept()
            except OSError:
                return
            self.verbindungen += 1
            threading.Thread(target=self._bedienen, args=(leitung,), daemon=True).start()

    def _bedienen(self, leitung):
        leitung.settimeout(GEDULD)
        with contextlib.suppress(OSError, ValueError):
            if self.tls:
                leitung = self.tls.wrap_socket(leitung, server_side=True)
            verbindung = Verbindung(leitung, self)
            self.verhalten(verbindung)
            # An orderly end: what the other side has not read yet must not be lost by a reset.
            if self.tls:
                verbindung.verabschieden()
            leitung.shutdown(socket.SHUT_WR)
            verbindung.schweigen()
        with contextlib.suppress(OSError):
            leitung.close()


def cloud(tun, status=None, stand=None):
    """The behaviour of a server that answers status and state well and a sync as `tun` says: with
    bytes, or a function of the connection."""

    def verhalten(verbindung):
        zeile = verbindung.lesen()
        was = tun
        if " /api/status" in zeile:
            was = status if status is not None else antwort(b"{}")
        elif " /api/stand" in zeile:
            was = stand if stand is not None else antwort(b"{}")
        if callable(was):
            was(verbindung)
        else:
            verbindung.senden(was)

    return verhalten
