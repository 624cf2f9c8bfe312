"""Proxies of the environment, and scripts that choose one: whatever they do, the program answers in time, stays
awake and leaves when it is asked to. The account's host has no other way than the proxy: no name resolves here."""

import glob
import signal
import time

from pruefstand import Welt, faelle, fall, main, passt, pruefen, warten
from server import GUT, Server, antwort

ZIEL = "http://cloud.test"
SICHERES_ZIEL = "https://cloud.test"


def durchreichen(verbindung):
    """A proxy that answers in place of the cloud."""
    zeile = verbindung.lesen()
    verbindung.senden(antwort(b"{}" if "/api/status" in zeile else GUT))


def verweigern(status, kopf=b""):
    def verhalten(verbindung):
        verbindung.lesen()
        verbindung.senden(antwort(b"", status, kopf))

    return verhalten


def stumm(verbindung):
    verbindung.lesen()
    verbindung.schweigen()


@fall("proxy of the environment not asked")
def proxy():
    with Welt() as welt, Server(durchreichen) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = server.url
        passt("^Bibliothek ist abgeglichen", welt.bild())
        pruefen(server.anfragen[0].startswith(b"GET http://cloud.test/api/status "),
                server.anfragen[0][:99])
        pruefen(server.posts() == 1, server.posts(), "posts")


@faelle([("no_proxy not kept", "no_proxy", "cloud.test"),
         ("a list in no_proxy not kept", "no_proxy", "x.test,cloud.test")])
def ausnahme(name, wert):
    with Welt() as welt, Server(durchreichen) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = server.url
        welt.umgebung[name] = wert
        passt(r"^Nicht abgeglichen\n.*nicht gefunden", welt.bild())
        pruefen(server.verbindungen == 0, "the proxy was asked")


@fall("proxy asked for the loopback")
def loopback_ohne_proxy():
    with Welt() as welt, Server(durchreichen) as server, Server(durchreichen) as proxy_:
        welt.konto(server.url)
        welt.umgebung["http_proxy"] = proxy_.url
        passt("^Bibliothek ist abgeglichen", welt.bild())
        pruefen(proxy_.verbindungen == 0, "the proxy was asked")


@faelle([
    ("403 by a proxy to a tunnel", SICHERES_ZIEL, verweigern("403 Forbidden")),
    ("407 by a proxy to a tunnel", SICHERES_ZIEL,
     verweigern("407 Auth", b'Proxy-Authenticate: Basic realm="x"\r\n')),
    ("407 by a proxy", ZIEL, verweigern("407 Auth", b'Proxy-Authenticate: Basic realm="x"\r\n')),
    ("407 by a proxy without a challenge to a tunnel", SICHERES_ZIEL, verweigern("407 Auth")),
    ("nonsense by a proxy to a tunnel", SICHERES_ZIEL, lambda v: v.senden(b"\0\1\2\r\n\r\n")),
    ("a proxy that hangs up", SICHERES_ZIEL, lambda v: v.lesen()),
])
def verweigert(ziel, verhalten):
    with Welt() as welt, Server(verhalten) as server:
        welt.konto(ziel)
        welt.umgebung["http_proxy"] = welt.umgebung["https_proxy"] = server.url
        passt(r"^(Nicht abgeglichen|Abgleich nicht möglich)\n.*\w", welt.bild(geduld=30))
        pruefen(not any(b"X-Schluessel" in a.replace(b"x-schluessel", b"X-Schluessel")
                        for a in server.anfragen) or ziel == ZIEL, "the key went to the proxy")


@fall("proxy that is not there")
def fehlender_proxy():
    with Welt() as welt, Server(durchreichen) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = server.url
        server.toeten()
        passt(r"^Nicht abgeglichen\n.*(Proxy|abgelehnt)", welt.bild(geduld=30))


