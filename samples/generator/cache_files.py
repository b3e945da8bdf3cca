"""Artwork cache files as iTunes lays them out, and where it puts them."""

import struct

HEADER = 284  # what every real file has

# By the place of the image in its block: where the code stands and where the tag "data".
LAYOUTS = {196: (48, 192), 208: (48, 204), 212: (48, 204), 216: (52, 208)}


def header(length=HEADER, tag=b"itch"):
    start = struct.pack(">I4sIIII4s", length, tag, 2, 2, 2, 0, b"artw")
    return start.ljust(length, b"\0")


def block(image, code, size, ids, layout=208, kind=b"locl", length=None):
    """One image in its block; `size` is the width and the height, `length` what the block claims."""
    code_at, data_at = LAYOUTS[layout]
    head = bytearray(layout)
    claimed = layout + len(image) if length is None else length
    struct.pack_into(">I4sIIII", head, 0, claimed, b"item", layout, 1, 1, 1)
    struct.pack_into(">QQ4s", head, 28, *(int(part, 16) for part in ids), kind)
    struct.pack_into(">4sIII", head, code_at, code, 3, size, size)
    struct.pack_into(">4s", head, data_at, b"data")
    return bytes(head) + image


def folder(library, track, cache="Cache"):
    """Three levels, named by the last digits of the track's ID, as numbers, the last one first."""
    levels = [f"{int(digit, 16):02}" for digit in track[:-4:-1]]
    return "/".join([cache, library, *levels])
