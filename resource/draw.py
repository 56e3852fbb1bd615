#!/usr/bin/env python3
"""Draws the pictures that come with the library, beside this script.

Three uncompressed DDS files, which are installed: a studio as a cube map, a floor, and the board that stands for an
image that can't be loaded. Two PNG files, which the build embeds in the library: the patterns of the watermark materials.
"""

import math
import pathlib
import struct
import zlib

FOLDER = pathlib.Path(__file__).resolve().parent
CUBE_SIDE = 64
FLOOR_SIDE = 128
BOARD_SIDE = 128
MARK_SIDE = 256


def write_dds(name, side, faces):
    """Each face is a list of rows from the top, each row a list of (r, g, b) from 0 to 1."""
    cube = len(faces) == 6
    flags = 0x1 | 0x2 | 0x4 | 0x8 | 0x1000  # capabilities, height, width, pitch, pixel format
    pixel_format = struct.pack("<8I", 32, 0x41, 0, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000)
    capabilities = struct.pack("<5I", 0x1008 if cube else 0x1000, 0xFE00 if cube else 0, 0, 0, 0)
    header = struct.pack("<7I", 124, flags, side, side, side * 4, 0, 0) + bytes(44) + pixel_format + capabilities
    pixels = bytearray()
    for face in faces:
        for row in face:
            for r, g, b in row:
                pixels += bytes(round(255 * min(max(c, 0.0), 1.0)) for c in (b, g, r)) + b"\xff"
    (FOLDER / name).write_bytes(b"DDS " + header + pixels)


def mix(a, b, t):
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def smooth(edge0, edge1, x):
    t = min(max((x - edge0) / (edge1 - edge0), 0.0), 1.0)
    return t * t * (3 - 2 * t)


def panel(direction, centre, width, height):
    """How much of a soft rectangular lamp is seen: it hangs at `centre` (azimuth, elevation in degrees)."""
    x, y, z = direction
    azimuth = math.degrees(math.atan2(x, z)) - centre[0]
    azimuth = (azimuth + 180) % 360 - 180
    elevation = math.degrees(math.asin(y)) - centre[1]
    return smooth(width, width - 6, abs(azimuth)) * smooth(height, height - 6, abs(elevation))


def studio(direction):
    y = direction[1]
    floor, wall, top = (0.34, 0.33, 0.32), (0.20, 0.22, 0.25), (0.52, 0.55, 0.60)
    color = mix(wall, top, smooth(0.0, 0.9, y)) if y > 0 else mix(wall, floor, smooth(0.0, 0.35, -y))
    ceiling = smooth(0.80, 0.86, y)
    lamps = max(ceiling, panel(direction, (55, 25), 28, 30), 0.75 * panel(direction, (-70, 20), 18, 34),
                0.6 * panel(direction, (180, 15), 40, 12))
    return mix(color, (1.0, 0.99, 0.96), lamps)


def cube_faces():
    """The six faces in the order +x, -x, +y, -y, +z, -z; u runs to the right and v down."""
    axes = [lambda u, v: (1, -v, -u), lambda u, v: (-1, -v, u), lambda u, v: (u, 1, v),
            lambda u, v: (u, -1, -v), lambda u, v: (u, -v, 1), lambda u, v: (-u, -v, -1)]
    steps = [(2 * i + 1) / CUBE_SIDE - 1 for i in range(CUBE_SIDE)]
    for axis in axes:
        face = []
        for v in steps:
            row = []
            for u in steps:
                point = axis(u, v)
                length = math.sqrt(sum(c * c for c in point))
                row.append(studio(tuple(c / length for c in point)))
            face.append(row)
        yield face


