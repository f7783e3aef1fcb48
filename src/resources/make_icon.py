#!/usr/bin/env python3
"""Makes glimmerpad.ico from glimmerpad.svg. Needs rsvg-convert (package librsvg2-bin)."""
import pathlib
import struct
import subprocess
import zlib

HERE = pathlib.Path(__file__).parent
SIDES = [16, 20, 24, 32, 40, 48, 64, 256]


def png(side):
    return subprocess.run(
        ["rsvg-convert", "-w", str(side), "-h", str(side), HERE / "glimmerpad.svg"], check=True, capture_output=True
    ).stdout


def rgba_rows(data):
    """The scan lines of an 8-bit RGBA PNG picture."""
    position, packed = 8, b""
    while position < len(data):
        length, kind = struct.unpack(">I4s", data[position : position + 8])
        chunk = data[position + 8 : position + 8 + length]
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack(">IIBB", chunk[:10])
            assert (depth, colour) == (8, 6)
        elif kind == b"IDAT":
            packed += chunk
        position += length + 12
    raw, stride = zlib.decompress(packed), width * 4
    above, rows = bytes(stride), []
    for y in range(height):
        kind, line = raw[y * (stride + 1)], bytearray(raw[y * (stride + 1) + 1 : (y + 1) * (stride + 1)])
        for x in range(stride):
            left, up, corner = (line[x - 4], above[x], above[x - 4]) if x >= 4 else (0, above[x], 0)
            guess = left + up - corner
            nearest = min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))[2]
            line[x] = (line[x] + [0, left, up, (left + up) // 2, nearest][kind]) & 255
        above = bytes(line)
        rows.append(above)
    return rows


def bitmap(side):
    """A 32-bit bitmap as icons hold it: twice the height, bottom-up BGRA, and an empty mask."""
    rows = rgba_rows(png(side))
    pixels = b"".join(
        bytes(row[x + i] for x in range(0, side * 4, 4) for i in (2, 1, 0, 3)) for row in reversed(rows)
    )
    mask = bytes((side + 31) // 32 * 4 * side)
    return struct.pack("<IiiHHIIiiII", 40, side, side * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0) + pixels + mask


images = [png(side) if side == 256 else bitmap(side) for side in SIDES]
offset = 6 + 16 * len(SIDES)
directory = struct.pack("<HHH", 0, 1, len(SIDES))
for side, image in zip(SIDES, images):
    directory += struct.pack("<BBBBHHII", side % 256, side % 256, 0, 0, 1, 32, len(image), offset)
    offset += len(image)
(HERE / "glimmerpad.ico").write_bytes(directory + b"".join(images))
