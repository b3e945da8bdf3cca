"""What `tavrel export` writes, as others read it: Python's readers, xmllint and sqlite3, on libraries with real files
and with texts and names that somebody made up to do harm.

Usage: check_exports.py TAVREL FIELDS_DOCUMENT PART
"""
import csv
import json
import os
import plistlib
import re
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import unicodedata
import urllib.parse
import xml.etree.ElementTree as ElementTree
from pathlib import Path

HERE = Path(__file__).resolve().parent
SAMPLE = HERE.parents[1] / "samples/home"
XSPF = "{http://xspf.org/ns/0/}"
PLAYER_FORMATS = ("m3u8", "m3u", "xspf")
failures = []


def expect(condition, what, *details):
    if not condition:
        failures.append(what + "".join(f"\n  {str(detail)[:400]}" for detail in details))


def expect_equal(found, wanted, what):
    expect(found == wanted, what, f"found  {found!r}", f"wanted {wanted!r}")


class Case:
    """A library in a temporary folder, and runs of the program on it."""

    def __init__(self, tavrel):
        self.tavrel = tavrel
        self.folder = Path(os.path.realpath(tempfile.mkdtemp()))
        self.tracks, self.playlists = {}, []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        shutil.rmtree(self.folder)

    def add_track(self, name="", file=None, **more):
        """file: bytes of a path below music/, which is made. Result: the track's ID."""
        number = len(self.tracks) + 1
        track = {"Track ID": number, "Name": name, "Total Time": 1000 * number + 400, **more}
        if file is not None:
            path = os.path.join(os.fsencode(self.folder), b"music", file)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            Path(os.fsdecode(path)).touch()
            track.update({"Location": "file://localhost" + urllib.parse.quote(path), "Track Type": "File"})
        self.tracks[str(number)] = track
        return number

    def path_of(self, number):
        return urllib.parse.unquote_to_bytes(self.tracks[str(number)]["Location"][len("file://localhost"):])

    def add_list(self, name, items=(), parent=None, **more):
        """Result: its persistent ID, by which it is a parent."""
        identity = f"{len(self.playlists) + 1:016X}"
        playlist = {"Playlist Persistent ID": identity, "Playlist ID": 100 + len(self.playlists), **more}
        if name is not None:
            playlist["Name"] = name
        if parent:
            playlist["Parent Persistent ID"] = parent
        playlist["Playlist Items"] = [{"Track ID": item} for item in items]
        self.playlists.append(playlist)
        return identity

    def run(self, *arguments, library=None, **more):
        if library is None:
            library = self.folder / "library.xml"
            library.write_bytes(plistlib.dumps({"Tracks": self.tracks, "Playlists": self.playlists}, sort_keys=False))
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.folder), "TMPDIR": str(self.folder)}
        return subprocess.run([self.tavrel, "-l", str(library), *arguments], env=environment, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, cwd=self.folder, **{"text": True, **more})

    def export(self, *arguments, code=0, **more):
        outcome = self.run("export", *arguments, **more)
        expect(outcome.returncode == code, f"export {' '.join(arguments)} ends with {outcome.returncode}", outcome.stderr)
        return outcome

    def files(self, folder="out"):
        """Paths below the folder, of files only."""
        top = self.folder / folder
        return sorted(str(path.relative_to(top)) for path in top.rglob("*") if not path.is_dir())


# ---- Readers of playlists ------------------------------------------------------------------------

def path_of_url(url):
    parts = urllib.parse.urlsplit(url)
    return urllib.parse.unquote_to_bytes(parts.path)


def read_m3u(path):
    """(title of the list, [(seconds, title, path or URL as bytes)])"""
    data = path.read_bytes()
    encoding = "latin-1" if path.suffix == ".m3u" and b"#EXTENC:UTF-8\n" not in data else "utf-8"
    lines = data.decode(encoding).split("\n")
    expect_equal((lines[0], lines[-1]), ("#EXTM3U", ""), f"{path.name} begins and ends as M3U does")
    name, facts, entries = None, None, []
    for line in lines[1:-1]:
        if line.startswith("#PLAYLIST:"):
            name = line[len("#PLAYLIST:"):]
        elif line.startswith("#EXTINF:"):
            facts = line[len("#EXTINF:"):].split(",", 1)
        elif not line.startswith("#"):
            target = path_of_url(line) if line.startswith("file:") else line.encode()
            if b"://" not in target:
                target = os.path.join(os.fsencode(path.parent), target)
            entries.append((int(facts[0]), facts[1], target))
            facts = None
    return name, entries


