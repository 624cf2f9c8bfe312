#!/usr/bin/python3
"""Start and memory beside other programs that live in the tray and are installed on this machine.

    bench/vergleich.py BUILD_FOLDER

Each starts with an empty profile on a display and a bus of its own. What counts is the time to its first
window and the PSS of all its processes, 5 s later at rest; the median of five starts. Belongs into
tests/eigene-prozesse.sh: whatever else runs in its process namespace counts as the program's.
"""

import os
import shutil
import statistics
import subprocess
import sys

import antworten
from buehne import Buehne, Cloud, Fenster, Gescheitert, Heim, Prozess, lesen

PROGRAMME = {
    "syncthingtray": ["syncthingtray"],
    "nextcloud-desktop": ["nextcloud"],
    "owncloud-client": ["owncloud"],
}
LAEUFE = 5


def fremde(bekannt):
    """The processes of this namespace but for those that were here before."""
    return [pid for pid in os.listdir("/proc") if pid.isdigit() and pid not in bekannt]


def eins(bau, befehl, urteil=False):
    with Buehne() as buehne:
        cloud = Cloud()
        cloud.antworten["/api/abgleich"] = antworten.urteil()
        heim = Heim(buehne, cloud.adresse)
        bekannt = set(fremde(()))
        fenster = Fenster(buehne, bau, befehl, heim.umgebung)
        bekannt.add(str(fenster.messer.pid))
        if urteil:
            heim.urteil()
        fenster.prozess.ruhe(5)
        teile = [pid for pid in fremde(bekannt) if lesen(f"/proc/{pid}/smaps_rollup")]
        pss = sum(Prozess(pid).pss() for pid in teile) / 1024
        fenster.schluss()
        for pid in fremde(bekannt):  # what outlives its window
            subprocess.run(["kill", "-9", pid], check=False, stderr=subprocess.DEVNULL)
        return fenster.dauer, pss, len(teile)


def zeile(name, bau, befehl, **weiteres):
    eins(bau, befehl, **weiteres)  # warm caches
    laeufe = [eins(bau, befehl, **weiteres) for _ in range(LAEUFE)]
    dauer, pss, prozesse = (statistics.median(spalte) for spalte in zip(*laeufe))
    print(f"{name:<28}{dauer:>10.0f} ms{pss:>10.1f} MiB{prozesse:>12.0f}", flush=True)


def main():
    bau = os.path.abspath(sys.argv[1])
    print(f"{'':<28}{'first window':>13}{'PSS':>14}{'processes':>12}")
    zeile("bare window", bau, [f"{bau}/kalvaro-bench-boden"])
    zeile("kalvaro", bau, [f"{bau}/kalvaro"], urteil=True)
    for name, befehl in PROGRAMME.items():
        if not shutil.which(befehl[0]):
            print(f"{name:<28}not installed")
            continue
        try:
            zeile(name, bau, befehl)
        except (Gescheitert, ValueError, OSError) as fehler:
            print(f"{name:<28}shows no window: {fehler}")


if __name__ == "__main__":
    main()
