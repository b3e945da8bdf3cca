"""The rule of a smart playlist: which tracks it holds, and the bytes that iTunes makes of it.

A rule is one or more clauses joined by "and" or by "or", with a limit behind it if wanted:
    composer contains Bach and plays > 0
    genre is Opera or genre is Operetta
    year between 1990 1999
    plays > 2 limit 25            (the most played ones)
    added within 60 days
"""

import datetime
import re
import struct
import unicodedata

# word of the rule -> key of the track, number of the field in the packed rule
FIELDS = {
    "composer": ("Composer", 0x12),
    "genre": ("Genre", 0x08),
    "year": ("Year", 0x07),
    "rating": ("Rating", 0x19),
    "plays": ("Play Count", 0x16),
    "added": ("Date Added", 0x10),
    "played": ("Play Date UTC", 0x17),
}
OPERATORS = {
    "is": 0x01000001,
    "contains": 0x01000002,
    ">": 0x00000010,
    "between": 0x00000100,
    "within": 0x00000200,
}
RELATIVE_DATE = 0x2DAE2DAE2DAE2DAE  # stands where a value would: the dates count from now
SECONDS_A_DAY = 86400
MOST_PLAYED, RANDOM = 25, 2  # orders in which a limit takes tracks
IN_ITEMS = 3  # what a limit counts


class SmartRule:
    """One parsed rule."""

    def __init__(self, text):
        body, _, limit = text.partition(" limit ")
        self.limit = int(limit) if limit else None
        self.any = " or " in body
        clauses = re.split(r" or " if self.any else r" and ", body)
        self.clauses = [clause.split(" ", 2) for clause in clauses]

    def choose(self, tracks, now):
        """The tracks that the rule holds, in their order; with a limit, the most played first."""
        combine = any if self.any else all
        chosen = [t for t in tracks if combine(holds(clause, t, now) for clause in self.clauses)]
        if self.limit is not None:
            chosen = sorted(chosen, key=lambda t: -t.get("Play Count", 0))[: self.limit]
        return chosen

    def info(self):
        """The bytes under "Smart Info": live updating, match the rules, limit and its order."""
        limited = self.limit is not None
        order = MOST_PLAYED if limited else RANDOM
        head = struct.pack(">4B4I", 1, 1, limited, IN_ITEMS, order, self.limit or 25, 0, 7)
        return head.ljust(112, b"\0")

    def criteria(self):
        """The bytes under "Smart Criteria": a header of 136 bytes and the clauses."""
        head = struct.pack(">4s3I", b"SLst", 0x00010001, len(self.clauses), self.any)
        return head.ljust(136, b"\0") + b"".join(map(pack, self.clauses))


def fold(text):
    return unicodedata.normalize("NFC", text).casefold()


def numbers(value):
    return [int(number) for number in re.findall(r"\d+", value)]


def holds(clause, track, now):
    field, operator, wanted = clause
    value = track.get(FIELDS[field][0])
    if value is None:
        return False
    if operator == "is":
        return fold(value) == fold(wanted)
    if operator == "contains":
        return fold(wanted) in fold(value)
    if operator == ">":
        return value > int(wanted)
    if operator == "between":
        low, high = numbers(wanted)
        return low <= value <= high
    return now - value <= datetime.timedelta(days=numbers(wanted)[0])


def pack(clause):
    field, operator, wanted = clause
    if operator in ("is", "contains"):
        data = unicodedata.normalize("NFC", wanted).encode("utf-16-be")
    else:
        first, last = numbers(wanted)[0], numbers(wanted)[-1]
        if operator == "within":
            period = (RELATIVE_DATE, -first, SECONDS_A_DAY, RELATIVE_DATE, 0, 1)
        else:
            period = (first, 0, 1, last, 0, 1)
        data = struct.pack(">QqQQqQ", *period).ljust(68, b"\0")
    head = struct.pack(">2I", FIELDS[field][1], OPERATORS[operator]).ljust(52, b"\0")
    return head + struct.pack(">I", len(data)) + data
