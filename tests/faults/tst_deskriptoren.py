"""Descriptors that run out: no abort, and never silence."""

import contextlib
import os
import resource
import socket
import time

from pruefstand import Welt, faelle, fall, main, passt, pruefen, warten
from server import Server, antwort, cloud


def begrenzen(anzahl):
    return lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (anzahl, anzahl))


def pruefen_mit(anzahl, argumente, welt):
    lauf = welt.starten(*argumente, preexec_fn=begrenzen(anzahl))
    status = lauf.ende(40)
    gesagt = lauf.ausgabe() + lauf.fehler()
    pruefen(status >= 0, f"with {anzahl} descriptors: signal {-status}: {gesagt[-300:]!r}")
    pruefen(gesagt.strip(), f"with {anzahl} descriptors: silence with {status}")
    if status == 127:  # the libraries themselves could not be opened
        passt("(?i)too many open files|cannot open shared object", gesagt)
    return status, gesagt


@faelle([(f"picture with {n} descriptors", n) for n in range(3, 41)])
def bild(anzahl):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        status, gesagt = pruefen_mit(anzahl, ("--bild", welt.pfad("bild.png")), welt)
        if status == 0:
            passt("^(Bibliothek ist abgeglichen|Nicht abgeglichen|kalvaro ist auf diesem Mac noch "
                  "nicht)", gesagt)


@faelle([(f"check-up with {n} descriptors", n) for n in range(3, 41, 3)])
def pruefung(anzahl):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        pruefen_mit(anzahl, ("--pruefen",), welt)


@fall("descriptors that run out while it runs")
def unterwegs():
    """A program with a window whose limit is pulled down to what it has: the next sync says what is wrong,
    and the program lives on."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lauf = welt.starten()
        welt.urteil()
        hoechster = max(int(n) for n in os.listdir(f"/proc/{lauf.pid}/fd")) + 1
        resource.prlimit(lauf.pid, resource.RLIMIT_NOFILE, (hoechster, hoechster))
        welt.starten("--abgleichen").ende(20)
        pruefen(lauf.laeuft(), "the program is gone:", lauf.prozess.returncode, lauf.fehler()[-300:])
        lauf.beenden()


@fall("standard streams that were closed")
def geschlossen():
    """Nothing of the program's own becomes its standard output."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lauf = welt.starten(preexec_fn=lambda: [os.close(fd) for fd in range(3)])
        welt.urteil()
        ziele = [os.readlink(f"/proc/{lauf.pid}/fd/{fd}") for fd in range(3)]
        pruefen(ziele == ["/dev/null"] * 3, ziele)
        lauf.beenden()


@fall("guests that say nothing")
def gaeste():
    """They take neither all descriptors nor the processor, and keep nobody else out for long."""
    with Welt() as welt, Server(cloud(antwort())) as server, contextlib.ExitStack() as stapel:
        welt.konto(server.url)
        lauf = welt.starten(preexec_fn=begrenzen(128))
        welt.urteil()
        tuer = os.path.join(welt.daten, "de.kalvaro.kalvaro.socket")
        for _ in range(200):
            gast = stapel.enter_context(socket.socket(socket.AF_UNIX, socket.SOCK_SEQPACKET))
            gast.setblocking(False)
            try:
                gast.connect(tuer)
            except BlockingIOError:
                break  # its queue is full
        warten(lambda: lauf.deskriptoren() >= 64, was="the guests' arrival")
        vorher = lauf.rechenzeit()
        zeitpunkt = time.monotonic()
        warten(lambda: time.monotonic() - zeitpunkt > 1, was="a second")
        pruefen(lauf.rechenzeit() - vorher < 0.5, lauf.rechenzeit() - vorher, "s of processor")
        pruefen(lauf.deskriptoren() < 110, lauf.deskriptoren(), "descriptors")
        stapel.close()
        warten(lambda: welt.starten("--abgleichen").ende() == 0, was="a second start's success")
        lauf.beenden()


if __name__ == "__main__":
    main()
