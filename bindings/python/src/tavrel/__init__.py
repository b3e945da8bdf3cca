"""An iTunes library, read through libTavrel: playlists, songs, covers, and every property of each.

    with tavrel.Library(file="Library.xml") as library:
        for song in library.search("dvorak"):
            print(song.name, song.artist)
"""
from ._artwork import Picture
from ._errors import AlreadyOpenError, ClosedError, LibraryError
from ._functions import VERSION as __version__
from ._library import Library, Playlist, Playlists
from ._properties import Properties, PropertyValue
from ._songs import Song, SongFields, Songs

__all__ = [
    "AlreadyOpenError",
    "ClosedError",
    "Library",
    "LibraryError",
    "Picture",
    "Playlist",
    "Playlists",
    "Properties",
    "PropertyValue",
    "Song",
    "SongFields",
    "Songs",
    "__version__",
]
