"""kill -9 at a thousand moments of saving the settings: the file is always whole, the old one or the new."""

import ctypes
import json
import os
import random
import signal
import subprocess
import threading

from pruefstand import Welt, fall, faelle, main, pruefen

PTRACE_TRACEME, PTRACE_SYSCALL, PTRACE_SETOPTIONS, PTRACE_O_EXITKILL = 0, 24, 0x4200, 1 << 20
libc = ctypes.CDLL(None, use_errno=True)

ALT = {"autostart": False, "update_gemeldet": "", "version": "6.8.5"}
NEU = [{"autostart": z == "a", "update_gemeldet": z * 20_000, "version": z * 20_000} for z in "ab"]


def inhalt(welt):
    with open(os.path.join(welt.daten, "einstellungen.json"), "rb") as datei:
        return datei.read()


def ganz(welt, wann):
    bytes_ = inhalt(welt)
    try:
        felder = json.loads(bytes_)
    except ValueError:
        raise AssertionError(f"{wann}: broken: {len(bytes_)} bytes {bytes_[:80]!r}") from None
    pruefen(felder == ALT or felder in NEU, wann, str(felder)[:200])
    return felder


def aufraeumen(welt):
    """What killed saves leave behind; kalvaro itself does so at its next start."""
    for name in os.listdir(welt.daten):
        if name.startswith("einstellungen.json."):
            os.unlink(os.path.join(welt.daten, name))


def bereit(welt, *argumente, **weiteres):
    prozess = subprocess.Popen([os.environ["KALVARO_SICHERN"], *argumente], env=welt.umgebung,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, **weiteres)
    pruefen(prozess.stdout.read(1) == b"\n", "the saver does not start")
    return prozess


def weg(prozess):
    prozess.kill()
    prozess.wait()
    prozess.stdin.close()
    prozess.stdout.close()


@faelle([(f"kill -9 at a random moment, {teil} of 4", teil) for teil in range(1, 5)])
def zufaellig(teil):
    """250 times; within the first millisecond often, then later."""
    zufall = random.Random(teil)
    gesehen = set()
    with Welt() as welt:
        for i in range(250):
            welt.einstellungen(**ALT)
            prozess = bereit(welt)
            prozess.stdin.write(b"\n")
            prozess.stdin.flush()
            threading.Event().wait(zufall.choice([0.0003, 0.001, 0.003]) * zufall.random())
            weg(prozess)
            gesehen.add(ganz(welt, f"moment {i}")["version"][:1])
            aufraeumen(welt)
    pruefen(len(gesehen) > 1, "the kill always came before or after everything:", gesehen)


def schritte(welt, hoechstens):
    """Lets one save come as far as `hoechstens` entries to and returns from the kernel, then kills it.
    True when the save came to its end before."""

    def verfolgt():
        libc.ptrace(PTRACE_TRACEME, 0, 0, 0)

    prozess = subprocess.Popen([os.environ["KALVARO_SICHERN"], "1"], env=welt.umgebung,
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, preexec_fn=verfolgt)
    pid = prozess.pid
    try:
        os.waitpid(pid, 0)
        libc.ptrace(PTRACE_SETOPTIONS, pid, 0, PTRACE_O_EXITKILL)
        libc.ptrace(7, pid, 0, 0)  # PTRACE_CONT up to the wait for our line
        pruefen(prozess.stdout.read(1) == b"\n", "the saver does not start")
        os.kill(pid, signal.SIGSTOP)
        os.waitpid(pid, 0)
        prozess.stdin.write(b"\n")
        prozess.stdin.flush()
        for _ in range(hoechstens):
            libc.ptrace(PTRACE_SYSCALL, pid, 0, 0)
            _, stand = os.waitpid(pid, 0)
            if not os.WIFSTOPPED(stand):
                prozess.returncode = 0
                return True
        return False
    finally:
        if prozess.returncode is None:
            os.kill(pid, signal.SIGKILL)
            os.waitpid(pid, 0)
            prozess.returncode = -signal.SIGKILL
        prozess.stdin.close()
        prozess.stdout.close()


@fall("kill -9 before and after each call of the kernel")
def schritt_fuer_schritt():
    """All places of one save where the system could notice it: first the old file, from one place on the new."""
    verlauf = []
    with Welt() as welt:
        for i in range(1, 2000):
            welt.einstellungen(**ALT)
            zu_ende = schritte(welt, i)
            verlauf.append(ganz(welt, f"after {i} steps") == NEU[0])
            aufraeumen(welt)
            if zu_ende:
                break
    pruefen(zu_ende, "a save has no end")
    pruefen(not verlauf[0] and verlauf[-1] and sorted(verlauf) == verlauf, verlauf)
    print(f"   a save has {len(verlauf)} steps, the new file is there from step "
          f"{verlauf.index(True) + 1} on")


@faelle([("no right to write", 0o555)])
def ohne_rechte(rechte):
    """A save that cannot be made leaves the old file."""
    with Welt() as welt:
        welt.einstellungen(**ALT)
        for ordner in (welt.wurzel, welt.pfad("daten")):
            os.chmod(ordner, 0o755)
        os.chmod(welt.daten, rechte)
        prozess = subprocess.Popen(
            ["setpriv", "--reuid=65534", "--clear-groups", os.environ["KALVARO_SICHERN"], "2"],
            env=welt.umgebung, stdin=subprocess.PIPE, stdout=subprocess.DEVNULL)
        prozess.communicate(b"\n")
        pruefen(ganz(welt, "afterwards") == ALT, "changed")


if __name__ == "__main__":
    main()
