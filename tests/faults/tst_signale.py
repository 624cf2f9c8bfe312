"""SIGTERM, SIGINT and SIGHUP in every phase: the program leaves within a second, and in order."""

import os
import resource
import signal
import socket
import subprocess

from pruefstand import Welt, adresse, faelle, fall, main, passt, pruefen, warten
from server import Server, antwort, cloud

SIGNALE = [signal.SIGTERM, signal.SIGINT, signal.SIGHUP]


def stumm(verbindung):
    verbindung.schweigen()


def beenden(lauf, nummer, ganz_jung=False):
    status = lauf.beenden(nummer)
    # One that has not begun to listen yet is ended by the system.
    pruefen(status == 0 or ganz_jung and status == -nummer, "status", status)
    pruefen(ganz_jung or not lauf.fehler(), lauf.fehler()[:300])


@faelle([(f"{s.name} while it starts", s) for s in SIGNALE])
def jung(nummer):
    for arbeit in range(0, 16):
        with Welt() as welt, Server(cloud(antwort())) as server:
            welt.konto(server.url)
            lauf = welt.starten()
            warten(lambda: lauf.rechenzeit() >= arbeit / 100 or welt.protokoll())
            beenden(lauf, nummer, ganz_jung=True)


PHASEN = {
    "the status question waits": dict(status=stumm, bis=lambda s, w: s.anfragen or s.verbindungen),
    "the sync waits": dict(tun=stumm, bis=lambda s, w: s.posts() == 1),
    "the verdict is there": dict(bis=lambda s, w: any("->" in z for z in w.protokoll())),
    "the countdown runs": dict(autostart=True,
                               bis=lambda s, w: any("->" in z for z in w.protokoll())),
    "the last look waits": dict(autostart=True, stand=stumm,
                                bis=lambda s, w: any(b"/api/stand" in a for a in s.anfragen)),
    "rekordbox has been started": dict(autostart=True, bis=lambda s, w: any(
        z.startswith("rekordbox") for z in w.protokoll())),
}


@faelle([(f"{s.name} while {name}", s, phase) for s in SIGNALE for name, phase in PHASEN.items()
         if s == signal.SIGTERM or "autostart" not in phase])
def unterwegs(nummer, phase):
    def lesend(tun):
        return (lambda v: (v.lesen() if not v.anfrage else None, tun(v))) if callable(tun) else tun

    verhalten = cloud(lesend(phase.get("tun", antwort())), status=lesend(phase.get("status")),
                      stand=lesend(phase.get("stand")))
    with Welt() as welt, Server(verhalten) as server:
        welt.konto(server.url)
        welt.rekordbox()
        welt.einstellungen(autostart=phase.get("autostart", False))
        lauf = welt.starten()
        warten(lambda: phase["bis"](server, welt))
        beenden(lauf, nummer)


@faelle([(f"{s.name} in the background", s) for s in SIGNALE])
def hintergrund(nummer):
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lauf = welt.starten("--hintergrund")
        warten(welt.protokoll)
        beenden(lauf, nummer, ganz_jung=True)


@faelle([(f"{s.name} while the picture waits", s) for s in SIGNALE])
def bild(nummer):
    with Welt() as welt, Server(cloud(lambda v: v.schweigen())) as server:
        welt.konto(server.url)
        lauf = welt.starten("--bild", welt.pfad("bild.png"))
        warten(lambda: server.posts() == 1)
        beenden(lauf, nummer)


@faelle([(f"{s.name} while a name is looked up {' '.join(zusatz[:1])}", s, zusatz) for s in SIGNALE
         for zusatz in ((), ("--bild", "/gibt/es/nicht.png"))])
def namenlos(nummer, zusatz):
    """A name server that never answers; the look-up cannot be cancelled."""
    wo = adresse()
    with Welt() as welt, socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as dienst:
        dienst.bind((wo, 53))
        dienst.settimeout(30)
        with open(welt.pfad("resolv.conf"), "w", encoding="ascii") as datei:
            datei.write(f"nameserver {wo}\noptions timeout:30 attempts:9\n")
        welt.konto("http://cloud.test")
        vor = ["unshare", "--mount", "sh", "-c",
               'mount --bind "$0" "$(readlink -f /etc/resolv.conf)" && exec "$@"',
               welt.pfad("resolv.conf")]
        lauf = welt.starten(*zusatz, vor=vor)
        dienst.recv(512)
        beenden(lauf, nummer)


@fall("many signals at once")
def viele():
    with Welt() as welt, Server(cloud(stumm)) as server:
        welt.konto(server.url)
        lauf = welt.starten()
        warten(lambda: server.verbindungen)
        for _ in range(500):
            for nummer in SIGNALE:
                os.kill(lauf.pid, nummer)
        beenden(lauf, signal.SIGTERM)


@fall("output that nobody reads any more")
def ohne_leser():
    """The picture is written all the same."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lesen, schreiben = os.pipe()
        os.close(lesen)
        lauf = subprocess.run([os.environ["KALVARO_PROGRAMM"], "--bild", welt.pfad("bild.png")],
                              env=welt.umgebung, stdout=schreiben, check=False, timeout=30)
        os.close(schreiben)
        pruefen(lauf.returncode == 0, lauf.returncode)
        pruefen(os.path.getsize(welt.pfad("bild.png")) > 1000, "no picture")


@fall("SIGHUP that nohup had ignored")
def nohup():
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lauf = welt.starten(
            preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        welt.urteil()
        lauf.prozess.send_signal(signal.SIGHUP)
        pruefen(welt.starten("--abgleichen").ende() == 0, "a second start finds nobody")
        warten(lambda: server.posts() == 2, was="another sync")
        beenden(lauf, signal.SIGTERM)


@fall("SIGTERM that the parent had blocked")
def blockiert():
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        lauf = welt.starten(
            preexec_fn=lambda: signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGTERM]))
        welt.urteil()
        beenden(lauf, signal.SIGTERM)


@fall("file that may not grow")
def dateigrenze():
    """A picture and a log that cannot be written; the verdict is told all the same."""
    with Welt() as welt, Server(cloud(antwort())) as server:
        welt.konto(server.url)
        with open(welt.pfad("ausgabe"), "w+b", buffering=0) as ausgabe:
            lesen, schreiben = os.pipe()
            lauf = subprocess.run(
                [os.environ["KALVARO_PROGRAMM"], "--bild", welt.pfad("bild.png")],
                env=welt.umgebung, stdout=schreiben, stderr=ausgabe, check=False, timeout=30,
                preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (0, 0)))
            os.close(schreiben)
            with os.fdopen(lesen, "rb") as rohr:
                passt("^Bibliothek ist abgeglichen", rohr.read().decode())
        pruefen(lauf.returncode >= 0, "signal", -lauf.returncode)


@fall("killed while it syncs")
def abgeschossen():
    """The next start is like any other."""
    with Welt() as welt, Server(cloud(lambda v: v.schweigen() if server.posts() == 1 else
                                      v.senden(antwort()))) as server:
        welt.konto(server.url)
        lauf = welt.starten()
        warten(lambda: server.posts() == 1)
        lauf.toeten()
        lauf = welt.starten()
        passt("gut: Bibliothek", welt.urteil())
        lauf.beenden()


if __name__ == "__main__":
    main()
