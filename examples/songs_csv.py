import csv
import sys

import tavrel

with tavrel.Library(file=sys.argv[1]) as library:
    table = csv.writer(sys.stdout)
    table.writerow(["name", "artist", "album", "milliseconds", "plays", "rating"])
    for song in library.songs:
        table.writerow([song.name, song.artist, song.album, song.total_time, song.play_count,
                        song.properties.get("Rating")])
