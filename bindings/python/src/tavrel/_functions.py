"""The library's interface as its C header has it: records, callbacks and functions.

A test compares everything here with the header.
"""
import ctypes
from typing import Any, Dict, List, Tuple

VERSION = "1.0.0"

Int = ctypes.c_int32
Text = ctypes.c_char_p


class PlaylistRecord(ctypes.c_void_p):
    """A playlist's handle; false when it is null."""


class ArtworkHandle(ctypes.c_void_p):
    """An artwork handle; false when it is null."""


class SongInfo(ctypes.Structure):
    _fields_ = [
        ("name", Text),
        ("nameSize", Int),
        ("location", Text),
        ("locationSize", Int),
        ("totalTime", Int),
        ("artist", Text),
        ("artistSize", Int),
        ("album", Text),
        ("albumSize", Int),
        ("genre", Text),
        ("genreSize", Int),
        ("reserved", Int),
        ("playCount", Int),
        ("trackNumber", Int),
        ("movie", Int),
    ]


class ArtworkInfo(ctypes.Structure):
    _fields_ = [
        ("format", Int),
        ("width", Int),
        ("height", Int),
        ("data", ctypes.POINTER(ctypes.c_uint8)),
        ("dataSize", Int),
    ]


SearchSongCallback = ctypes.CFUNCTYPE(Int, PlaylistRecord, Int, ctypes.c_void_p)
PropertyVisitor = ctypes.CFUNCTYPE(Int, Text, Text, Text, ctypes.c_void_p)
FindSongsCallback = ctypes.CFUNCTYPE(Int, Int, ctypes.c_void_p)

# {name: (result, arguments)}. A buffer is an argument as a text is: an array of characters will do.
FUNCTIONS: Dict[str, Tuple[Any, List[Any]]] = {
    "AgentInitializer": (Int, []),
    "AgentFinalizer": (Int, []),
    "GetPlaylistCount": (Int, [Int]),
    "OpenPlaylist": (PlaylistRecord, [Int, Int]),
    "ClosePlaylist": (Int, [PlaylistRecord]),
    "GetPlaylistName": (Int, [Int, Int, Text, Int]),
    "GetPlaylistKind": (Int, [PlaylistRecord]),
    "GetSongCount": (Int, [PlaylistRecord]),
    "GetSongInfo": (Int, [PlaylistRecord, Int, ctypes.POINTER(SongInfo)]),
    "OpenArtwork": (ArtworkHandle, [PlaylistRecord, Int]),
    "GetArtworkCount": (Int, [ArtworkHandle]),
    "GetArtworkInfo": (Int, [ArtworkHandle, Int, ctypes.POINTER(ArtworkInfo)]),
    "CloseArtwork": (None, [ArtworkHandle]),
    "AppendRingtone": (Int, [Text]),
    "SearchSong": (Int, [ctypes.POINTER(SongInfo), SearchSongCallback, ctypes.c_void_p]),
    "OpenAllSongs": (PlaylistRecord, []),
    "OpenArtworkAny": (ArtworkHandle, [PlaylistRecord, Int]),
    "OpenArtworkFile": (ArtworkHandle, [Text]),
    "GetSongProperty": (Int, [PlaylistRecord, Int, Text, Text, Int]),
    "GetPlaylistProperty": (Int, [PlaylistRecord, Text, Text, Int]),
    "GetLibraryProperty": (Int, [Text, Text, Int]),
    "VisitSongProperties": (Int, [PlaylistRecord, Int, PropertyVisitor, ctypes.c_void_p]),
    "VisitPlaylistProperties": (Int, [PlaylistRecord, PropertyVisitor, ctypes.c_void_p]),
    "VisitLibraryProperties": (Int, [PropertyVisitor, ctypes.c_void_p]),
    "FindSongs": (Int, [ctypes.POINTER(SongInfo), FindSongsCallback, ctypes.c_void_p]),
}
