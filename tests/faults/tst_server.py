"""Answers that no decent server gives: the verdict is that of the final answer or says what is wrong, a sync
is asked for once, and the program ends in order."""

import json
import re

from pruefstand import Welt, faelle, fall, main, passt, pruefen
from server import GUT, Server, antwort, cloud

ABGEGLICHEN = r"^Bibliothek ist abgeglichen\nAuf dem neuesten Stand"
UNTERBROCHEN = r"^Nicht abgeglichen\n.*\(Die Verbindung wurde unterbrochen\.\)"
GESCHEITERT = r"^Nicht abgeglichen\n.*\(.+\)"
UNBEKANNT = r"^Unbekannter Zustand\n"
ZU_SPAET = r"^Nicht abgeglichen\n.*\(Die Cloud hat nicht rechtzeitig geantwortet\.\)"


def einmal(bytes_, danach="schweigen"):
    """Sends this and then: "schweigen" waits for the other side to hang up, "" hangs up, "abreissen"
    resets."""

    def tun(verbindung):
        verbindung.senden(bytes_)
        if danach:
            getattr(verbindung, danach)()

    return tun


def abgleich(tun, muster, status=None):
    with Welt() as welt, Server(cloud(tun, status)) as server:
        welt.konto(server.url)
        ausgabe = welt.bild()
        passt(muster, ausgabe)
        pruefen(server.posts() == (0 if status else 1), "the sync was asked for", server.posts(),
                "times")
        pruefen(welt.letzter.fehler() == "", welt.letzter.fehler()[:500])


def zwischen(*codes):
    return b"".join(b"HTTP/1.1 %d Wait\r\nLink: </x>; rel=preload\r\n\r\n" % code
                    for code in codes)


def langsam(verbindung):
    for code in (102, 103, 100, 102):
        verbindung.troepfeln(zwischen(code), 0.005)
    verbindung.senden(antwort())


faelle([
    ("interim 100 taken for the answer", zwischen(100) + antwort(), ABGEGLICHEN),
    ("interim 102 taken for the answer", zwischen(102) + antwort(), ABGEGLICHEN),
    ("interim 103 taken for the answer", zwischen(103) + antwort(), ABGEGLICHEN),
    ("ten interim answers", zwischen(*[100, 102, 103] * 3, 102) + antwort(), ABGEGLICHEN),
    ("slow interim answers", langsam, ABGEGLICHEN),
    ("interim answer before an error", zwischen(102) +
     antwort(b'{"fehler":"kaputt"}', "500 Oh"),
     r"^Abgleich nicht möglich\nDie Cloud antwortet mit 500: kaputt"),
    ("interim answer before an answer without a length",
     einmal(zwischen(102) + b"HTTP/1.1 200 OK\r\n\r\n" + GUT, ""), ABGEGLICHEN),
    ("interim answer before a chunked one", zwischen(103) +
     b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n%x\r\n%s\r\n0\r\n\r\n" %
     (len(GUT), GUT), ABGEGLICHEN),
    ("interim answer and nothing more", einmal(zwischen(102), ""), UNTERBROCHEN),
    ("interim answer and a reset", einmal(zwischen(100), "abreissen"), UNTERBROCHEN),
    ("protocol switched unasked",
     einmal(b"HTTP/1.1 101 Switching Protocols\r\nUpgrade: h2c\r\n\r\n"),
     r"^Abgleich nicht möglich\nDer Server antwortet nicht verständlich\."),
    ("no answer at all", einmal(b"", ""), UNTERBROCHEN),
    ("a reset in place of an answer", einmal(b"", "abreissen"), UNTERBROCHEN),
    ("half a status line", einmal(b"HTTP/1.1 20", ""), GESCHEITERT),
    ("header lines without an end", einmal(b"HTTP/1.1 200 OK\r\nX: y\r\n", ""), GESCHEITERT),
    ("another protocol's greeting", einmal(b"220 mail.example ESMTP\r\n", ""), GESCHEITERT),
    ("zeros in place of an answer", einmal(b"\0" * 4096, ""), GESCHEITERT),
])(abgleich)


@fall("interim answer to the status question and then silence")
def zwischenantwort_und_stille():
    abgleich(antwort(), ZU_SPAET, einmal(zwischen(102)))


def mit_status(status):
    return antwort(b'{"fehler":"Grund"}', f"{status} Reason")


def umgeleitet(status):
    # Without a Location there is nowhere to go: an answer like any other.
    return antwort(b'{"fehler":"Grund"}', f"{status} Reason")


def ohne_body(status):
    return f"HTTP/1.1 {status} Reason\r\n\r\n".encode()


STATUS = r"^Abgleich nicht möglich\nDie Cloud antwortet mit %d: Grund\n"
OHNE_GRUND = r"^Abgleich nicht möglich\nDie Cloud antwortet mit %d\.\n"