def schlaeft_nicht(welt, lauf, gefragt, limit=None):
    """A second start is answered while the first one waits, the verdict comes within `limit` seconds, and
    the end is in time."""
    warten(gefragt, was="the question to the proxy")
    zweiter = welt.starten("--hintergrund")
    pruefen(zweiter.ende(10) == 0, "second start:", zweiter.fehler())
    if limit:
        passt("  -> warn: Nicht abgeglichen", welt.urteil(limit))
    pruefen(lauf.laeuft(), "the program is gone")
    lauf.beenden(signal.SIGTERM)


@faelle([("silent proxy", ZIEL), ("silent proxy to a tunnel", SICHERES_ZIEL)])
def stummer_proxy(ziel):
    with Welt() as welt, Server(stumm) as server:
        welt.konto(ziel)
        welt.umgebung["http_proxy"] = welt.umgebung["https_proxy"] = server.url
        schlaeft_nicht(welt, welt.starten(), lambda: server.verbindungen, 10)


def endlos(verbindung):
    verbindung.lesen()
    verbindung.senden(b"HTTP/1.1 200 OK\r\n\r\n")
    verbindung.endlos(b"// nothing yet\n" * 4096)


def langsam(verbindung):
    verbindung.lesen()
    verbindung.senden(b"HTTP/1.1 200 OK\r\nContent-Length: 4000\r\n\r\n")
    verbindung.troepfeln(b"/" * 4000, 0.1)


SKRIPTE = [
    ("silent", stumm),
    ("endless", endlos),
    ("slow", langsam),
    ("hangs up", lambda v: v.lesen()),
    ("404", verweigern("404 No")),
    ("nonsense", lambda v: v.senden(antwort(b"\0\1{{{" * 999)) if v.lesen() else None),
    ("wrong length", lambda v: v.senden(b"HTTP/1.1 200 OK\r\nContent-Length: 9999999999\r\n\r\nx")
     if v.lesen() else None),
    ("huge length", lambda v: (v.lesen(), v.senden(
        b"HTTP/1.1 200 OK\r\nContent-Length: 99999999999999999999\r\n\r\nx"), v.schweigen())),
]


@faelle([(f"proxy script: {name}", verhalten) for name, verhalten in SKRIPTE])
def skript(verhalten):
    with Welt() as welt, Server(verhalten) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = f"pac+{server.url}/proxy.pac"
        schlaeft_nicht(welt, welt.starten(), lambda: server.verbindungen, 12)


@faelle([(f"proxy script: {name}, the end", verhalten) for name, verhalten in SKRIPTE[:3]])
def ende_im_skript(verhalten):
    with Welt() as welt, Server(verhalten) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = f"pac+{server.url}/proxy.pac"
        lauf = welt.starten()
        warten(lambda: server.verbindungen, was="the question to the proxy")
        lauf.beenden(signal.SIGTERM)


def liest_ohne_grenze():
    """From 0.5 on the system's library keeps all that a script's server sends; that is beyond kalvaro."""
    orte = glob.glob("/usr/lib/*/libproxy.so.*.*") + glob.glob("/usr/lib/*/libproxy/libpxbackend*")
    return any("libpxbackend" in ort or "libproxy.so.0.5" in ort for ort in orte)


@fall("proxy script: endless, memory")
def speicher():
    if liest_ohne_grenze():
        print("   left out: this system's libproxy has no bound")
        return
    with Welt() as welt, Server(endlos) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = f"pac+{server.url}/proxy.pac"
        lauf = welt.starten()
        warten(lambda: server.verbindungen)
        welt.urteil(15)
        pruefen(lauf.spitze() < 512 * 1024, lauf.spitze(), "KiB")
        lauf.beenden()


@fall("time of a sync with a silent proxy script")
def frist_im_skript():
    with Welt() as welt, Server(stumm) as server:
        welt.konto(ZIEL)
        welt.umgebung["http_proxy"] = f"pac+{server.url}/proxy.pac"
        beginn = time.monotonic()
        passt(r"^Nicht abgeglichen\n.*\(.+\)", welt.bild(geduld=30))
        pruefen(time.monotonic() - beginn < 8, f"{time.monotonic() - beginn:.1f} s")


if __name__ == "__main__":
    main(12)