def read_xspf(path):
    root = ElementTree.parse(path).getroot()
    entries = []
    for track in root.iter(XSPF + "track"):
        location = urllib.parse.urljoin(path.as_uri(), track.findtext(XSPF + "location"))
        target = path_of_url(location) if location.startswith("file:") else location.encode()
        seconds = (int(track.findtext(XSPF + "duration") or -1000) + 500) // 1000
        entries.append((seconds, track.findtext(XSPF + "title") or "", target))
    return root.findtext(XSPF + "title"), entries


def read_playlist(path):
    return read_xspf(path) if path.suffix == ".xspf" else read_m3u(path)


def validate_xspf(paths):
    if paths:
        outcome = subprocess.run(["xmllint", "--noout", "--nonet", "--relaxng", str(HERE / "xspf.rng"), *map(str, paths)],
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        expect(outcome.returncode == 0, "XSPF validates", outcome.stdout)


# ---- The parts -----------------------------------------------------------------------------------

HOSTILE_TEXTS = ("plain", "", "two\nlines", "a\n#EXTM3U", "http://x/y", "]]>", "<&>\"'", "</title>", "Robert'); DROP TABLE tracks;--",
                 "\u202etxt.exe", "x" * 300, "é", "e\u0301", "日本", "=1+1", ",,", "\ufffe", "\U0001D11E", "a\u2028b", "#PLAYLIST:x")

FILE_NAMES = (b"plain.mp3", "é.mp3".encode(), "e\u0301 apart.mp3".encode(), b"#hash.mp3", b" blanks at both ends ", b"two\nlines.mp3",
              b"100%25.mp3", b"a+b.mp3", "日本/音.mp3".encode(), b"q'u\"o&t<e>].mp3", b"http:/x.mp3", b"c:x.mp3", b"a\\b.mp3",
              "bi\u202edi.mp3".encode(), b"tab\t.mp3", b"..dots", b"x;y?z.mp3", b"\x1b[31m.mp3")


def on_one_line(text):
    return " ".join(re.sub("[\ufffe\u202e]", "", text).split())


def check_players(tavrel, _document):
    """Each format names the files that are there, in their order, whatever their names."""
    with Case(tavrel) as case:
        ids = [case.add_track(f"song {i}", name, Artist="Ännie") for i, name in enumerate(FILE_NAMES)]
        folder = case.add_list("Folder", Folder=True)
        case.add_list("All", ids + ids[:1], parent=folder)
        case.add_list("One", ids[1:2])
        wanted = [case.path_of(number) for number in ids + ids[:1]]
        for form in PLAYER_FORMATS:
            for relative in ((), ("--relative-to", "out"), ("--relative-to", "out", "--flat")):
                shutil.rmtree(case.folder / "out", ignore_errors=True)
                case.export("-o", "out", "--format", form, *relative)
                path = case.folder / "out" / ("" if "--flat" in relative else "Folder") / f"All.{form}"
                name, entries = read_playlist(path)
                expect_equal(name, "All", f"the list's name in {form}")
                expect_equal([os.path.normpath(entry[2]) for entry in entries], wanted, f"paths in {form} {relative}")
                expect_equal(entries[0][:2], (1, "song 0" if form == "xspf" else "Ännie - song 0"), f"facts in {form}")
                relative_paths = b"../" in path.read_bytes()
                expect(relative_paths == bool(relative), f"paths in {form} {relative} are relative or not")
        case.export("-o", "out", "--relative-to", "music", "--force")
        expect("\n日本/音.mp3\n" in (case.folder / "out/Folder/All.m3u8").read_text(), "paths are relative to a folder")
        case.export("-o", "out", "--format", "m3u", "--force")
        expect(b"\xe9.mp3" in (case.folder / "out/One.m3u").read_bytes(), "m3u is in Latin-1")


def check_texts(tavrel, _document):
    """Texts of all kinds come back, or stand on one line."""
    with Case(tavrel) as case:
        ids = [case.add_track(text, b"%d.mp3" % i, Album=text, Comments=text) for i, text in enumerate(HOSTILE_TEXTS)]
        for text in HOSTILE_TEXTS:
            case.add_list(text, ids)
        for form in PLAYER_FORMATS:
            case.export("-o", "out", "--format", form)
            names = set()
            for path in sorted(Path(case.folder, "out").glob(f"*.{form}")):
                name, entries = read_playlist(path)
                names.add(name)
                titles = [entry[1] for entry in entries]
                if form == "xspf":
                    expect_equal(titles, [text.replace("\ufffe", "\ufffd") for text in HOSTILE_TEXTS], "titles in XSPF")
                else:
                    composed = [unicodedata.normalize("NFC", on_one_line(text)) for text in HOSTILE_TEXTS]
                    expect_equal([on_one_line(title) for title in titles], composed, f"titles in {form}")
            if form == "xspf":
                expect_equal(names, {text.replace("\ufffe", "\ufffd") for text in HOSTILE_TEXTS}, "names in XSPF")
        validate_xspf(Path(case.folder, "out").glob("*.xspf"))
        for form in ("json", "csv"):
            case.export("-o", "data", "--format", form)
            for path, playlist in (("plain", case.playlists[0]),):
                songs = case.run("songs", f"id:{playlist['Playlist Persistent ID']}", "--format", form, text=False).stdout
                expect(songs.decode() == (case.folder / f"data/{path}.{form}").read_bytes().decode(), f"{form} is what songs print")
        rows = list(csv.DictReader((case.folder / "data/plain.csv").open(newline=""), strict=True))
        expect_equal([row["comments"] for row in rows], [text for text in HOSTILE_TEXTS], "comments in CSV")
        songs = json.loads((case.folder / "data/plain.json").read_text())
        expect_equal([song["name"] for song in songs], list(HOSTILE_TEXTS), "names in JSON")


LIST_NAMES = ("..", ".", "", "CON", "con", "nul.txt", "COM1", "a/b", "a\\b", "a:b", "x" * 300, "é" * 200, "é", "E\u0301", "\u00c9", "Same",
              "same", "SAME", "dots...", "blank ", " blank", "new\nline", "q\"uote", "*?<>|", "\u202etxt", "-rf", "~", "$(reboot)", "Same (2)",
              "\u0131", "I", "ﬀ", "ff", "a\u200db", "ab", None)


def is_safe(part):
    """By the rules of Windows and exFAT, and those of others."""
    stem = part.split(".")[0].rstrip(" ").upper()
    return (0 < len(part.encode()) <= 255 and not re.search(r'[\x00-\x1f\x7f"*/:<>?\\|]', part) and part[-1] not in ". "
            and not part.startswith(".") and not re.fullmatch(r"CON|PRN|AUX|NUL|(COM|LPT)[0-9¹²³]", stem))


def check_names(tavrel, _document):
    """Every list has a file of its own below the folder, under a name that every file system takes."""
    with Case(tavrel) as case:
        song = case.add_track("song", b"song.mp3")
        parents = [None] + [case.add_list(name, Folder=True) for name in ("../../etc", "Same", "CON")]
        for parent in parents:
            for name in LIST_NAMES:
                case.add_list(name, [song], parent=parent)
        for options in ((), ("--flat",)):
            shutil.rmtree(case.folder / "out", ignore_errors=True)
            before = set(os.listdir(case.folder)) | {"out", "library.xml"}
            case.export("-o", "out", *options)
            expect_equal(set(os.listdir(case.folder)), before, "nothing is written outside of the folder")
            files = case.files()
            expect_equal(len(files), len(parents) * len(LIST_NAMES), "each list has a file")
            for path in files:
                expect(all(map(is_safe, path.split("/"))), "a name is safe", path)
            folded = {unicodedata.normalize("NFKD", unicodedata.normalize("NFD", path).casefold()).upper() for path in files}
            expect_equal(len(folded), len(files), "names differ wherever they are compared")
            names = sorted(read_playlist(case.folder / "out" / path)[0] or "" for path in files)
            wanted = sorted([unicodedata.normalize("NFC", on_one_line(name or "")) for name in LIST_NAMES] * len(parents))
            expect_equal([name.strip() for name in names], wanted, "the true names stand inside")
        # Folders within folders, deeper than any path may be.
        parent = None
        for _ in range(3000):
            parent = case.add_list("deep" * 20, parent=parent, Folder=True)
        case.add_list("bottom", [song], parent=parent)
        case.export("bottom", "-o", "deep")
        expect(len(case.files("deep")) == 1 and len(case.files("deep")[0]) < 1300, "a list in deep folders has a file")


def check_choice(tavrel, _document):
    """Which lists are written, what becomes of files that are there, and what the end says."""
    with Case(tavrel) as case:
        song = case.add_track("here", b"here.mp3")
        missing = case.add_track("gone\x85", Artist="A", Location="file://localhost/no/where.mp3")
        remote = case.add_track("cloud", **{"Track Type": "Remote"})
        stream = case.add_track("stream", **{"Track Type": "URL", "Location": "http://radio.example.org/a?b=c"})
        odd = case.add_track("odd", **{"Track Type": "URL", "Location": "javascript:alert(1)"})
        nowhere = case.add_track("nowhere")
        windows = case.add_track("windows", Location="file://localhost/C:/Music/x.mp3")
        case.add_list("Library", [song], Master=True)
        case.add_list("Music", [song], **{"Distinguished Kind": 4})
        folder = case.add_list("Folder", [song], Folder=True)
        case.add_list("Inside", [song, missing, remote, stream, odd, nowhere, windows], parent=folder)
        case.add_list("Music", [song, song])
        case.add_list("Empty")

        outcome = case.export("-o", "out")
        expect_equal(case.files(), ["Empty.m3u8", "Folder/Inside.m3u8", "Music.m3u8"], "one's own lists")
        expect_equal(outcome.stdout, "3 playlists, 4 songs written to out; 5 songs left out "
                     "(2 missing, 2 remote, 1 without a place)\n", "the summary")
        expect('Inside: left out "gone " by A: missing' in outcome.stderr, "a line says what is left out", outcome.stderr)
        _, entries = read_playlist(case.folder / "out/Folder/Inside.m3u8")
        expect_equal([entry[2] for entry in entries], [case.path_of(song), b"http://radio.example.org/a?b=c"], "what plays")
        found = "tavrel: 1 of 3 files found\n"
        expect(outcome.stderr.startswith(found), "a line says what was found, each file once", outcome.stderr)
        for form in (*PLAYER_FORMATS, "csv", "json", "sqlite"):
            for options, wanted in (((), found), (("-q",), ""), (("--paths", "raw"), "")):
                stderr = case.export("-o", "found/", "--force", "--format", form, *options).stderr
                expect_equal("".join(line for line in stderr.splitlines(True) if "files found" in line), wanted,
                             f"what was found in {form} {options}")
        shutil.rmtree(case.folder / "found")
        again = case.export("-o", "out", code=1)
        expect("3 files kept that had the name; --force replaces" in again.stdout, "files are kept", again.stdout)
        (case.folder / "out/Empty.m3u8").write_text("mine")
        case.export("-o", "out", code=1)
        expect_equal((case.folder / "out/Empty.m3u8").read_text(), "mine", "a file that is there stays")
        case.export("-o", "out", "--force")
        expect_equal((case.folder / "out/Empty.m3u8").read_text(), "#EXTM3U\n#PLAYLIST:Empty\n", "unless it is to be replaced")
        expect_equal(len(case.files()), 3, "nothing else is left")

        case.export("-o", "all", "--all", "--flat")
        expect_equal(case.files("all"), ["Empty.m3u8", "Inside.m3u8", "Library.m3u8", "Music (2).m3u8", "Music.m3u8"], "all lists in one folder")
        _, entries = read_playlist(case.folder / "all/Music.m3u8")
        expect_equal(len(entries), 2, "one's own list has the name before a built-in one")
        case.export("Folder", "-o", "named")
        expect_equal(case.files("named"), ["Folder/Inside.m3u8"], "a folder is the lists in it")
        case.export("-o", "kept", "Inside", "--keep-missing")
        _, entries = read_playlist(case.folder / "kept/Folder/Inside.m3u8")
        expect_equal([entry[2] for entry in entries], [case.path_of(song), b"/no/where.mp3",
                     b"http://radio.example.org/a?b=c", b"/C:/Music/x.mp3"], "what is missing is written all the same")
        dry = case.export("-o", "dry", "-n")
        expect("would be written to dry" in dry.stdout and not (case.folder / "dry").exists(), "a dry run writes nothing")
        expect_equal(case.export("-o", "quiet", "-q").stderr + case.export("-o", "quiet", "-q", "--force").stdout, "", "-q is quiet")

        report = json.loads(case.export("-o", "json", "--json").stdout)
        expect_equal((report["written"], report["songs"], report["kept"], report["failed"]), (3, 4, 0, []), "the report")
        expect_equal([(entry["name"], entry["file"], entry["songs"], entry["leftOut"], entry["result"]) for entry in report["lists"]],
                     [("Inside", "Folder/Inside.m3u8", 2, 5, "written"), ("Music", "Music.m3u8", 2, 0, "written"),
                      ("Empty", "Empty.m3u8", 0, 0, "written")], "the report's lists")
        expect_equal([entry["status"] for entry in report["leftOut"]], ["missing", "remote", "remote", "none", "missing"], "reasons")

        for wrong in (("export",), ("export", "-o", ""), ("export", "-o", "-"), ("export", "-o", "x", "--format", "pls"),
                      ("export", "-o", "x", "--all", "Music"), ("export", "-o", "x", "--format", "json", "--keep-missing"),
                      ("export", "-o", "x", "--format", "sqlite", "Music"), ("export", "-o", "x", "--relative-to", "")):
            outcome = case.run(*wrong)
            expect(outcome.returncode == 2 and "tavrel help export" in outcome.stderr, "wrong usage is told", wrong, outcome.stderr)
        case.export("-o", "x", "Musik", code=1)
        (case.folder / "file").touch()
        expect("cannot make" in case.export("-o", "file", code=1).stderr, "a folder that cannot be made is told")
        case.playlists = case.playlists[:1]
        expect("--all exports" in case.export("-o", "x", code=1).stderr, "no lists of one's own")


def limited():
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (20000, 20000))


