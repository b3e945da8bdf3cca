"""The shared library: where it is, and loading it with the home folder that it is to read below."""
import ctypes
import os
import sys
from contextlib import contextmanager
from typing import TYPE_CHECKING, Any, Callable, Iterator, Optional

from ._errors import AlreadyOpenError, LibraryError
from ._functions import FUNCTIONS, VERSION

_MAJOR = VERSION.split(".")[0]
FILE_NAME = f"libTavrel.{_MAJOR}.dylib" if sys.platform == "darwin" else f"libTavrel.so.{_MAJOR}"


def find() -> str:
    """What to load: the file that $TAVREL_LIBRARY_PATH names, or that lies in the folder that it names;
    else the file beside this package; else the loader looks for the name in its usual places."""
    chosen = os.environ.get("TAVREL_LIBRARY_PATH")
    if chosen:
        return os.path.join(chosen, FILE_NAME) if os.path.isdir(chosen) else chosen
    beside = os.path.join(os.path.dirname(os.path.abspath(__file__)), FILE_NAME)
    return beside if os.path.exists(beside) else FILE_NAME


@contextmanager
def _home_variable(home: Optional[str]) -> Iterator[None]:
    """$HOME for as long as the library needs it, which is its loading. os.environ also sets it for C."""
    former = os.environ.get("HOME")
    if home is not None:
        os.environ["HOME"] = home
    try:
        yield
    finally:
        if home is not None:
            if former is None:
                del os.environ["HOME"]
            else:
                os.environ["HOME"] = former


def _close(handle: int) -> None:
    close = ctypes.CDLL(None).dlclose
    close.argtypes = [ctypes.c_void_p]
    close(handle)


def _refuse_if_loaded(path: str) -> None:
    """Loading a library that is there already reads nothing: it would answer for somebody else's home."""
    try:
        loaded = ctypes.CDLL(path, mode=os.RTLD_NOLOAD)
    except OSError:
        return
    _close(loaded._handle)
    raise AlreadyOpenError(f"{path} is loaded in this process already, by something other than this package")


class SharedLibrary:
    """The loaded library, each of its functions an attribute. One thread at a time may call them."""

    if TYPE_CHECKING:
        def __getattr__(self, name: str) -> Callable[..., Any]: ...

    def __init__(self, home: Optional[str]) -> None:
        """home: an absolute path; None for the user's own."""
        path = find()
        _refuse_if_loaded(path)
        try:
            with _home_variable(home):
                self._library = ctypes.CDLL(path)
        except OSError as error:
            raise LibraryError(f"cannot load libTavrel: {error}; TAVREL_LIBRARY_PATH can say where it is") from None
        try:
            for name, (result, arguments) in FUNCTIONS.items():
                function = getattr(self._library, name)
                function.restype, function.argtypes = result, arguments
                setattr(self, name, function)
        except AttributeError:
            self.unload()
            raise LibraryError(f"{path} has no function {name}: it is of another version") from None

    def unload(self) -> None:
        """Once. No function may be called afterwards."""
        _close(self._library._handle)
