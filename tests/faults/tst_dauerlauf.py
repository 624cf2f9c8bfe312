"""2,000 syncs in one program with a window: memory, descriptors and threads stay as they are after the first
200."""

import json
import os

import dbus.bus

from bus import Bus
from pruefstand import Welt, fall, logzeilen, main, pruefen, warten
from server import Server, antwort, cloud

ANZAHL = 2000
ANLAUF = 200
MEHR = 2 * 1024  # KiB within which the heap may come to rest


def antworten():
    """What a server says from one time to another, so that every part of the window changes."""
    arten = [
        {"ergebnis": {"zustand": "aktuell"}, "statistik": {"titel": 12345, "playlists": 99}},
        {"ergebnis": {"zustand": "abgeglichen", "aendert_zentrale": {"djmdContent": 3},
                      "aendert_geraet": {"djmdPlaylist": 1}}},
        {"ergebnis": {"zustand": "verschoben", "hinweis": "x" * 500}},
        {"ergebnis": {"zustand": "laeuft_schon"}},
        {"ergebnis": {"zustand": "fehler", "fehler": "ä" * 300}},
        {"ergebnis": {"zustand": "schatten"}, "betrieb": "schatten"},
    ]
    return [antwort(json.dumps(a).encode()) for a in arten] + [
        antwort(b"{}", "500 Oh"), antwort(b"[]"), b""]


@fall("2,000 syncs in a row leave something behind each")
def flach():
    alle = antworten()
    with Welt() as welt:
        nummer = [0]

        def naechste(verbindung):
            verbindung.senden(alle[nummer[0] % len(alle)])

        with Server(cloud(naechste)) as server:
            bus = Bus(welt)
            welt.konto(server.url)
            lauf = welt.starten()
            welt.urteil()
            leitung = dbus.bus.BusConnection(bus.adresse)
            programm = leitung.get_object("de.kalvaro.kalvaro", "/de/kalvaro/kalvaro",
                                          introspect=False)
            logdatei = os.path.join(welt.daten, "kalvaro.log")
            stand = {}

            def fertige():
                return logzeilen(logdatei, 4000)[-1].startswith("  -> ")

            def messen():
                return {"memory": lauf.status("VmRSS"), "descriptors": lauf.deskriptoren(),
                        "threads": lauf.status("Threads")}

            for i in range(1, ANZAHL + 1):
                nummer[0] = i
                programm.ActivateAction("abgleichen", dbus.Array([], "v"),
                                        dbus.Dictionary({}, "sv"),
                                        dbus_interface="org.freedesktop.Application")
                # What a sync has to say of itself before it asks stands in the log by then.
                warten(lambda: server.posts() > i and fertige(), was=f"sync {i}")
                pruefen(server.posts() == i + 1, server.posts(), "posts after sync", i)
                if i == ANLAUF:
                    stand = messen()
            # A process that is being counted or reaped right now takes some for a moment.
            warten(lambda: lauf.deskriptoren() <= stand["descriptors"], was="the last descriptor's end")
            ende = messen()
            leitung.close()
            print(f"   after {ANLAUF}: {stand}; after {ANZAHL}: {ende}")
            pruefen(ende["memory"] <= stand["memory"] + MEHR, stand, ende)
            pruefen(ende["threads"] <= stand["threads"], stand, ende)
            lauf.beenden()


if __name__ == "__main__":
    main()