def check_interruption(tavrel, _document):
    """Whenever the program is ended, files are complete or absent."""
    with Case(tavrel) as case:
        ids = [case.add_track(f"song {i}", Location=f"file:///none/{i}.mp3", Comments="c" * 100) for i in range(3000)]
        for number in range(12):
            case.add_list(f"list {number}", ids)
        command = [tavrel, "-l", "library.xml", "export", "--keep-missing", "--format"]
        case.export("-o", "whole", "--format", "xspf", "--keep-missing")
        library = case.folder / "library.xml"
        for form, signals in (("xspf", (signal.SIGINT, signal.SIGTERM)), ("sqlite", (signal.SIGINT, signal.SIGHUP))):
            if form == "sqlite":
                command.remove("--keep-missing")
            for number in signals:
                out = case.folder / f"{form} {number}"
                out.mkdir()
                with subprocess.Popen([*command, form, "-o", str(out)], cwd=case.folder, stdout=subprocess.DEVNULL,
                                      stderr=subprocess.DEVNULL, env={"HOME": str(case.folder)}) as process:
                    while process.poll() is None and not any(out.iterdir()):
                        pass
                    process.send_signal(number)
                expect(process.returncode in (0, -number), f"it ends by the signal, not with {process.returncode}")
                for path in out.iterdir():
                    same = form == "xspf" and path.read_bytes() == (case.folder / "whole" / path.name).read_bytes()
                    expect(same or (form == "sqlite" and process.returncode == 0), "a file is complete", path)
        for form, file in (("xspf", "list 0.xspf"), ("sqlite", "full.sqlite")):
            target = "full" if form == "xspf" else "full/full.sqlite"
            outcome = case.run("export", "-o", target, "--format", form, *(["--keep-missing"] if form == "xspf" else []),
                               preexec_fn=limited, library=library)
            expect(outcome.returncode == 1 and f"cannot write full/{file}" in outcome.stderr, "a limit is an error",
                   outcome.returncode, outcome.stderr[-300:])
            expect_equal(case.files("full"), [], "nothing half written is left")