faelle([(f"status {s} is not told as such", mit_status(s), STATUS % s)
        for s in (201, 202, 203, 206, 299, 300, 301, 302, 303, 305, 307, 308, 399, 400, 401, 402,
                  403, 404, 405, 407, 408, 409, 410, 411, 413, 418, 421, 425, 429, 451, 499, 500,
                  501, 502, 503, 504, 505, 511, 599, 600, 777, 999)])(abgleich)
faelle([(f"status {s} has no body", einmal(ohne_body(s), ""), OHNE_GRUND % s)
        for s in (204, 205, 304)])(abgleich)
faelle([(f"status line {zeile!r} taken for an answer",
         einmal(zeile.encode() + b"\r\nContent-Length: %d\r\n\r\n" % len(GUT) + GUT, ""),
         GESCHEITERT)
        for zeile in ("HTTP/1.1 099 No", "HTTP/1.1 1000 No", "HTTP/1.1 20 No", "HTTP/1.1 -200 No",
                      "HTTP/1.1 2O0 No", "HTTP/1.1 200OK", "HTTP/1.1", "HTTP/1.1 000 No",
                      "HTTP/1.1 +200 No", "ICY 200 OK", "HTTP/ 200 OK", "HTtP/1.1 200 OK",
                      "HTtP/1.1 404 No")])(abgleich)
faelle([(f"status line {zeile!r} refused",
         einmal(zeile.encode() + b"\r\nContent-Length: %d\r\n\r\n" % len(GUT) + GUT, ""),
         ABGEGLICHEN)
        for zeile in ("HTTP/1.1 200", "HTTP/1.0 200 OK", "HTTP/1.1 200 " + "sehr " * 100 + "gut")])(
            abgleich)


@fall("proxy's status 407 without a proxy")
def ohne_proxy_407():
    abgleich(antwort(b"", "407 Proxy Authentication Required",
                     b'Proxy-Authenticate: Basic realm="x"\r\n'),
             r"^Abgleich nicht möglich\nDie Cloud antwortet mit 407\.\n")


@fall("status 401 with a challenge")
def anmeldung_verlangt():
    abgleich(antwort(b"", "401 Unauthorized", b'WWW-Authenticate: Basic realm="x"\r\n'),
             r"^Abgleich nicht möglich\nDie Cloud antwortet mit 401\.\n")


def gechunkt(koerper, danach=""):
    return einmal(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + koerper, danach)


def chunk(daten, groesse=None):
    return (b"%x" % len(daten) if groesse is None else groesse) + b"\r\n" + daten + b"\r\n"


SCHLUSS = b"0\r\n\r\n"

faelle([
    ("chunks with an extension refused", gechunkt(chunk(GUT, b"%x;a=b" % len(GUT)) + SCHLUSS),
     ABGEGLICHEN),
    ("chunks of one byte", gechunkt(b"".join(chunk(GUT[i:i + 1]) for i in range(len(GUT))) +
                                    SCHLUSS), ABGEGLICHEN),
    ("chunk size that is no number", gechunkt(chunk(GUT, b"zz") + SCHLUSS), GESCHEITERT),
    ("chunk size without digits", gechunkt(chunk(GUT, b"") + SCHLUSS), GESCHEITERT),
    ("negative chunk size", gechunkt(chunk(GUT, b"-5") + SCHLUSS), GESCHEITERT),
    ("chunk size beyond 64 bits", gechunkt(chunk(GUT, b"f" * 17) + SCHLUSS), GESCHEITERT),
    ("chunk size of 16 digits", gechunkt(chunk(GUT, b"f" * 16) + SCHLUSS), GESCHEITERT),
    ("chunk larger than what comes", gechunkt(chunk(GUT, b"ffff")), GESCHEITERT),
    ("chunk size without an end", gechunkt(b"1" * 100_000), GESCHEITERT),
    ("last chunk missing", gechunkt(chunk(GUT)), GESCHEITERT),
    ("length too long", einmal(antwort().replace(b": %d" % len(GUT), b": %d" % (len(GUT) + 9)), ""),
     UNTERBROCHEN),
    ("length too short", einmal(antwort().replace(b": %d" % len(GUT), b": %d" % (len(GUT) - 2)), ""),
     UNBEKANNT),
    ("length beyond all bounds",
     einmal(antwort().replace(b": %d" % len(GUT), b": 99999999999999999999"), ""), GESCHEITERT),
    ("negative length", einmal(antwort().replace(b": %d" % len(GUT), b": -1"), ""), GESCHEITERT),
    ("two lengths that differ", einmal(antwort(kopf=b"Content-Length: 7\r\n"), ""), GESCHEITERT),
    ("answer without a length", einmal(b"HTTP/1.1 200 OK\r\n\r\n" + GUT, ""), ABGEGLICHEN),
])(abgleich)


