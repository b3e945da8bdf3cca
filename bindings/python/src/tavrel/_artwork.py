"""Covers, out of iTunes' artwork cache."""
import ctypes
from typing import List, NamedTuple, Optional

from ._functions import ArtworkHandle, ArtworkInfo
from ._shared_library import SharedLibrary

_FORMATS = ("png", "jpeg", "argb", "bgra")

# A larger picture is a damaged file's claim, and not worth the memory.
_LARGEST = 256 << 20


class Picture(NamedTuple):
    """format: "png" or "jpeg", whose data is such a file; "argb" or "bgra": raw pixels of four bytes in that order,
    in rows from the top. width, height: in pixels, as the cache file states them."""

    format: str
    width: int
    height: int
    data: bytes

    def __repr__(self) -> str:
        return f"Picture({self.format}, {self.width} x {self.height}, {len(self.data)} bytes)"


def read_pictures(functions: SharedLibrary, handle: ArtworkHandle) -> List[Picture]:
    """The whole pictures, in the cache file's order. Closes the handle, which may be null."""
    if not handle:
        return []
    try:
        count = int(functions.GetArtworkCount(handle))
        pictures = [_read_picture(functions, handle, index) for index in range(count)]
    finally:
        functions.CloseArtwork(handle)
    return [picture for picture in pictures if picture]


def _read_picture(functions: SharedLibrary, handle: ArtworkHandle, index: int) -> Optional[Picture]:
    info = ArtworkInfo()
    functions.GetArtworkInfo(handle, index, info)
    size = info.dataSize
    if not 0 < size <= _LARGEST:
        return None
    data = (ctypes.c_uint8 * size)()
    info.data = ctypes.cast(data, ctypes.POINTER(ctypes.c_uint8))
    # A file that was cut short leaves the rest of the buffer as it was: the last byte shows it.
    for before in (0x55, 0x2A):
        data[size - 1] = before
        info.dataSize = size
        functions.GetArtworkInfo(handle, index, info)
        if data[size - 1] != before:
            return Picture(_FORMATS[info.format], info.width, info.height, bytes(data))
    return None
