"""The one open library of the process, and the calls into it."""
import errno
import os
import threading
import weakref
from typing import Any, Callable, List, Optional, Tuple, Type

from ._errors import AlreadyOpenError, ClosedError, LibraryError
from ._linked_home import LinkedHome
from ._shared_library import SharedLibrary

_LIBRARY_IN_HOME = "Music/iTunes/iTunes Music Library.xml"

# The library serves one thread at a time, and $HOME is the whole process's.
_lock = threading.RLock()
_is_open = False


class Session:
    """From opening to closing. `with session as functions` makes calls, one thread after the other. Who forgets to
    close it has it closed when nothing refers to it any more, and at the end of the process."""

    def __init__(self, home: Optional[str], file: Optional[str]) -> None:
        """home, file: at most one of them; with none, the library of the user's own home."""
        global _is_open
        self._calls = 0
        with _lock:
            if _is_open:
                raise AlreadyOpenError("a library is open in this process, which can have one at a time: close it")
            self._functions, self._linked = _load(home, file)
            _is_open = True
            self._release = weakref.finalize(self, _release, self._functions, self._linked)
            if not self._functions.OpenAllSongs():
                self.close()
                path = file or os.path.join(home or os.path.expanduser("~"), _LIBRARY_IN_HOME)
                _require_file(path)
                raise LibraryError(f"{path}: this is no library file that can be read; standard error says why")

    def __enter__(self) -> SharedLibrary:
        _lock.acquire()
        if self.is_closed:
            _lock.release()
            raise ClosedError("the library is closed")
        self._calls += 1
        return self._functions

    def __exit__(self, kind: Optional[Type[BaseException]], error: object, trace: object) -> None:
        self._calls -= 1
        _lock.release()

    @property
    def is_closed(self) -> bool:
        return not self._release.alive

    def user_path(self, path: str) -> str:
        """The path as the user knows it, of one that the library gave."""
        return self._linked.user_path(path) if self._linked else path

    def close(self) -> None:
        """Unloads the library; every handle is invalid then. A second time does nothing."""
        with _lock:
            if self._calls > 0:  # a signal's handler may run within a callback
                raise LibraryError("the library cannot be closed during a call of its own")
            self._release()


def _load(home: Optional[str], file: Optional[str]) -> Tuple[SharedLibrary, Optional[LinkedHome]]:
    if file is None:
        return SharedLibrary(None if home is None else os.path.join(os.getcwd(), home)), None
    _require_file(file)
    linked = LinkedHome(file)
    try:
        return SharedLibrary(linked.folder), linked
    except BaseException:
        linked.remove()
        raise


def _release(functions: SharedLibrary, linked: Optional[LinkedHome]) -> None:
    global _is_open
    with _lock:
        try:
            functions.unload()
        finally:
            _is_open = False
            if linked:
                linked.remove()


def _require_file(path: str) -> None:
    if not os.path.exists(path):
        raise FileNotFoundError(errno.ENOENT, os.strerror(errno.ENOENT), path)
    if os.path.isdir(path):
        raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), path)


def call_back(call: Callable[[Any], Any], callback_type: Any, body: Callable[..., int]) -> None:
    """Runs call(callback). What `body` raises must not leave a callback: it ends the call, and is raised then."""
    errors: List[BaseException] = []

    def guarded(*arguments: Any) -> int:
        try:
            return body(*arguments)
        except BaseException as error:
            errors.append(error)
            return 0

    call(callback_type(guarded))
    if errors:
        raise errors[0]


def decode(text: bytes) -> str:
    """A text of the library file."""
    return text.decode("utf-8", "replace")