@faelle([
    ("status line without an end", b"HTTP/1.1 200 " + b"O" * 65536, b"O" * 65536),
    ("header line without an end", b"HTTP/1.1 200 OK\r\nX: ", b"x" * 65536),
    ("header lines for ever", b"HTTP/1.1 200 OK\r\n", b"X-Y: z\r\n" * 4096),
    ("interim answers for ever", b"", zwischen(102) * 1024),
])
def endloser_kopf(anfang, stueck):
    """Ends by itself, long before the time limit, and costs no memory."""

    def tun(verbindung):
        verbindung.senden(anfang)
        verbindung.endlos(stueck)

    with Welt() as welt, Server(cloud(tun)) as server:
        welt.konto(server.url)
        lauf = welt.starten()
        passt(r"^  -> warn: Nicht abgeglichen", welt.urteil(20))
        pruefen(lauf.spitze() < 200 * 1024, "memory:", lauf.spitze(), "KiB")
        pruefen(server.posts() <= 1, server.posts(), "posts")
        lauf.beenden()


faelle([
    ("header line of 9 KiB", antwort(kopf=b"X-Long: " + b"x" * 9000 + b"\r\n"), GESCHEITERT),
    ("header line of 7 KiB refused", antwort(kopf=b"X-Long: " + b"x" * 7000 + b"\r\n"),
     ABGEGLICHEN),
    ("header lines of 300 KiB", antwort(kopf=b"".join(b"X-%d: %s\r\n" % (i, b"y" * 1000)
                                                      for i in range(300))), GESCHEITERT),
    ("body that is no JSON", antwort(b"<html>Willkommen im Hotel</html>"), UNBEKANNT),
    ("JSON nested ten thousand deep", antwort(b"[" * 10_000 + b"]" * 10_000), UNBEKANNT),
    ("list in place of a map", antwort(b"[1,2,3]"), UNBEKANNT),
    ("every field of a wrong type", antwort(json.dumps(
        {"ergebnis": {"zustand": {"a": [1]}, "aendert_zentrale": "x", "aendert_geraet": [None]},
         "betrieb": 7, "statistik": [], "andere": {"x": 1}, "app": "nein"}).encode()), UNBEKANNT),
])(abgleich)

LANG = "ä" * 3_000_000


@faelle([
    ("state of megabytes", {"ergebnis": {"zustand": LANG}}),
    ("error text of megabytes", {"ergebnis": {"zustand": "fehler", "fehler": LANG}}),
    ("remark of megabytes", {"ergebnis": {"zustand": "verschoben", "hinweis": LANG}}),
    ("held-back state of megabytes", {"ergebnis": {"zustand": "angehalten"},
                                      "geraet": {"zustand": LANG}}),
    ("device names of megabytes", {"ergebnis": {"zustand": "aktuell"},
                                   "andere": [{"name": LANG, "rekordbox_offen": True},
                                              {"name": LANG, "laeuft": True}]}),
    ("state that is a map of megabytes", {"ergebnis": {"zustand": {"a": LANG}}}),
    ("error text of an error status", {"fehler": LANG}, "500 Oh"),
    ("line feeds in a text", {"ergebnis": {"zustand": "fehler", "fehler": "a\nb\n" * 50_000}}),
])
def lange_texte(inhalt, status="200 OK"):
    """What is said and what is logged stays readable: no more than 64 KiB of the server's words."""
    hoechstens = 65536 + 1024
    daten = json.dumps(inhalt, ensure_ascii=False).encode()
    with Welt() as welt, Server(cloud(antwort(daten, status))) as server:
        welt.konto(server.url)
        ausgabe = welt.bild()
        pruefen(len(ausgabe.encode()) <= hoechstens, "the verdict has", len(ausgabe), "characters")
        lauf = welt.starten()
        welt.urteil()
        lauf.beenden()
        for zeile in welt.protokoll():
            pruefen(len(zeile.encode()) <= hoechstens, "a log line has", len(zeile), "characters")


@fall("some status between 200 and 999 in the check-up")
def pruefung_bei_allen_status():
    """Every status from 200 to 999 is told as what it is, by one check-up with an address for each."""
    codes = [c for c in range(200, 1000)]

    def verhalten(verbindung):
        zeile = verbindung.lesen()
        code = int(re.search(r"/s(\d+)/", zeile).group(1))
        verbindung.senden(antwort(b"{}", f"{code} Reason"))

    # Some dozens at a time: more connections than that would wait longer than the status question may.
    for anfang in range(0, len(codes), 40):
        teil = codes[anfang:anfang + 40]
        with Welt() as welt, Server(verhalten) as server:
            welt.konto(*[f"{server.url}/s{code}" for code in teil])
            lauf = welt.starten("--pruefen", "--json")
            lauf.ende()
            befunde = [b for b in json.loads(lauf.ausgabe())["befunde"]
                       if b["bereich"] == "adresse"]
            pruefen(len(befunde) == len(teil), len(befunde), "findings for", len(teil))
            for code, befund in zip(teil, befunde):
                gut = befund["gut"] if code == 200 else str(code) in befund["text"]
                pruefen(gut, code, befund)


if __name__ == "__main__":
    main()