def check_golden(tavrel, _document):
    """What the sample gives."""
    with Case(tavrel) as case:
        for form in PLAYER_FORMATS:
            case.export("Encores", "On the Air", "שבת", "-o", "out", "--format", form, "--paths", "raw", library=SAMPLE)
            for path in case.files():
                if path.endswith(form):
                    golden = HERE / "exports" / path
                    if "TAVREL_WRITE_GOLDEN" in os.environ:
                        golden.write_bytes((case.folder / "out" / path).read_bytes())
                    expect_equal((case.folder / "out" / path).read_bytes(), golden.read_bytes(), path)
        for form in (*PLAYER_FORMATS, "json", "csv"):
            case.export("-o", f"every {form}", "--format", form, "--all", library=SAMPLE, code=0)
        validate_xspf(Path(case.folder, "every xspf").rglob("*.xspf"))


# ---- The database --------------------------------------------------------------------------------

FIELDS_OF_FILE = {"text": str, "number": int, "seconds": lambda time: time / 1000, "flag": bool,
                  "date": lambda date: date.strftime("%Y-%m-%dT%H:%M:%SZ")}


def code_blocks(document, language):
    return re.findall(rf"^```{language}\n(.*?)^```$", document.split("## The database", 1)[1], re.MULTILINE | re.DOTALL)


