"""Puts the icon's pictures together (symbol.sh calls it).

    symbol.py FOLDER RESULT

FOLDER has klein.icns, with 16, 32 and 128 as png2icns packs them, since icons of applications cannot have
the smallest as PNG, and all others as SIZE.png. An .icns file is "icns", its length, and parts:
four letters, the length with these eight bytes, and the data; numbers are big-endian.
"""
import pathlib
import struct
import sys

# Which part holds which picture; those with "x2" are for screens with two pixels for each point.
BILDER = {
    b"ic08": 256,
    b"ic09": 512,
    b"ic11": 32,  # 16x2
    b"ic12": 64,  # 32x2
    b"ic13": 256,  # 128x2
    b"ic14": 512,  # 256x2
    b"ic10": 1024,  # 512x2
}


def main(ordner, ergebnis):
    teile = (ordner / "klein.icns").read_bytes()[8:]
    for art, seite in BILDER.items():
        bild = (ordner / f"{seite}.png").read_bytes()
        teile += art + struct.pack(">I", len(bild) + 8) + bild
    ergebnis.write_bytes(b"icns" + struct.pack(">I", len(teile) + 8) + teile)


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]))
