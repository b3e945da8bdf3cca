"""Small pictures as iTunes caches them: PNG, JPEG, and raw pixels. Nothing but Python is needed."""

import functools
import math
import struct
import zlib


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


# What follows is the plainest JPEG that every decoder reads: baseline, no subsampling, one table of each kind, and
# codes of one length each: 4 bits for how many bits a mean has, 8 for the rest.
QUANT = 6
MEAN_BITS, REST_BITS = 4, 8
SIDE = 8
ZIGZAG = sorted(range(SIDE * SIDE), key=lambda at: (at // 8 + at % 8, at if (at // 8 + at % 8) % 2 else -at))
# The sizes of a code's number: 0xRS with a run R of zeroes and S bits; end of block; a run of 16 zeroes.
REST = [0x00, 0xF0] + [run << 4 | bits for run in range(16) for bits in range(1, 11)]
COSINES = [[round(math.cos((2 * x + 1) * u * math.pi / 16) * (math.sqrt(0.125) if u == 0 else 0.5), 12) for x in range(SIDE)]
           for u in range(SIDE)]


def segment(marker, content):
    return bytes((0xFF, marker)) + struct.pack(">H", len(content) + 2) + content


def code_table(number, length, symbols):
    counts = [len(symbols) if bits == length else 0 for bits in range(1, 17)]
    return segment(0xC4, bytes((number, *counts, *symbols)))


def to_ycc(red, green, blue):
    return (
        0.299 * red + 0.587 * green + 0.114 * blue - 128,
        -0.168736 * red - 0.331264 * green + 0.5 * blue,
        0.5 * red - 0.418688 * green - 0.081312 * blue,
    )


def transformed(values):
    """The cosine transform of 64 values in rows, in the order of the zigzag, as whole numbers of QUANT."""
    if len(set(values)) == 1:  # most blocks of a flat picture
        return [round(values[0] * 8 / QUANT)] + [0] * 63
    rows = [[sum(map(float.__mul__, cosine, values[y : y + 8])) for cosine in COSINES] for y in range(0, 64, 8)]
    columns = [list(column) for column in zip(*rows)]
    whole = [[sum(map(float.__mul__, cosine, column)) for column in columns] for cosine in COSINES]
    return [round(whole[at // 8][at % 8] / QUANT) for at in ZIGZAG]


def in_bits(number, bits):
    """Negative ones count from below."""
    return f"{number if number > 0 else number + (1 << bits) - 1:0{bits}b}" if bits else ""


def coded(numbers, last):
    """The bits of one block: its mean as the difference to the last one's, then runs of zeroes."""
    mean = numbers[0] - last
    bits = abs(mean).bit_length()
    text, run = [f"{bits:0{MEAN_BITS}b}" + in_bits(mean, bits)], 0
    end = max((at for at in range(1, 64) if numbers[at]), default=0)
    for number in numbers[1 : end + 1]:
        if number == 0:
            run += 1
            continue
        while run >= 16:
            text.append(f"{REST.index(0xF0):0{REST_BITS}b}")
            run -= 16
        bits = abs(number).bit_length()
        text.append(f"{REST.index(run << 4 | bits):0{REST_BITS}b}" + in_bits(number, bits))
        run = 0
    return "".join(text) + (f"{REST.index(0):0{REST_BITS}b}" if end < 63 else "")


def jpeg(rows):
    height, width = len(rows), len(rows[0])
    ycc = functools.lru_cache(None)(lambda pixel: to_ycc(*pixel))
    bits, last = [], [0, 0, 0]
    for y in range(0, height, SIDE):
        for x in range(0, width, SIDE):
            block = [ycc(pixel) for row in rows[y : y + SIDE] for pixel in row[x : x + SIDE]]
            for part, values in enumerate(zip(*block)):
                numbers = transformed(values)
                bits.append(coded(numbers, last[part]))
                last[part] = numbers[0]
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
        + code_table(0x10, REST_BITS, REST)
        + segment(0xDA, b"\3" + b"\1\0\2\0\3\0" + b"\0\x3f\0")
        + scan
        + b"\xff\xd9"
    )
