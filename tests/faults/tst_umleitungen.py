"""Redirects: the account key reaches the services of the account and no other."""

import tls
from pruefstand import Welt, adresse, faelle, fall, main, passt, pruefen
from server import Server, antwort, cloud

SCHLUESSEL = "geheimer-schluessel"
BEIDE = ("/api/status", "/api/abgleich")


def umleitung(ziel, code):
    return (f"HTTP/1.1 {code} Moved\r\nLocation: {ziel}\r\nContent-Length: 0\r\n\r\n").encode()


def weiter(nach, code=307):
    """The behaviour of a server that leads everything on to the same path at `nach`."""

    def verhalten(verbindung):
        pfad = verbindung.lesen().split(" ")[1]
        verbindung.senden(umleitung(nach + pfad, code))

    return verhalten


def mit_schluessel(server):
    return sum(SCHLUESSEL.encode() in anfrage for anfrage in server.anfragen)


def tls_fuer(wo):
    return STELLE.kontext(wo, f"IP:{wo}")


@faelle([(f"from port 80 to 443 not followed after {code}", code) for code in (301, 302, 307, 308)])
def nach_https(code):
    """To be followed: the same host's secure service. Redirected POSTs stay POSTs after 307 and 308."""
    wo = adresse()
    ziel = Server(lambda v: v.senden(antwort() if v.lesen() else b""), tls=tls_fuer(wo), wo=wo,
                  port=443)
    with Welt() as welt, Server(weiter(f"https://{wo}", code), wo=wo, port=80), ziel:
        welt.konto(f"http://{wo}")
        passt("^Bibliothek ist abgeglichen", welt.bild())
        pruefen(mit_schluessel(ziel) == 2, mit_schluessel(ziel), "requests with the key")
        pruefen(ziel.posts() == (1 if code > 302 else 0), ziel.posts(), "posts")


@fall("redirect within a service not followed")
def gleicher_dienst():
    def verhalten(verbindung):
        zeile = verbindung.lesen()
        gut = "/neu/" in zeile
        pfad = zeile.split(" ")[1]
        verbindung.senden(antwort() if gut else umleitung("/neu" + pfad, 307))

    with Welt() as welt, Server(verhalten) as server:
        welt.konto(server.url)
        passt("^Bibliothek ist abgeglichen", welt.bild())
        pruefen(server.posts() == 2, server.posts(), "posts")


@faelle([
    ("another host", lambda wo: f"http://{adresse()}", 80, 80, False),
    ("another host, secure", lambda wo: f"https://{adresse()}", 80, 443, True),
    ("another port", lambda wo: f"http://{wo}:8081", 8080, 8081, False),
    ("another port, secure", lambda wo: f"https://{wo}:8443", 8080, 8443, True),
    ("port 443 from another than 80", lambda wo: f"https://{wo}", 8080, 443, True),
    ("another secure port from 80", lambda wo: f"https://{wo}:8443", 80, 8443, True),
    ("a name before the host", lambda wo: f"http://{wo}@{adresse()}", 80, 80, False),
    ("another host without a scheme", lambda wo: f"//{adresse()}", 80, 80, False),
])
def fremder_dienst(nach, von_port, ziel_port, sicher):
    """The key goes nowhere: the redirect is an answer with its own status."""
    wo = adresse()
    ort = nach(wo)
    host = ort.split("//")[1].split("@")[-1].split(":")[0]
    ziel = Server(cloud(antwort()), tls=tls_fuer(host) if sicher else None, wo=host, port=ziel_port)
    with Welt() as welt, Server(weiter(ort), wo=wo, port=von_port), ziel:
        welt.konto(f"http://{wo}:{von_port}")
        ausgabe = welt.bild()
        passt(r"^Abgleich nicht möglich\nDie Cloud antwortet mit 307\.", ausgabe)
        pruefen(ziel.verbindungen == 0, "the other service was asked:", ziel.anfragen[:1])


@fall("from secure to not secure")
def nicht_zurueck():
    wo = adresse()
    ziel = Server(cloud(antwort()), wo=wo, port=80)
    quelle = Server(weiter(f"http://{wo}"), tls=tls_fuer(wo), wo=wo, port=443)
    with Welt() as welt, ziel, quelle:
        welt.konto(f"https://{wo}")
        passt(r"^Abgleich nicht möglich\nDie Cloud antwortet mit 307\.", welt.bild())
        pruefen(ziel.verbindungen == 0, "the other service was asked")


@faelle([
    ("a file", "file:///etc/passwd"), ("another protocol", "ftp://127.0.0.1/x"),
    ("no address", "http://"), ("blanks", "ht tp://a b/"), ("an empty place", ""),
    ("a port beyond all", "http://127.0.0.1:99999/"), ("10 KiB", "/x" * 3500),
    ("control characters", "/a\tb\x01"),
])
def seltsame_orte(ort):
    """Whatever a redirect names, the program answers and ends."""
    def verhalten(verbindung):
        zeile = verbindung.lesen()
        ziel = umleitung(ort, 302) if zeile.startswith("POST") else antwort(b"{}", "404 No")
        verbindung.senden(antwort(b"{}") if "/api/status" in zeile else ziel)

    with Welt() as welt, Server(verhalten) as server:
        welt.konto(server.url)
        passt(r"^(Nicht abgeglichen|Abgleich nicht möglich)\n", welt.bild())


@fall("redirects in a circle")
def kreis():
    with Welt() as welt, Server(weiter("")) as server:
        welt.konto(server.url)
        passt(r"^Nicht abgeglichen\n.*leitet zu oft weiter", welt.bild())
        pruefen(len(server.anfragen) == 11, len(server.anfragen), "requests")


if __name__ == "__main__":
    STELLE = tls.Stelle(vertraut=True)
    try:
        main()
    finally:
        STELLE.toeten()
