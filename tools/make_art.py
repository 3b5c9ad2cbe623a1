#!/usr/bin/env python3
"""Draws the pictures of src/resources/ from the SVG sources in src/resources/art/.

The results are committed, so that building needs nothing of this. Needs rsvg-convert (librsvg2-bin) and
cjpeg (libjpeg-turbo-progs). Run it from anywhere after a change to a source and look at what it made.
"""

import pathlib
import struct
import subprocess
import zlib

RESOURCES = pathlib.Path(__file__).resolve().parent.parent / "src" / "resources"
ART = RESOURCES / "art"

ICON_SIZE = 24
WIDTHS = {"banner": 320, "bk_big": 128, "empty_contact": 128}
APP_SIZES = (16, 24, 32, 48, 64, 128, 256)

# A bubble is three cells of 18 px each way. Its pieces are drawn at twice that for sharp screens and print.
CELL = 36
PIECES = [(row, column) for row in range(3) for column in range(3)]


def render(name, width):
    """The PNG bytes of one source at a width in pixels."""
    command = ["rsvg-convert", "--keep-aspect-ratio", "--width", str(width), str(ART / f"{name}.svg")]
    return subprocess.run(command, check=True, capture_output=True).stdout


def paeth(a, b, c):
    p = a + b - c
    return min((abs(p - a), 0, a), (abs(p - b), 1, b), (abs(p - c), 2, c))[2]


def unfilter(kind, line, above, step):
    for i in range(len(line)):
        left = line[i - step] if i >= step else 0
        corner = above[i - step] if i >= step else 0
        line[i] = (line[i] + (0, left, above[i], (left + above[i]) // 2, paeth(left, above[i], corner))[kind]) & 255
    return line


def pixels(png):
    """The rows of a picture as four bytes a pixel. rsvg-convert writes 8-bit RGBA, or RGB for an opaque one."""
    data, at, width, height, step = b"", 8, 0, 0, 0
    while at < len(png):
        length, kind = struct.unpack_from(">I4s", png, at)
        body = png[at + 8 : at + 8 + length]
        at += 12 + length
        if kind == b"IHDR":
            width, height, depth, colour = struct.unpack_from(">IIBB", body)
            assert depth == 8, "not an 8-bit picture"
            step = {2: 3, 6: 4}[colour]
        elif kind == b"IDAT":
            data += body
    raw, rows, above = zlib.decompress(data), [], bytearray(width * step)
    for y in range(height):
        start = y * (width * step + 1)
        above = unfilter(raw[start], bytearray(raw[start + 1 : start + 1 + width * step]), above, step)
        rows.append(above if step == 4 else opaque(above))
    return rows


def opaque(rgb):
    return bytearray(b for i in range(0, len(rgb), 3) for b in (*rgb[i : i + 3], 255))


def chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def png(rows):
    """The same picture for the same rows, whatever wrote them: no times, no tool names."""
    header = struct.pack(">IIBBBBB", len(rows[0]) // 4, len(rows), 8, 6, 0, 0, 0)
    plain = b"".join(b"\0" + bytes(row) for row in rows)
    step_left = b"".join(
        b"\1" + bytes((row[i] - (row[i - 4] if i >= 4 else 0)) & 255 for i in range(len(row))) for row in rows
    )
    packed = min((zlib.compress(data, 9) for data in (plain, step_left)), key=len)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", packed) + chunk(b"IEND", b"")


def write(path, content):
    path.parent.mkdir(exist_ok=True)
    path.write_bytes(content)


def draw_icons():
    for source in sorted(ART.glob("*.svg")):
        name = source.stem
        if name in ("app", "bb1", "bb2", "empty_photo"):
            continue
        width = WIDTHS.get(name, ICON_SIZE)
        write(RESOURCES / "res" / f"{name}.png", png(pixels(render(name, width))))
        write(RESOURCES / "res" / f"{name}@2x.png", png(pixels(render(name, 2 * width))))
    for size in APP_SIZES:
        write(RESOURCES / "res" / f"app_{size}.png", png(pixels(render("app", size))))


def draw_bubbles():
    for name in ("bb1", "bb2"):
        whole = pixels(render(name, 3 * CELL))
        for number, (row, column) in enumerate(PIECES, 1):
            lines = whole[row * CELL : (row + 1) * CELL]
            piece = [line[column * CELL * 4 : (column + 1) * CELL * 4] for line in lines]
            write(RESOURCES / "bubble" / f"{name}_{number:02}.png", png(piece))


def draw_empty_photo():
    rows = pixels(render("empty_photo", 240))
    flat = b"".join(bytes(b for i, b in enumerate(row) if i % 4 != 3) for row in rows)
    ppm = b"P6\n%d %d\n255\n" % (len(rows[0]) // 4, len(rows)) + flat
    jpeg = subprocess.run(["cjpeg", "-quality", "88", "-optimize"], input=ppm, check=True, capture_output=True)
    write(RESOURCES / "bubble" / "empty_photo.jpg", jpeg.stdout)


if __name__ == "__main__":
    draw_icons()
    draw_bubbles()
    draw_empty_photo()
