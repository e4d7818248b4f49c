#!/usr/bin/env python3
"""The task-pane button's skins and icon, drawn here and written as PNG
into share/images/taskpanes/buttons. Run again after changing a colour.

A skin is 32 x 24: a rounded face (6-pixel radius, fully transparent
outside it, so the button's outline follows it) with a vertical gradient,
a one-pixel border and a light line under the top edge. The button cuts
it into nine pieces at 8 pixels, so only the corners keep their size."""
import math
import os
import struct
import zlib

W, H, R = 32, 24, 6
OUT = os.path.join(os.path.dirname(__file__), "..", "..", "share", "images", "taskpanes", "buttons")

# state: (top colour, bottom colour, border colour)
SKINS = {
    "button": ((0x3A, 0x6E, 0xC0), (0x1E, 0x46, 0x8C), (0x14, 0x30, 0x64)),
    "button_over": ((0x52, 0x88, 0xD8), (0x2A, 0x5C, 0xAC), (0x14, 0x30, 0x64)),
    "button_down": ((0x16, 0x36, 0x70), (0x2A, 0x56, 0x9E), (0x0C, 0x20, 0x48)),
    "button_checked": ((0x2C, 0x8A, 0x7C), (0x17, 0x5E, 0x54), (0x0E, 0x40, 0x38)),
    "button_disabled": ((0xE4, 0xE4, 0xE4), (0xC8, 0xC8, 0xC8), (0xA8, 0xA8, 0xA8)),
}


def png(path, w, h, pixels):
    raw = b"".join(b"\x00" + bytes(sum((list(p) for p in pixels[y * w:(y + 1) * w]), [])) for y in range(h))

    def chunk(kind, data):
        c = kind + data
        return struct.pack(">I", len(data)) + c + struct.pack(">I", zlib.crc32(c) & 0xFFFFFFFF)

    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n")
        f.write(chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 6, 0, 0, 0)))
        f.write(chunk(b"IDAT", zlib.compress(raw, 9)))
        f.write(chunk(b"IEND", b""))


def inside(x, y):
    """How much of pixel (x, y) lies in the rounded rectangle (0..1)."""
    cx = min(max(x + 0.5, R), W - R)
    cy = min(max(y + 0.5, R), H - R)
    d = math.hypot(x + 0.5 - cx, y + 0.5 - cy)
    return max(0.0, min(1.0, R - d + 0.5))


def mix(a, b, t):
    return tuple(round(a[i] + (b[i] - a[i]) * t) for i in range(3))


def skin(top, bottom, border):
    px = []
    for y in range(H):
        for x in range(W):
            cover = inside(x, y)
            if cover <= 0:
                px.append((0, 0, 0, 0))
                continue
            edge = cover < 1 or x == 0 or y == 0 or x == W - 1 or y == H - 1 or inside(x - 1, y) < 1 \
                or inside(x + 1, y) < 1 or inside(x, y - 1) < 1 or inside(x, y + 1) < 1
            c = border if edge else mix(top, bottom, y / (H - 1))
            if y == 1 and not edge:
                c = mix(c, (255, 255, 255), 0.35)
            px.append(c + (round(255 * cover),))
    return px


def plus():
    n = 16
    px = []
    for y in range(n):
        for x in range(n):
            on = (6 <= x <= 9 and 2 <= y <= 13) or (6 <= y <= 9 and 2 <= x <= 13)
            px.append((255, 255, 255, 255) if on else (0, 0, 0, 0))
    return n, px


if __name__ == "__main__":
    os.makedirs(OUT, exist_ok=True)
    for name, (top, bottom, border) in SKINS.items():
        png(os.path.join(OUT, name + ".png"), W, H, skin(top, bottom, border))
    n, px = plus()
    png(os.path.join(OUT, "mini_add.png"), n, n, px)
