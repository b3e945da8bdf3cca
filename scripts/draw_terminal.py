"""Draws docs/terminal.svg: what `tavrel` shows of the sample library in a terminal.

Usage: draw_terminal.py TAVREL [--check], in the top folder of the checkout. With --check nothing is written, and
the exit code is 1 when the picture is not the one that would be drawn.
"""
import os
import re
import shlex
import subprocess
import sys
import unicodedata
from pathlib import Path
from xml.sax.saxutils import escape

PICTURE = Path("docs/terminal.svg")
COLUMNS = 100
# A command, and the most lines of it that are shown.
COMMANDS = (("tavrel", 12), ("tavrel search dvorak", 7), ("tavrel stats --by decade", 6))

CELL, LINE, MARGIN, BAR = 8.4, 20, 24, 40  # pixels: a column, a row, around the text, above it
STYLE = """
text { font: 14px ui-monospace, "DejaVu Sans Mono", "Liberation Mono", Menlo, Consolas, monospace; fill: #e8e1d5 }
.bold { font-weight: 700; fill: #ffffff }
.dim { fill: #a79d8e }
.marked { font-weight: 700; fill: #f2c14e }
.prompt { fill: #8fbf8f }
"""
CLASSES = {"0": "", "1": "bold", "2": "dim", "1;33": "marked"}
ESCAPE = re.compile(r"\x1b\[([\d;]*)m")
GAP = re.compile(r"  +")


def width_of(text):
    """In columns of a terminal."""
    wide = sum(unicodedata.east_asian_width(letter) in "WF" for letter in text)
    return sum(unicodedata.combining(letter) == 0 for letter in text) + wide


def output_of(tavrel, command):
    environment = {key: value for key, value in os.environ.items() if not key.startswith(("TAVREL_", "NO_COLOR"))}
    environment.update(COLUMNS=str(COLUMNS), TAVREL_LIBRARY="samples/home")
    words = [tavrel, *shlex.split(command)[1:], "--color", "always"]
    return subprocess.run(words, env=environment, check=True, stdout=subprocess.PIPE).stdout.decode().splitlines()


def runs_of(line):
    """(column, class, text) of each piece that no gap divides: so columns stay columns in any font."""
    column, style = 0, ""
    for number, piece in enumerate(ESCAPE.split(line)):
        if number % 2:
            style = CLASSES[piece]
            continue
        for part in re.split(f"({GAP.pattern})", piece):
            text = part.strip(" ")
            if text:
                yield column + len(part) - len(part.lstrip(" ")), style, text
            column += width_of(part)


def drawn(row, column, style, text):
    if set(text) == {"█"}:
        return (f'<rect x="{MARGIN + column * CELL:.1f}" y="{BAR + row * LINE - 11}" width="{len(text) * CELL:.1f}" '
                f'height="12" fill="#c4634b"/>')
    kind = f' class="{style}"' if style else ""
    length = width_of(text) * CELL
    return (f'<text x="{MARGIN + column * CELL:.1f}" y="{BAR + row * LINE}"{kind} textLength="{length:.1f}" '
            f'lengthAdjust="spacingAndGlyphs">{escape(text)}</text>')


def picture_of(tavrel):
    lines, row = [], 1
    for command, most in COMMANDS:
        lines.append(drawn(row, 0, "prompt", "$"))
        lines.append(drawn(row, 2, "bold", command))
        output = output_of(tavrel, command)
        shown = output if len(output) <= most else [*output[:most - 1], "…"]
        for line in shown:
            row += 1
            lines += [drawn(row, *run) for run in runs_of(line)]
        row += 2
    width, height = MARGIN * 2 + COLUMNS * CELL, BAR + (row - 1) * LINE
    dots = "".join(f'<circle cx="{MARGIN + 20 * i}" cy="20" r="6" fill="{color}"/>'
                   for i, color in enumerate(("#d9735f", "#d9b45f", "#83a86b")))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width:.0f} {height}" width="{width:.0f}" '
            f'height="{height}" xml:space="preserve">\n<style>{STYLE}</style>\n'
            f'<rect width="100%" height="100%" rx="10" fill="#1d1b18"/>\n{dots}\n' + "\n".join(lines) + "\n</svg>\n")


def main():
    tavrel, *options = sys.argv[1:]
    picture = picture_of(str(Path(tavrel).resolve()))
    if options != ["--check"]:
        PICTURE.write_text(picture, encoding="utf-8")
        return 0
    if PICTURE.read_text(encoding="utf-8") == picture:
        return 0
    print(f"{PICTURE} shows something else than the program; python3 scripts/draw_terminal.py TAVREL draws it")
    return 1


sys.exit(main())
