"""Reads pages that `tavrel page` writes with Python's own parsers, and compares them with the library files.

Usage: check_page.py TAVREL SAMPLE_HOME [large]

With "large" it also has a page of 28 MB written, which sanitizers make slow.
"""
import base64
import datetime
import gzip
import hashlib
import json
import os
import plistlib
import re
import subprocess
import sys
import tempfile
import unicodedata
from html.parser import HTMLParser
from pathlib import Path

HOSTILE = (
    "</script><script>alert(1)</script>", "<img src=x onerror=alert(1)>", "\"'><b>", "&lt;&amp;", "]]>", "<!--", "-->",
    "{{title}}", "\u202Eevil\u202C", "\u2066x", "a\u0085b", "e" + "\u0301" * 200, "\uFEFFx", "\u2028", "שבת", "日本",
    "=1+1", "javascript:alert(1)", "x" * (1 << 20), "${alert(1)}", "`", "\\", "\\u003c", "Ме\u0441т\u043E",
)
VOID = {"meta", "link", "img", "input", "br", "rect", "path"}
ALLOWED_POLICY = r"default-src 'none'; script-src 'sha256-[\w+/]+='; style-src 'sha256-[\w+/]+='; " \
                 r"img-src data: blob:; base-uri 'none'; form-action 'none'"


class Page(HTMLParser):
    """What stands in a page, and whether it is well made."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.open, self.elements, self.shown, self.blocks, self.faults = [], [], [], [], []
        self.feed(text)
        self.close()
        if self.open:
            self.faults.append(f"elements are left open: {self.open}")

    def handle_starttag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))
        if tag in ("script", "style"):
            self.blocks.append((tag, dict(attributes), ""))
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attributes):
        self.elements.append((tag, dict(attributes)))

    def handle_endtag(self, tag):
        if not self.open or self.open.pop() != tag:
            self.faults.append(f"</{tag}> closes what is not open")

    def handle_data(self, data):
        if self.open and self.open[-1] in ("script", "style"):
            tag, attributes, text = self.blocks.pop()
            self.blocks.append((tag, attributes, text + data))
        else:
            self.shown.append(data)

    def block(self, name):
        return next(((attributes, text) for _, attributes, text in self.blocks if attributes.get("id") == name), None)


def sha(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


def policy_faults(page):
    policy = next((a["content"] for t, a in page.elements if a.get("http-equiv") == "Content-Security-Policy"), "")
    if not re.fullmatch(ALLOWED_POLICY, policy):
        yield f"the policy is {policy!r}"
    for tag, attributes, text in page.blocks:
        runs = tag == "style" or "type" not in attributes
        if runs and sha(text) not in policy:
            yield f"the policy does not let the page's own {tag} run"
    if sum("type" not in attributes for tag, attributes, _ in page.blocks if tag == "script") != 1:
        yield "there is not exactly one script"


def safety_faults(page):
    yield from page.faults
    yield from policy_faults(page)
    for tag, attributes in page.elements:
        for name, value in attributes.items():
            if name.startswith("on") or name == "style":
                yield f"<{tag}> has the attribute {name}, which the policy forbids"
            if name in ("src", "href") and not re.match(r"#|data:image/jpeg;base64,|data:,$", value or ""):
                yield f"<{tag}> leads to {value[:60]!r}"
    for text in page.shown:
        if re.search("[\x00-\x08\x0B-\x1F\x7F-\x9F\u202A-\u202E\u2066-\u2069]", text):
            yield f"characters that nobody sees are shown: {text[:60]!r}"
        if "{{" in text and "title" not in text:
            yield f"a part of the page is not filled in: {text[:60]!r}"


class Songs:
    """The songs as the page carries them."""

    def __init__(self, page):
        attributes, text = page.block("songs-data")
        self.form = attributes["data-form"]
        parts = [base64.b64decode(part, validate=True) for part in text.split(" ")]
        self.data = b"".join(gzip.decompress(part) if self.form == "gzip" else part for part in parts)
        length = int.from_bytes(self.data[:4], "little")
        self.head = json.loads(self.data[4:4 + length])
        self.at = 4 + length
        self.columns = {c["field"]: self.column(c) for c in self.head["columns"]}
        self.album_of = self.numbers(self.head["albums"], self.head["songs"])
        self.covers = self.numbers(self.head["covers"], len(self.head["albums"]["titles"]))
        self.lists = [(p["name"], p["type"], p["depth"], self.numbers(p, p["songs"])) for p in self.head["playlists"]]
        if self.at != len(self.data):
            raise ValueError("bytes are left over")

    def numbers(self, packed, count):
        end, numbers, before = self.at + packed["bytes"], [], 0
        while self.at < end:
            value, shift = 0, 0
            while True:
                byte = self.data[self.at]
                self.at += 1
                value |= (byte & 127) << shift
                shift += 7
                if byte < 128:
                    break
            number = -(value >> 1) - 1 if value & 1 else value >> 1
            before = before + number if packed["differences"] else number
            numbers.append(before)
        if len(numbers) not in (count, 0):
            raise ValueError(f"a column has {len(numbers)} numbers, not {count}")
        return numbers

    def column(self, column):
        numbers = self.numbers(column, self.head["songs"])
        if column["kind"] == "text":
            return [column["texts"][number] for number in numbers]
        return [number - 1 if number else None for number in numbers]

    def of(self, field):
        return self.columns.get(field, [None] * self.head["songs"])


def clean(text):
    """As the page shows a text of the sample's: they have nothing to clean but how accents are composed."""
    return unicodedata.normalize("NFC", text or "")


