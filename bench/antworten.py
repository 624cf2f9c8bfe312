"""What the cloud answers in measurements."""

import json
import os


def urteil(polster=0):
    """A verdict; with `polster` bytes of texts that nobody shows beside it."""
    antwort = {
        "betrieb": "scharf",
        "geraet": {"name": "Bench", "ergebnis": "aktuell"},
        "andere": [],
        "ergebnis": {"zustand": "aktuell", "aendert_zentrale": {}, "aendert_geraet": {}},
        "statistik": {"titel": 12345, "playlisten": 321, "hot_cues": 4567, "dateigroesse": 10 ** 11,
                      "analysiert": 12000, "analysegroesse": 10 ** 9, "stand": "2026-03-07 18:05:00"},
    }
    if polster:
        stueck = 32 * 1024
        antwort["polster"] = ["x" * stueck] * (polster // (stueck + 4))
    return json.dumps(antwort).encode()


def playlisten(anzahl):
    """A library: a folder around all, in it a folder for each hundred playlists, whose numbers begin at
    0. bench_einstellungen.cpp counts on this order."""
    liste = [{"id": "alles", "uuid": "u-alles", "name": "Alles", "ordner": True, "titel": 0,
              "eltern": "root", "seq": 0}]
    for i in range(anzahl):
        nummer = i // 100
        if i % 100 == 0:
            liste.append({"id": f"o{nummer}", "uuid": f"0412871e-64cf-b103-9bf8-{nummer:012}",
                          "name": f"Ordner {nummer}", "ordner": True, "titel": 0, "eltern": "alles",
                          "seq": nummer})
        liste.append({"id": str(3_000_000 + i), "uuid": f"6e73e372-e233-8aca-16b1-{i:012}",
                      "name": f"Übung {i}", "ordner": False, "titel": i % 500,
                      "eltern": f"o{nummer}", "seq": i % 100})
    return json.dumps({"playlisten": liste, "lokal": []}, ensure_ascii=False,
                      separators=(",", ":")).encode()


def playlistendatei(ordner, anzahl):
    """The same as a file, written once; its path."""
    pfad = os.path.join(ordner, f"playlisten-{anzahl}.json")
    if not os.path.exists(pfad):
        with open(pfad, "wb") as datei:
            datei.write(playlisten(anzahl))
    return pfad
