"""cover.py TEXT FILE: lists the user's playlists, finds a song, and writes its cover to a file."""
import sys

import tavrel

if len(sys.argv) != 3:
    print("usage: cover.py TEXT FILE", file=sys.stderr)
    sys.exit(2)
text, path = sys.argv[1:]

with tavrel.Library() as library:
    for playlist in library.playlists:
        print(f"{len(playlist.songs):5}  {playlist.name}")

    for song in library.search(text):
        covers = [picture for picture in song.artwork() if picture.format in ("png", "jpeg")]
        if covers:
            break
    else:
        sys.exit(f"no song with a cover holds {text}")

    print(f"{song.name} by {song.artist}")
    cover = covers[0]
    with open(path, "wb") as file:
        file.write(cover.data)
    print(f"{cover.format}, {cover.width} x {cover.height}, {len(cover.data)} bytes")
