"""Small pictures as iTunes caches them: PNG, JPEG, and raw pixels. Nothing but Python is needed."""

import struct
import zlib

from generator.tables import draw


def cover(name, size):
    """Rows of (red, green, blue): a disc on a ground, both in colours drawn for `name`."""
    ground = tuple(40 + draw(90, "ground", name, part) for part in "rgb")
    disc = tuple(130 + draw(120, "disc", name, part) for part in "rgb")
    middle, reach = size / 2, size * (25 + draw(20, "reach", name)) / 100
    stripe = 2 + draw(5, "stripe", name)

    def pixel(x, y):
        if (x + 0.5 - middle) ** 2 + (y + 0.5 - middle) ** 2 <= reach**2:
            return disc
        return ground if (y * 16 // size) % stripe else tuple(part + 30 for part in ground)

    return [[pixel(x, y) for x in range(size)] for y in range(size)]


def png(rows):
    def chunk(kind, content):
        check = zlib.crc32(kind + content)
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", check)

    size = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)
    lines = b"".join(b"\0" + bytes(part for pixel in row for part in pixel) for row in rows)
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", size)
        + chunk(b"IDAT", zlib.compress(lines, 9))
        + chunk(b"IEND", b"")
    )


def argb(rows):
    return b"".join(bytes((255, *pixel)) for row in rows for pixel in row)


def bgra(rows):
    return b"".join(bytes((*reversed(pixel), 255)) for row in rows for pixel in row)


# What follows is the plainest JPEG that every decoder reads: baseline, no subsampling, and only the
# mean of each block of 8 by 8 pixels, so that there is no transform to compute.
QUANT = 2
# Code tables with codes of one length: 12 of 4 bits for the means, 2 of 2 bits for the rest.
MEAN_BITS = 4
END_OF_BLOCK = "00"


def segment(marker, content):
    return bytes((0xFF, marker)) + struct.pack(">H", len(content) + 2) + content


def code_table(number, length, symbols):
    counts = [len(symbols) if bits == length else 0 for bits in range(1, 17)]
    return segment(0xC4, bytes((number, *counts, *symbols)))


def block_mean(rows, x, y):
    block = [pixel for row in rows[y : y + 8] for pixel in row[x : x + 8]]
    return [sum(part) / len(block) for part in zip(*block)]


def to_ycc(red, green, blue):
    return (
        0.299 * red + 0.587 * green + 0.114 * blue - 128,
        -0.168736 * red - 0.331264 * green + 0.5 * blue,
        0.5 * red - 0.418688 * green - 0.081312 * blue,
    )


def mean_code(difference):
    """How many bits the difference takes, then those bits; negative ones count from below."""
    bits = abs(difference).bit_length()
    value = difference if difference >= 0 else difference + (1 << bits) - 1
    return f"{bits:0{MEAN_BITS}b}" + (f"{value:0{bits}b}" if bits else "")


def jpeg(rows):
    height, width = len(rows), len(rows[0])
    bits, last = [], [0, 0, 0]
    for y in range(0, height, 8):
        for x in range(0, width, 8):
            for part, value in enumerate(to_ycc(*block_mean(rows, x, y))):
                mean = round(value * 8 / QUANT)
                bits.append(mean_code(mean - last[part]) + END_OF_BLOCK)
                last[part] = mean
    text = "".join(bits)
    text += "1" * (-len(text) % 8)
    scan = int(text, 2).to_bytes(len(text) // 8, "big").replace(b"\xff", b"\xff\0")
    parts = bytes(byte for part in (1, 2, 3) for byte in (part, 0x11, 0))
    return (
        b"\xff\xd8"
        + segment(0xE0, b"JFIF\0\1\1\0\0\1\0\1\0\0")
        + segment(0xDB, bytes((0, *[QUANT] * 64)))
        + segment(0xC0, struct.pack(">BHHB", 8, height, width, 3) + parts)
        + code_table(0x00, MEAN_BITS, range(12))
        + code_table(0x10, 2, (0x00, 0x01))
        + segment(0xDA, b"\3" + b"\1\0\2\0\3\0" + b"\0\x3f\0")
        + scan
        + b"\xff\xd9"
    )
