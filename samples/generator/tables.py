"""What the rest of the generator builds on: the tables, and numbers that only look drawn by lot."""

import hashlib
import itertools
import pathlib
import sys
import unicodedata

FOLDER = pathlib.Path(__file__).resolve().parent.parent
SEED = "sample library"


def read_table(name):
    """The rows of a tab-separated table as dictionaries; lines with a '#' in front are remarks."""
    text = (FOLDER / name).read_text(encoding="utf-8")
    if not unicodedata.is_normalized("NFC", text):
        sys.exit(f"{name}: accents must stand composed here, the note 'decomposed' parts them")
    lines = [line.split("\t") for line in text.split("\n") if line and not line.startswith("#")]
    header, *rows = lines
    for row in rows:
        if len(row) > len(header):
            sys.exit(f"{name}: more than {len(header)} columns in the line of {row[0]}")
    return [dict(itertools.zip_longest(header, row, fillvalue="")) for row in rows]


def parse_settings(text):
    """Settings "key=value" parted by " ; "; a bare key is True."""
    pairs = (part.partition("=") for part in text.split(" ; ") if part)
    return {key: value.replace("\\n", "\n") if equals else True for key, equals, value in pairs}


def draw(below, *what):
    """A number from 0 to `below` - 1: a hash of SEED and `what`, so the same at all times."""
    digest = hashlib.sha256("\0".join((SEED,) + what).encode("utf-8")).digest()
    return int.from_bytes(digest[:8], "big") % below


def persistent_id(*what):
    """The 16 digits that name a track, a playlist or the library; artwork files bear them."""
    return f"{draw(1 << 64, 'persistent id', *what):016X}"
