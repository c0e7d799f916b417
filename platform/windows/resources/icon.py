#!/usr/bin/env python3
"""icon.py PICTURE.svg ICON.ico: draws the picture in the sizes that Windows shows, each as PNG, and puts them into one icon."""

import struct
import subprocess
import sys

SIZES = (16, 24, 32, 48, 64, 256)

picture, icon = sys.argv[1:]
drawn = [subprocess.run(["rsvg-convert", f"--width={size}", f"--height={size}", picture], check=True, stdout=subprocess.PIPE).stdout
         for size in SIZES]
place = 6 + 16 * len(SIZES)
head = struct.pack("<HHH", 0, 1, len(SIZES))
for size, png in zip(SIZES, drawn):
    head += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(png), place)  # 0 means 256
    place += len(png)
with open(icon, "wb") as out:
    out.write(head + b"".join(drawn))