def floor():
    """Light slabs with dark joints; it tiles."""
    slab = FLOOR_SIDE // 4
    rows = []
    for y in range(FLOOR_SIDE):
        row = []
        for x in range(FLOOR_SIDE):
            joint = min(x % slab, y % slab) == 0
            tone = 0.72 + 0.03 * ((x // slab + y // slab) % 2) + 0.012 * (((x * 73) ^ (y * 151)) % 17 / 16 - 0.5)
            row.append((0.45, 0.45, 0.46) if joint else (tone, tone, tone * 1.01))
        rows.append(row)
    return rows


GLYPHS = {
    "D": "11110 10001 10001 10001 10001 10001 11110",
    "F": "11111 10000 10000 11110 10000 10000 10000",
    "I": "01110 00100 00100 00100 00100 00100 01110",
    "M": "10001 11011 10101 10101 10001 10001 10001",
    "A": "01110 10001 10001 11111 10001 10001 10001",
    "G": "01111 10000 10000 10011 10001 10001 01110",
    "E": "11111 10000 10000 11110 10000 10000 11111",
    "N": "10001 11001 10101 10101 10011 10001 10001",
    "O": "01110 10001 10001 10001 10001 10001 01110",
    "T": "11111 00100 00100 00100 00100 00100 00100",
    "U": "10001 10001 10001 10001 10001 10001 01110",
}


def write_text(rows, text, top, scale, color):
    left = (BOARD_SIDE - (6 * len(text) - 1) * scale) // 2
    for at, letter in enumerate(text):
        for y, line in enumerate(GLYPHS[letter].split()):
            for x, dot in enumerate(line):
                if dot == "1":
                    for i in range(scale * scale):
                        row = rows[top + y * scale + i // scale]
                        row[left + (6 * at + x) * scale + i % scale] = color


def board():
    edge = 4
    rows = []
    for y in range(BOARD_SIDE):
        row = []
        for x in range(BOARD_SIDE):
            framed = min(x, y, BOARD_SIDE - 1 - x, BOARD_SIDE - 1 - y) < edge
            row.append((0.75, 0.2, 0.15) if framed else (0.93, 0.92, 0.88))
        rows.append(row)
    for text, top in (("IMAGE", 20), ("NOT", 53), ("FOUND", 86)):
        write_text(rows, text, top, 3, (0.2, 0.2, 0.22))
    return rows


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def write_png(name, length, alpha):
    """Light gray whose alpha is `alpha(x, y)`, from 0 to 1. A private chunk fills the file up to `length` bytes."""
    pixels = bytearray()
    for y in range(MARK_SIDE):
        pixels.append(0)  # no filter
        for x in range(MARK_SIDE):
            pixels += bytes((191, 191, 191, round(255 * min(max(alpha(x, y), 0.0), 1.0))))
    start = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", MARK_SIDE, MARK_SIDE, 8, 6, 0, 0, 0))
    start += chunk(b"IDAT", zlib.compress(bytes(pixels), 9))
    end = chunk(b"IEND", b"")
    fill = length - len(start) - len(chunk(b"fiLl", b"")) - len(end)
    if fill < 0:
        raise SystemExit(f"{name} is {-fill} bytes too long")
    (FOLDER / name).write_bytes(start + chunk(b"fiLl", bytes(fill)) + end)


def rings(x, y):
    """Rings in staggered rows; the pattern repeats every 128 pixels."""
    tone = 0.10
    for row, column in ((0, 0), (64, 64)):
        dx, dy = ((c - centre + 64) % 128 - 64 for c, centre in ((x, column), (y, row)))
        tone += 0.35 * smooth(7, 3, abs(math.hypot(dx, dy) - 34))
    return tone


def weave(x, y):
    """Diagonal threads both ways, which rise where they pass over another one; it repeats every 128 pixels."""
    right, left = x + y, x - y

    def thread(across, along):
        height = math.cos(math.pi * (along / 64 + across // 64))
        return smooth(13, 9, abs(across % 64 - 32)) * (0.28 + 0.12 * height)

    return 0.06 + max(thread(right, left - 32), thread(left, right + 32))


def main():
    write_dds("cubemap-vx01.dds", CUBE_SIDE, list(cube_faces()))
    write_dds("floor-vx01.dds", FLOOR_SIDE, [floor()])
    write_dds("notfound.dds", BOARD_SIDE, [board()])
    write_png("ywefe.png", 14353, rings)
    write_png("ewasd.png", 35329, weave)


if __name__ == "__main__":
    main()