def schema_of(database):
    return [re.sub(r"\s+", " ", row[0]) for row in
            database.execute("SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY rowid")]


def compare_database(database, library, fields):
    """Every property of the library file, as Python reads it, with what stands in the database."""
    tracks = list(library["Tracks"].values())
    columns = {name: database.execute(f"SELECT {name} FROM tracks ORDER BY song").fetchall() for name, _, _ in fields}
    for name, key, kind in fields:
        if key:
            wanted = [(FIELDS_OF_FILE[kind](track[key]) if key in track else False if kind == "flag" else None,) for track in tracks]
            expect_equal(columns[name], wanted, f"the column {name}")
    known = {key for _, key, _ in fields}
    wanted = {(number, key, value) for number, track in enumerate(tracks) for key, value in track.items()
              if key not in known and isinstance(value, (int, str, float))}
    found = set(database.execute("SELECT song, key, value FROM properties WHERE type IN ('integer', 'string', 'real', 'true', 'false')"))
    expect_equal(sorted(found, key=str), sorted(wanted, key=str), "the other properties")
    numbers = {track["Track ID"]: number for number, track in reversed(list(enumerate(tracks)))}
    lists = {}
    for playlist in library["Playlists"]:
        items = playlist.get("Playlist Items", ())
        lists[playlist.get("Playlist Persistent ID")] = (playlist.get("Name"), playlist.get("Parent Persistent ID"),
                                                         [numbers[item["Track ID"]] for item in items if item["Track ID"] in numbers])
    names = {identity: (name, parent) for identity, name, parent in database.execute(
        "SELECT child.id, child.name, parent.id FROM playlists AS child LEFT JOIN playlists AS parent ON child.parent = parent.list")}
    visible = {playlist.get("Playlist Persistent ID") for playlist in library["Playlists"] if playlist.get("Visible", True)}
    expect_equal(set(names), visible, "the playlists")
    for identity, (name, parent) in names.items():
        items = database.execute("SELECT song FROM items JOIN playlists USING (list) WHERE id = ? ORDER BY position", (identity,))
        expect_equal((name, parent, [row[0] for row in items]), lists.get(identity), f"the list {identity}")


