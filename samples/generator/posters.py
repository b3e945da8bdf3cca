"""What the covers show: flat shapes in a few colours, drawn for the name of an album."""

import math

from generator.tables import draw

# Ground first, then from the quiet colours to the loud one.
PALETTES = (
    ("1d3557", "457b9d", "a8dadc", "f1faee", "e63946"),
    ("264653", "2a9d8f", "e9c46a", "f4a261", "e76f51"),
    ("f2e8cf", "a7c957", "6a994e", "386641", "bc4749"),
    ("3d405b", "81b29a", "f4f1de", "f2cc8f", "e07a5f"),
    ("0b3954", "087e8b", "bfd7ea", "fefefe", "ff5a5f"),
    ("f2e9e4", "c9ada7", "9a8c98", "4a4e69", "22223b"),
    ("132a13", "31572c", "4f772d", "90a955", "ecf39e"),
    ("003049", "0f4c5c", "fcbf49", "f77f00", "d62828"),
    ("ede0d4", "ddb892", "b08968", "7f5539", "9b2226"),
    ("10002b", "3c096c", "7b2cbf", "c77dff", "ffd6ff"),
)


def colours(name):
    palette = PALETTES[draw(len(PALETTES), "palette", name)]
    return [tuple(bytes.fromhex(colour)) for colour in palette]


# A shape is a colour and a function of the place, both from 0 to 1: how far inside its edge that is.


def disc(colour, x, y, radius):
    return colour, lambda u, v: radius - math.hypot(u - x, v - y)


def ring(colour, x, y, radius, width):
    return colour, lambda u, v: width / 2 - abs(math.hypot(u - x, v - y) - radius)


def wave(colour, top, height, length, phase):
    return colour, lambda u, v: v - top - height * math.sin(u / length * 2 * math.pi + phase)


def box(colour, left, top, side):
    return colour, lambda u, v: 1 if left <= u < left + side and top <= v < top + side else -1


def corner(colour, left, top, side, right, below):
    """A quarter of a disc in a square, around one of its corners."""
    x, y = left + side * right, top + side * below
    inside = box(colour, left, top, side)[1]
    return colour, lambda u, v: min(side - math.hypot(u - x, v - y), inside(u, v))


def sea(name, paint):
    yield disc(paint[4], 0.3 + draw(40, "x", name) / 100, 0.36, 0.16 + draw(8, "r", name) / 100)
    for number in range(4):
        yield wave(paint[1 + number % 3], 0.5 + 0.13 * number, 0.025, 0.5 + draw(40, "w", name) / 100,
                   draw(628, "phase", name, str(number)) / 100)


def rings(name, paint):
    x, y = draw(2, "x", name), draw(2, "y", name)
    for number in range(6):
        yield disc(paint[1 + number % 4], x, y, 1.2 - 0.19 * number)


def arches(name, paint):
    for number in range(4):
        yield ring(paint[1 + number], 0.5, 0.82, 0.46 - 0.11 * number, 0.085)
    yield box(paint[1 + draw(2, "floor", name)], 0, 0.82, 1)


def quarters(name, paint):
    side = 1 / (2 + draw(2, "side", name))
    for number in range(9):
        left, top = number % 3 * side, number // 3 * side
        if max(left, top) >= 0.99:
            continue
        lot = draw(1 << 16, "quarter", name, str(number))
        ground = lot % 5
        yield box(paint[ground], left, top, side)
        yield corner(paint[(ground + 1 + lot // 5 % 4) % 5], left, top, side, lot >> 8 & 1, lot >> 9 & 1)


def hills(name, paint):
    yield disc(paint[4], 0.25 + draw(50, "x", name) / 100, 0.3, 0.13)
    for number in range(3):
        x = (0.15 + draw(35, "hill", name, str(number)) / 100 + 0.45 * number) % 1
        yield disc(paint[1 + number], x, 1.05 + 0.1 * number, 0.55 - 0.08 * number)


def lines(name, paint):
    for number in range(7):
        yield wave(paint[(1 + number) % 4 if number % 4 else 1], 0.12 + 0.13 * number, 0.05 + draw(5, "h", name) / 100,
                   0.8, number * 0.7 + draw(300, "phase", name) / 100)
    yield disc(paint[4], 0.7, 0.26, 0.1)


KINDS = (sea, rings, arches, quarters, hills, lines)


def cover(name, size):
    """Rows of (red, green, blue). Edges are a pixel soft."""
    paint = colours(name)
    shapes = [(paint[0], lambda u, v: 1), *KINDS[draw(len(KINDS), "kind", name)](name, paint)]

    def pixel(u, v):
        edges = []  # of the shapes in front of the one that is whole here
        for colour, depth in reversed(shapes):
            part = depth(u, v) * size + 0.5
            if part >= 1:
                break
            if part > 0:
                edges.append((part, colour))
        for part, above in reversed(edges):
            colour = tuple(round(below + (one - below) * part) for below, one in zip(colour, above))
        return colour

    places = [(number + 0.5) / size for number in range(size)]
    return [[pixel(u, v) for u in places] for v in places]
