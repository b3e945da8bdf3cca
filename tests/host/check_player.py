"""Whether real players find what `tavrel export` names, with real files under odd names: mpv plays M3U8 and M3U, and
MPD lists M3U8 and XSPF.

Usage: check_player.py TAVREL
"""
import os
import plistlib
import re
import subprocess
import sys
import tempfile
import time
import urllib.parse
import wave
from pathlib import Path

NAMES = ("plain.wav", "a_b/c-d.wav", "é.wav", "e\u0301 apart.wav", "#hash.wav", "100%25.wav", "a+b.wav", "日本/音.wav", "q'u\"o&t<e>].wav", "c:x.wav",
         "a\\b.wav", "two\nlines.wav", " blanks .wav ", "x;y?z.wav", "..dots.wav")


def make_library(folder):
    tracks = {}
    for number, name in enumerate(NAMES, 1):
        path = folder / "music" / name
        path.parent.mkdir(parents=True, exist_ok=True)
        with wave.open(str(path), "wb") as sound:
            sound.setparams((1, 1, 8000, 400, "NONE", ""))
            sound.writeframes(bytes([128]) * 400)
        tracks[str(number)] = {"Track ID": number, "Name": f"song {number}", "Total Time": 50,
                               "Location": "file://" + urllib.parse.quote(str(path))}
    playlists = [{"Name": "All", "Playlist Persistent ID": "1", "Playlist Items": [{"Track ID": n} for n in range(1, len(NAMES) + 1)]}]
    file = folder / "library.xml"
    file.write_bytes(plistlib.dumps({"Tracks": tracks, "Playlists": playlists}, sort_keys=False))
    return file


def in_mpd(name):
    """Whether MPD keeps a file of that name at all."""
    return "\n" not in name and name == name.strip()


def is_plain_url(name):
    """MPD takes the names in XSPF as they are, without their escapes."""
    return urllib.parse.quote(name) == name


class MusicServer:
    """MPD with the files of a folder, and playlists below them."""

    def __init__(self, folder):
        self.folder = folder
        self.environment = {**os.environ, "MPD_HOST": str(folder / "socket")}

    def __enter__(self):
        configuration = self.folder / "mpd.conf"
        configuration.write_text(f'music_directory "{self.folder}/music"\ndb_file "{self.folder}/files"\n'
                                 f'bind_to_address "{self.folder}/socket"\naudio_output {{\ntype "null"\nname "none"\n}}\n')
        self.process = subprocess.Popen(["mpd", "--no-daemon", "--stderr", str(configuration)], stderr=subprocess.DEVNULL)
        while not (self.folder / "socket").exists() and self.process.poll() is None:
            time.sleep(0.05)
        self.ask("update", "--wait")
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def ask(self, *arguments):
        return subprocess.run(["mpc", *arguments], env=self.environment, stdout=subprocess.PIPE, check=True).stdout.decode()

    def listed(self, playlist):
        self.ask("clear")
        self.ask("load", playlist)
        return self.ask("-f", "%file%", "playlist").splitlines()


def played(playlist):
    """The paths of the files that mpv has played to their ends, in their order."""
    outcome = subprocess.run(["mpv", "--no-config", "--ao=null", "--vo=null", "--untimed", "--msg-level=all=no,term-msg=info",
                              "--term-playing-msg=played ${=path}|", f"--playlist={playlist}"],
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
    text = outcome.stdout.decode(errors="replace")
    found = []
    for path in re.findall(r"played (.*?)\|", text, re.DOTALL):
        if path.startswith("file://"):
            path = urllib.parse.unquote(path[len("file://"):])
        found.append(os.path.normpath(os.path.join(playlist.parent, path)))
    return found, text


def main():
    (tavrel,) = sys.argv[1:]
    failures = []
    with tempfile.TemporaryDirectory() as name:
        folder = Path(os.path.realpath(name))
        library = make_library(folder)
        wanted = [str(folder / "music" / file) for file in NAMES]
        for form in ("m3u8", "m3u"):
            for options in ([], ["--relative-to", str(folder / "out")]):
                subprocess.run([tavrel, "-l", str(library), "export", "-o", str(folder / "out"), "--force", "--format", form, *options],
                               check=True, stdout=subprocess.DEVNULL)
                found, text = played(folder / "out" / f"All.{form}")
                if found != wanted:
                    failures.append(f"{form} {options}: played {found}\nand not {wanted}\n{text[:2000]}")
        for form in ("m3u8", "xspf"):
            subprocess.run([tavrel, "-l", str(library), "export", "-o", str(folder / "music/lists"), "--format", form],
                           check=True, stdout=subprocess.DEVNULL)
        with MusicServer(folder) as server:
            for form, is_listed in (("m3u8", in_mpd), ("xspf", is_plain_url)):
                found = server.listed(f"lists/All.{form}")
                expected = [name for name in NAMES if is_listed(name)]
                if found != expected:
                    failures.append(f"{form}: MPD lists {found}\nand not {expected}")
    print("\n".join(failures))
    print(f"figure: {len(NAMES)} files under odd names play from M3U8 and M3U, and MPD lists M3U8 and XSPF")
    return 1 if failures else 0


sys.exit(main())
