"""The library, its playlists, and the search."""
import ctypes
import os
from functools import cached_property
from typing import Dict, Generator, List, Optional, Type, Union

from ._errors import LibraryError
from ._functions import FindSongsCallback, PlaylistRecord, SongInfo
from ._properties import Properties
from ._session import Session, call_back, decode
from ._songs import OnDemand, Song, Songs

Path = Union[str, "os.PathLike[str]"]

_GROUPS = (0, 1, 2)


class Playlist:
    """A playlist of one of the three groups: 0 the library's own, 1 Genius, 2 all others."""

    def __init__(self, session: Session, group: int, index: int) -> None:
        self._session = session
        self._group = group
        self._index = index
        with session as functions:
            self._handle: PlaylistRecord = functions.OpenPlaylist(group, index)

    @property
    def group(self) -> int:
        return self._group

    @property
    def name(self) -> Optional[str]:
        with self._session as functions:
            size = functions.GetPlaylistName(self._group, self._index, None, 0)
            buffer = ctypes.create_string_buffer(size)
            functions.GetPlaylistName(self._group, self._index, buffer, size)
        return decode(buffer.value) if size else None

    @property
    def kind(self) -> int:
        """The file's "Distinguished Kind": 4 music, 2 films, 26 Genius, ...; 0 for an ordinary playlist."""
        with self._session as functions:
            return int(functions.GetPlaylistKind(self._handle))

    @property
    def songs(self) -> Songs:
        return Songs(self._session, self._handle)

    @cached_property
    def properties(self) -> Properties:
        """Every property that the file has of it: "Playlist Persistent ID", "Folder", ..."""
        handle = self._handle
        return Properties(self._session, lambda functions, visitor: functions.VisitPlaylistProperties(
            handle, visitor, None))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Playlist) and (self._session, self._group, self._index) == (
            other._session, other._group, other._index)

    def __hash__(self) -> int:
        return hash((self._session, self._group, self._index))

    def __repr__(self) -> str:
        if self._session.is_closed:
            return "Playlist(closed)"
        return f"Playlist({self.name!r}, {len(self.songs)} songs)"


class Playlists(OnDemand[Playlist]):
    """The playlists of all groups, group after group."""

    def __init__(self, session: Session) -> None:
        def counts() -> List[int]:
            with session as functions:
                return [int(functions.GetPlaylistCount(group)) for group in _GROUPS]

        def item(index: int) -> Playlist:
            for group, count in zip(_GROUPS, counts()):
                if index < count:
                    return Playlist(session, group, index)
                index -= count
            raise IndexError(index)

        super().__init__(lambda: sum(counts()), item)


class Library:
    """An open library; a context manager that closes it. One at a time can be open in a process.

    Playlists, songs and properties belong to it: what was not read before it is closed raises ClosedError then.
    All threads may use it; their calls wait for each other.
    """

    def __init__(self, *, home: Optional[Path] = None, file: Optional[Path] = None) -> None:
        """home: the folder below which Music/iTunes/iTunes Music Library.xml lies; the user's own if neither is
        given. file: a library file under any name; covers are looked for in the folder "Album Artwork" beside it.

        $HOME is changed while the library loads, for the whole process, and put back. For `file` there is a folder
        of links among the temporary files until the library is closed.
        FileNotFoundError, IsADirectoryError: there is no such file. LibraryError: it cannot be read, or libTavrel
        cannot be loaded. AlreadyOpenError: a library is open.
        """
        if home is not None and file is not None:
            raise TypeError("a library has a home or a file, not both")
        self._session = Session(None if home is None else os.fspath(home), None if file is None else os.fspath(file))
        with self._session as functions:
            self._all: PlaylistRecord = functions.OpenAllSongs()

    def __enter__(self) -> "Library":
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], error: object, trace: object) -> None:
        self.close()

    def close(self) -> None:
        """Unloads the library and gives everything back. A second time does nothing."""
        self._session.close()

    @property
    def playlists(self) -> Playlists:
        return Playlists(self._session)

    @property
    def songs(self) -> Songs:
        """All songs of the file, also those that no playlist holds."""
        return Songs(self._session, self._all)

    @cached_property
    def properties(self) -> Properties:
        """Every property of the file itself: "Library Persistent ID", "Music Folder", "Date", ..."""
        return Properties(self._session, lambda functions, visitor: functions.VisitLibraryProperties(visitor, None))

    def search(self, text: Optional[str] = None, *, name: Optional[str] = None, artist: Optional[str] = None,
               album: Optional[str] = None) -> Generator[Song, None, None]:
        """The songs that hold `name` in their name, or `artist` in their artist, or `album` in their album; `text`
        stands for each that is not given. Regardless of case, and of how accented characters are composed.

        The library searches only as far as songs are asked for: up to the first, and when that is not enough, from
        the start up to four times as many as were had, and so on.
        """
        terms = {"name": name, "artist": artist, "album": album}
        wanted = {key: _term(text if term is None else term) for key, term in terms.items()}
        if not any(term is not None for term in wanted.values()):
            raise TypeError("there is nothing to search for: give a text, a name, an artist or an album")
        with self._session:
            return self._matches(wanted)

    def append_ringtone(self, path: Path) -> None:
        """Adds a ringtone to iTunes, by a script that osascript runs; LibraryError when that fails. `path` goes into
        the script as it is: a double quote, a backslash or a line break in it changes the script."""
        with self._session as functions:
            result = functions.AppendRingtone(os.fsencode(path))
        if result != 0:
            raise LibraryError(f"{os.fspath(path)}: it could not be added; standard error says why")

    def __repr__(self) -> str:
        return "Library(closed)" if self._session.is_closed else f"Library({len(self.songs)} songs)"

    def _matches(self, terms: Dict[str, Optional[bytes]]) -> Generator[Song, None, None]:
        had = 0
        while True:
            room = 3 * had or 1
            found = self._find(terms, had, room)
            yield from (Song(self._session, self._all, index) for index in found)
            if len(found) < room:
                return
            had += room

    def _find(self, terms: Dict[str, Optional[bytes]], skipped: int, room: int) -> List[int]:
        """The positions of up to `room` matches behind those that are skipped; with the last the search ends."""
        found: List[int] = []
        left = skipped

        def callback(index: int, _: object) -> int:
            nonlocal left
            if left > 0:
                left -= 1
                return 1
            found.append(index)
            return 1 if len(found) < room else 0

        info = SongInfo(**terms)
        with self._session as functions:
            call_back(lambda pointer: functions.FindSongs(info, pointer, None), FindSongsCallback, callback)
        return found


def _term(text: Optional[str]) -> Optional[bytes]:
    if text is not None and "\0" in text:
        raise ValueError("a term holds no NUL character")
    return None if text is None else text.encode("utf-8", "surrogatepass")
