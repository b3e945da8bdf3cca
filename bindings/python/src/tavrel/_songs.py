"""Songs, and the sequences that they stand in."""
import ctypes
import os
from functools import cached_property
from typing import Any, Callable, Iterator, List, NamedTuple, Optional, Sequence, TypeVar, Union, overload

from ._artwork import Picture, read_pictures
from ._functions import PlaylistRecord, SongInfo
from ._properties import Properties
from ._session import Session, decode

Item = TypeVar("Item")


class SongFields(NamedTuple):
    """A song's fields, free of the library. None: the song has no such text."""

    name: Optional[str]
    artist: Optional[str]
    album: Optional[str]
    genre: Optional[str]
    location: Optional[str]  # the path of its file
    total_time: int  # in milliseconds
    play_count: int
    track_number: int
    is_movie: bool


class Song:
    """The song at a position of a playlist. Its fields are read when the first of them is asked for."""

    def __init__(self, session: Session, playlist: PlaylistRecord, index: int) -> None:
        self._session = session
        self._playlist = playlist
        self._index = index
        self._fields: Optional[SongFields] = None

    @property
    def fields(self) -> SongFields:
        """All of the fields below, to keep when the library is closed."""
        if self._fields is None:
            self._fields = _read_fields(self._session, self._playlist, self._index)
        return self._fields

    @property
    def index(self) -> int:
        """The position in the playlist by which this song was found."""
        return self._index

    @property
    def name(self) -> Optional[str]:
        return self.fields.name

    @property
    def artist(self) -> Optional[str]:
        return self.fields.artist

    @property
    def album(self) -> Optional[str]:
        return self.fields.album

    @property
    def genre(self) -> Optional[str]:
        return self.fields.genre

    @property
    def location(self) -> Optional[str]:
        """The path of its file, which need not be there."""
        return self.fields.location

    @property
    def total_time(self) -> int:
        """In milliseconds."""
        return self.fields.total_time

    @property
    def play_count(self) -> int:
        return self.fields.play_count

    @property
    def track_number(self) -> int:
        """The position on its disc, from 1; 0 when the file has none."""
        return self.fields.track_number

    @property
    def is_movie(self) -> bool:
        return self.fields.is_movie

    @cached_property
    def properties(self) -> Properties:
        """Every property that the file has of it: "Rating", "Composer", "Persistent ID", ..."""
        playlist, index = self._playlist, self._index
        return Properties(self._session, lambda functions, visitor: functions.VisitSongProperties(
            playlist, index, visitor, None))

    def artwork(self) -> List[Picture]:
        """Its pictures in the artwork cache, read now; none when it has no cover there."""
        with self._session as functions:
            return read_pictures(functions, functions.OpenArtworkAny(self._playlist, self._index))

    def __eq__(self, other: object) -> bool:
        """Whether it is the same position of the same playlist."""
        return isinstance(other, Song) and self._key() == other._key()

    def __hash__(self) -> int:
        return hash(self._key())

    def __repr__(self) -> str:
        if self._session.is_closed and self._fields is None:
            return "Song(closed)"
        return f"Song({self.name!r}, {self.artist!r})"

    def _key(self) -> Any:
        return self._session, self._playlist.value, self._index


def _read_fields(session: Session, playlist: PlaylistRecord, index: int) -> SongFields:
    info = SongInfo()
    with session as functions:
        functions.GetSongInfo(playlist, index, info)
        sizes = (info.nameSize, info.artistSize, info.albumSize, info.genreSize, info.locationSize)
        buffers = [ctypes.create_string_buffer(size) if size else None for size in sizes]
        info.name, info.artist, info.album, info.genre, info.location = (
            ctypes.cast(buffer, ctypes.c_char_p) if buffer else None for buffer in buffers)
        functions.GetSongInfo(playlist, index, info)
    texts = [None if buffer is None else buffer.value for buffer in buffers]
    name, artist, album, genre = (None if text is None else decode(text) for text in texts[:4])
    location = None if texts[4] is None else session.user_path(os.fsdecode(texts[4]))
    return SongFields(name, artist, album, genre, location, info.totalTime, info.playCount, info.trackNumber,
                      info.movie == 1)


class OnDemand(Sequence[Item]):
    """A sequence whose length and items are asked for when they are needed, and not kept."""

    def __init__(self, count: Callable[[], int], item: Callable[[int], Item]) -> None:
        self._count = count
        self._item = item

    def __len__(self) -> int:
        return self._count()

    @overload
    def __getitem__(self, index: int) -> Item: ...

    @overload
    def __getitem__(self, index: slice) -> List[Item]: ...

    def __getitem__(self, index: Union[int, slice]) -> Union[Item, List[Item]]:
        count = len(self)
        if isinstance(index, slice):
            return [self._item(position) for position in range(*index.indices(count))]
        position = index + count if index < 0 else index
        if not 0 <= position < count:
            raise IndexError(f"{index} is no position among {count}")
        return self._item(position)

    def __iter__(self) -> Iterator[Item]:
        return (self._item(position) for position in range(len(self)))


class Songs(OnDemand[Song]):
    """The songs of a playlist, in its order."""

    def __init__(self, session: Session, playlist: PlaylistRecord) -> None:
        def count() -> int:
            with session as functions:
                return int(functions.GetSongCount(playlist))

        super().__init__(count, lambda index: Song(session, playlist, index))