def day(date):
    return (date.date() - datetime.date(1970, 1, 1)).days if date else None


def content_faults(songs, library):
    tracks = list(library["Tracks"].values())
    wanted = {
        "name": [clean(t.get("Name")) for t in tracks], "artist": [clean(t.get("Artist")) for t in tracks],
        "genre": [clean(t.get("Genre")) for t in tracks], "year": [t.get("Year") for t in tracks],
        "plays": [t.get("Play Count") for t in tracks], "added": [day(t.get("Date Added")) for t in tracks],
        "rating": [None if t.get("Rating Computed") else t.get("Rating") for t in tracks],
        "seconds": [(t["Total Time"] + 500) // 1000 if "Total Time" in t else None for t in tracks],
        "size": [(t["Size"] + 512) // 1024 if "Size" in t else None for t in tracks],
    }
    for field, values in wanted.items():
        if songs.of(field) != values:
            yield f"the column {field} is not what the library file says"
    ids = {t["Track ID"]: number for number, t in enumerate(tracks)}
    kept = [(name, numbers) for name, _, _, numbers in songs.lists]
    for playlist in library["Playlists"]:
        items = [ids[item["Track ID"]] for item in playlist.get("Playlist Items", [])]
        if items and playlist.get("Visible", True) and (playlist["Name"], items) not in kept:
            yield f"the playlist {playlist['Name']} holds other songs than the library file says"
    for number, album in enumerate(songs.album_of):
        title = songs.head["albums"]["titles"][album - 1] if album else ""
        if clean(title) != songs.of("album")[number]:
            yield f"song {number} is on the album {title!r}"


class Runner:
    def __init__(self, tavrel, folder):
        self.tavrel, self.folder = str(Path(tavrel).resolve()), Path(folder)

    def run(self, *arguments):
        return subprocess.run([self.tavrel, *map(str, arguments)], stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60)

    def page(self, *arguments):
        target = self.folder / "page.html"
        done = self.run(*arguments, "page", "-o", target)
        if done.returncode:
            raise SystemExit(f"tavrel page: {done.stderr.decode()}")
        return Page(target.read_text(encoding="utf-8"))

    def write(self, name, tracks):
        path = self.folder / name
        path.write_bytes(plistlib.dumps({"Tracks": tracks, "Playlists": []}, sort_keys=False))
        return path


def sample_faults(runner, home):
    page = runner.page("--home", home)
    songs = Songs(page)
    library = plistlib.loads((Path(home) / "Music/iTunes/iTunes Music Library.xml").read_bytes())
    yield from safety_faults(page)
    yield from content_faults(songs, library)
    text = "".join(page.shown)
    for wanted in (str(len(library["Tracks"])), "The Four Seasons", "Baroque", "Most played albums", "51", "Albums without a cover"):
        if wanted not in text:
            yield f"the page does not show {wanted!r} without a script"
    if "path" in songs.columns or any("Users/" in text for _, _, text in page.blocks):
        yield "paths stand in the page, though nobody asked for them"
    pictures = [text for _, a, text in page.blocks if a.get("data-form") == "jpeg"]
    if not any(songs.covers) or not all(base64.b64decode(p, validate=True).startswith(b"\xFF\xD8") for p in pictures):
        yield "the covers are not there, or no JPEG files"
    if songs.form != "plain":
        yield f"few songs stand in the page as {songs.form}"


def option_faults(runner, home):
    target = runner.folder / "options.html"
    run = lambda *more: runner.run("--home", home, "page", "-o", target, *more)
    done = run("--paths", "--covers", "none", "--title", "<Mine> & \"yours\"")
    if not re.fullmatch(rb"tavrel: none of \d+ files found; --music DIR [^\n]*\n", done.stderr) or run("-q").stderr:
        yield f"a line says what files were found, unless it is quiet: {done.stderr!r}"
    run("--paths", "--covers", "none", "--title", "<Mine> & \"yours\"")
    page = Page(target.read_text(encoding="utf-8"))
    songs = Songs(page)
    if not any(path and "/Music/" in path for path in songs.of("path")):
        yield "--paths shows no paths"
    if any(songs.covers) or any(tag == "img" for tag, _ in page.elements):
        yield "--covers none leaves covers"
    if '<Mine> & "yours"' not in page.shown:
        yield "--title is not what stands over the page"
    run("--covers", "3")
    if sum(map(bool, Songs(Page(target.read_text(encoding="utf-8"))).covers)) != 3:
        yield "--covers 3 gives another number"
    other = runner.folder / "mine.html"
    other.write_text("<!doctype html>\nmine")
    if runner.run("--home", home, "page", "-o", other).returncode != 1 or other.read_text() != "<!doctype html>\nmine":
        yield "a file of another's is replaced"
    os.mkfifo(runner.folder / "pipe")
    if runner.run("--home", home, "page", "-o", runner.folder / "pipe").returncode != 1:
        yield "a pipe is written to, or waited for"
    for wrong in (("-o", ""), (), ("-o", "-", "--open"), ("-o", target, "--covers", "many"), ("-o", target, "--covers", "-1")):
        if runner.run("--home", home, "page", *wrong).returncode != 2:
            yield f"{wrong} is no wrong usage"
    printed = runner.run("--home", home, "page", "-o", "-").stdout
    if not printed.startswith(b"<!doctype html>") or not printed.endswith(b"</html>\n"):
        yield "standard output has another page"


def size_faults(runner, home):
    """A page above 25 MB is warned of, unless nothing is to be said; one below is not."""
    tracks = {str(i): {"Track ID": i, "Name": str(i) * (1 << 20)} for i in range(1, 10)}
    tracks.update({str(i): {"Track ID": i, "Name": str(i) * (1 << 19)} for i in range(10, 22)})
    large = runner.write("large.xml", tracks)
    for library, more, wanted in ((("-l", large), (), True), (("-l", large), ("-q",), False), (("--home", home), (), False)):
        done = runner.run(*library, *more, "page", "-o", runner.folder / "sized.html")
        size = (runner.folder / "sized.html").stat().st_size
        if done.returncode or (b"large for a browser" in done.stderr) != wanted:
            yield f"of {size} bytes, with {more}, is said: {done.stderr.decode()!r}"


def opening_faults(runner, home):
    """A stand-in for the desktop's own program writes down what it is told to open."""
    opener = runner.folder / "bin" / "xdg-open"
    opener.parent.mkdir()
    told = runner.folder / "told"
    opener.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$@\" >'{told}'\nexit ${{OPEN_RESULT:-0}}\n")
    opener.chmod(0o755)
    for result, code in (("0", 0), ("3", 1)):
        environment = {**os.environ, "PATH": f"{opener.parent}:/usr/bin:/bin", "OPEN_RESULT": result}
        done = subprocess.run([runner.tavrel, "--home", str(Path(home).resolve()), "page", "-o", "-page.html", "--open"],
                              cwd=runner.folder, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        if done.returncode != code or told.read_text() != "./-page.html\n":
            yield f"--open ends with {done.returncode} and opens {told.read_text()!r}"
    environment["PATH"] = "/nowhere"
    done = subprocess.run([runner.tavrel, "--home", str(Path(home).resolve()), "page", "-o", "-page.html", "--open"],
                          cwd=runner.folder, env=environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if done.returncode != 1 or b"with a browser" not in done.stderr:
        yield "--open without a desktop does not say what to do"


def hostile_faults(runner):
    tracks = {}
    for number, text in enumerate(HOSTILE, 1):
        tracks[str(number)] = {"Track ID": number, "Name": text, "Artist": text, "Album": text, "Genre": text,
                               "Comments": text, "Play Count": number, "Total Time": 1000, "Location": text}
    for number, value in enumerate((-1, 0, 2 ** 63 - 1, -2 ** 63, 99999), 100):
        tracks[str(number)] = {"Track ID": number, "Total Time": value, "Year": value, "Play Count": value,
                               "Rating": value, "Size": value, "Name": str(number)}
    page = runner.page("-l", runner.write("hostile.xml", tracks))
    yield from safety_faults(page)
    songs = Songs(page)
    for number, text in enumerate(HOSTILE):
        kept = songs.of("name")[number]
        if text.isascii() and kept != text:
            yield f"{text[:40]!r} became {kept[:40]!r}"
    if max(len(text) for text in page.shown) > 5000:
        yield "a text without end stands in the first screen"


def many_faults(runner):
    def tracks(count):
        return {str(i): {"Track ID": i, "Name": f"Song {i * i % 977}", "Artist": f"Artist {i // 100}",
                         "Album": f"Album {i // 10}", "Total Time": i * 100, "Year": 1950 + i % 70} for i in range(1, count + 1)}
    for count, form in ((0, "plain"), (4999, "plain"), (5000, "gzip")):
        library = tracks(count)
        page = runner.page("-l", runner.write("many.xml", library))
        songs = Songs(page)
        yield from safety_faults(page)
        if songs.form != form or songs.of("name") != [t["Name"] for t in library.values()]:
            yield f"{count} songs are not all there, or not {form}"


def main():
    tavrel, home = sys.argv[1:3]
    with tempfile.TemporaryDirectory() as folder:
        runner = Runner(tavrel, folder)
        faults = [*sample_faults(runner, home), *option_faults(runner, home), *opening_faults(runner, home), *hostile_faults(runner), *many_faults(runner)]
        if "large" in sys.argv[3:]:
            faults += size_faults(runner, home)
    print("\n".join(faults) or "the pages are what they should be")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
