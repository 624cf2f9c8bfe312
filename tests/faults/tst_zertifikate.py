"""Certificates that prove nothing: nothing is sent over such a connection, and each reason has a sentence of
its own."""

import re
import ssl
import warnings

import tls
from pruefstand import Welt, adresse, fall, faelle, main, passt, pruefen
from server import GUT, Server, antwort, cloud

KERN = [
    ("unknown issuer", r"Aussteller"),
    ("self-signed", r"Aussteller|selbst"),
    ("expired", r"abgelaufen"),
    ("not yet valid", r"noch nicht gültig"),
    ("another host", r"anderen Server|anderen Namen"),
    ("common name beside foreign alternative names", r"anderen Server|anderen Namen"),
    ("weak key", r"zu schwach"),
    ("weak hash", r"zu schwach"),
]
gehoert = {}


def stellen():
    vertraut, fremd = tls.Stelle(vertraut=True), tls.Stelle()
    return vertraut, fremd


def kontext(name, wo):
    ip = f"IP:{wo}"
    eigen, fremd = STELLEN
    return {
        "good": lambda: eigen.kontext(wo, ip),
        "unknown issuer": lambda: fremd.kontext(wo, ip),
        "self-signed": lambda: eigen.kontext(wo, ip, selbst=True),
        "expired": lambda: eigen.kontext(wo, ip, von="20200101000000Z", bis="20210101000000Z"),
        "not yet valid": lambda: eigen.kontext(wo, ip, von="20900101000000Z",
                                               bis="20910101000000Z"),
        "another host": lambda: eigen.kontext("fremd.test", "DNS:fremd.test,IP:127.9.9.9"),
        "common name beside foreign alternative names":
            lambda: eigen.kontext(wo, "DNS:fremd.test,IP:127.9.9.9"),
        "weak key": lambda: eigen.kontext(wo, ip, schluessel="rsa:1024"),
        "weak hash": lambda: eigen.kontext(wo, ip, hash_="sha1"),
    }[name]()


def meldung(name, tun=antwort()):
    wo = adresse()
    with Welt() as welt, Server(cloud(tun), tls=kontext(name, wo), wo=wo) as server:
        welt.konto(server.url)
        ausgabe = welt.bild()
        return ausgabe, server


def satz(ausgabe):
    """What a verdict says about the reason, in brackets."""
    return re.search(r"\((.*)\)", ausgabe).group(1)


@fall("a good certificate refused")
def gut():
    ausgabe, _ = meldung("good")
    passt("^Bibliothek ist abgeglichen", ausgabe)


@faelle([(f"certificate: {name}", name, muster) for name, muster in KERN])
def schlecht(name, muster):
    ausgabe, server = meldung(name)
    passt(r"^Nicht abgeglichen\n", ausgabe)
    pruefen(not server.anfragen, "something was sent:", server.anfragen[:1])
    gehoert[name] = satz(ausgabe)
    passt(muster, gehoert[name])


@fall("two reasons told in the same words", stufe=1)
def verschieden():
    arten = ["unknown issuer", "expired", "not yet valid", "another host", "weak key"]
    saetze = {gehoert.get(art) or satz(meldung(art)[0]) for art in arten}
    pruefen(len(saetze) == len(arten), saetze)


@fall("certificate: revoked, as the server itself proves", stufe=2)
def widerrufen():
    with STELLEN[0].mit_nachweis(adresse(), True) as url, Welt() as welt:
        welt.konto(url)
        passt(r"^Nicht abgeglichen\n.*Das Zertifikat der Cloud wurde widerrufen\.", welt.bild())


@fall("certificate: the proof that it is not revoked refused", stufe=3)
def nicht_widerrufen():
    with STELLEN[0].mit_nachweis(adresse(), False) as url, Welt() as welt:
        welt.konto(url)
        lauf = welt.starten("--pruefen")
        lauf.ende(40)
        passt("antwortet in", lauf.ausgabe())


@fall("body without a length cut under TLS taken for whole")
def gekappt():
    def tun(verbindung):
        verbindung.senden(b"HTTP/1.1 200 OK\r\n\r\n" + GUT)
        verbindung.kappen()

    ausgabe, _ = meldung("good", tun)
    passt(r"^Nicht abgeglichen\n.*unterbrochen", ausgabe)


@fall("body with its length cut under TLS refused")
def gekappt_mit_laenge():
    def tun(verbindung):
        verbindung.senden(antwort())
        verbindung.kappen()

    ausgabe, _ = meldung("good", tun)
    passt("^Bibliothek ist abgeglichen", ausgabe)


@fall("body without a length and an orderly end under TLS refused")
def ordentlich():
    ausgabe, _ = meldung("good", lambda v: v.senden(b"HTTP/1.1 200 OK\r\n\r\n" + GUT))
    passt("^Bibliothek ist abgeglichen", ausgabe)


@fall("TLS asked of a server that speaks none")
def ohne_tls():
    with Welt() as welt, Server(lambda v: v.senden(b"SSH-2.0-x\r\n")) as server:
        welt.konto(server.url.replace("http:", "https:"))
        passt(r"^Nicht abgeglichen\n.*\(.+\)", welt.bild())


@fall("server that only knows TLS 1.0")
def altes_tls():
    wo = adresse()
    alt = kontext("good", wo)
    with warnings.catch_warnings():
        warnings.simplefilter("ignore")
        alt.minimum_version = ssl.TLSVersion.TLSv1
        alt.maximum_version = ssl.TLSVersion.TLSv1
    with Welt() as welt, Server(cloud(antwort()), tls=alt, wo=wo) as server:
        welt.konto(server.url)
        passt(r"^Nicht abgeglichen\n.*sichere Verbindung", welt.bild())
        pruefen(not server.anfragen, "something was sent")


if __name__ == "__main__":
    STELLEN = stellen()
    try:
        main()
    finally:
        for stelle in STELLEN:
            stelle.toeten()