def check_database(tavrel, document):
    """One database of the whole library, that answers what the document asks."""
    fields = [(name, key.strip(), kind) for name, key, kind in
              re.findall(r"^\| `(\w+)` \|([^|]*)\| (\w+) \|", document, re.MULTILINE)]
    with Case(tavrel) as case:
        outcome = case.export("-o", "sample.sqlite", "--format", "sqlite", library=SAMPLE)
        expect(re.fullmatch(r"\d+ tracks, \d+ playlists with \d+ songs written to sample.sqlite\n", outcome.stdout), "the end", outcome.stdout)
        source = SAMPLE / "Music/iTunes/iTunes Music Library.xml"
        with sqlite3.connect(case.folder / "sample.sqlite") as database:
            compare_database(database, plistlib.loads(source.read_bytes()), fields)
            expect_equal(database.execute("PRAGMA integrity_check").fetchall(), [("ok",)], "the database is whole")
            expect_equal(database.execute("PRAGMA foreign_key_check").fetchall(), [], "what is referred to is there")
            described = sqlite3.connect(":memory:")
            described.executescript(code_blocks(document, "sql")[0])
            expect_equal(schema_of(database), schema_of(described), "the schema is the document's")
        queries = code_blocks(document, "sql")[1:]
        expect_equal(len(queries), 5, "five queries")
        for query in queries:
            answer = subprocess.run(["sqlite3", "-bail", str(case.folder / "sample.sqlite"), query], text=True,
                                    stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            expect(answer.returncode == 0 and answer.stdout.count("\n") >= 1, "a query of the document has an answer", query, answer.stdout)

        for number, text in enumerate(HOSTILE_TEXTS):
            case.add_track(text, b"%d.mp3" % number, Comments=text, Rating=20, Gain=0.25, Purchased=True, Mood=text,
                           Data=b"x", Several=[1])
        case.tracks["1"].update({"Year": "many", "Total Time": -1, "Size": 2 ** 40})
        for text in HOSTILE_TEXTS:
            case.add_list(text, [1, 2, 1, 99])
        folder = case.folder / "folder"
        folder.mkdir()
        case.export("-o", "folder", "--format", "sqlite")
        expect_equal(os.listdir(folder), ["library.sqlite"], "in a folder the database has a name")
        with sqlite3.connect(folder / "library.sqlite") as database:
            expect_equal([row[0] for row in database.execute("SELECT name FROM tracks ORDER BY song")], list(HOSTILE_TEXTS), "texts")
            rows = database.execute("SELECT key, type, value, typeof(value) FROM properties WHERE song = 1 ORDER BY key").fetchall()
            expect_equal(rows, [("Data", "data", None, "null"), ("Gain", "real", 0.25, "real"), ("Mood", "string", "", "text"),
                                ("Purchased", "true", 1, "integer"), ("Several", "array", None, "null"),
                                ("Track ID", "integer", 2, "integer")], "other properties have their types")
            expect_equal(database.execute("SELECT year, seconds, size, path FROM tracks WHERE song = 0").fetchone(),
                         (None, -0.001, 2 ** 40, os.fsdecode(case.path_of(1))), "values of other types are none")
            expect_equal(database.execute("SELECT position, song FROM items JOIN playlists USING (list) WHERE name = 'plain'").fetchall(), [(0, 0), (1, 1), (2, 0)], "items")
        before = (folder / "library.sqlite").read_bytes()
        expect("is there already; --force" in case.export("-o", "folder/", "--format", "sqlite", code=1).stderr, "a database is kept")
        case.export("-o", "folder", "--format", "sqlite", "--force")
        expect_equal((folder / "library.sqlite").read_bytes(), before, "the same again is the same")
        report = json.loads(case.export("-o", "new/x.db", "--format", "sqlite", "-n", "--json").stdout)
        expect_equal(report, {"file": "new/x.db", "format": "sqlite", "dryRun": True, "tracks": len(HOSTILE_TEXTS),
                              "playlists": len(HOSTILE_TEXTS), "items": 3 * len(HOSTILE_TEXTS)}, "a dry run's report")
        expect(not (case.folder / "new").exists(), "a dry run makes no folder")


def main():
    tavrel, document, part = sys.argv[1:]
    tavrel = os.path.abspath(tavrel)
    globals()[f"check_{part}"](tavrel, Path(document).read_text(encoding="utf-8"))
    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
