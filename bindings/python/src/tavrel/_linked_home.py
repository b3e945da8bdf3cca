"""A home folder made of links, so that the library can read a file that lies anywhere, under any name."""
import os
import stat
import tempfile
from typing import List, Tuple

_FOLDER = "Music/iTunes"
_LIBRARY = _FOLDER + "/iTunes Music Library.xml"
_NEIGHBOURS = ("Album Artwork", "iTunes Media")


class LinkedHome:
    """A new folder below that for temporary files, which its owner alone may enter:

        Music/iTunes/iTunes Music Library.xml -> the library file
                     Album Artwork            -> the file's neighbour of that name, if any
                     iTunes Media             -> likewise

    remove() removes what was made here and nothing else, and follows nothing that others put in its place.
    """

    def __init__(self, file: str) -> None:
        """file: need not be there."""
        self._process = os.getpid()
        file = os.path.join(os.getcwd(), file)
        self._user_folder = os.path.dirname(file)
        self.folder = os.path.join(os.getcwd(), tempfile.mkdtemp(prefix="tavrel-"))
        self._identity = self._identify(os.stat(self.folder, follow_symlinks=False))
        self._made: List[str] = []
        try:
            self._make_folder("Music")
            self._make_folder(_FOLDER)
            self._make_link(_LIBRARY, file)
            for name in _NEIGHBOURS:
                neighbour = os.path.join(self._user_folder, name)
                if os.path.exists(neighbour):
                    self._make_link(_FOLDER + "/" + name, neighbour)
        except BaseException:
            self.remove()
            raise

    def user_path(self, path: str) -> str:
        """The same file without this folder in its path."""
        inside = os.path.join(self.folder, _FOLDER, "")
        return os.path.join(self._user_folder, path[len(inside):]) if path.startswith(inside) else path

    def remove(self) -> None:
        if os.getpid() != self._process:  # a fork's child: the folder is its parent's
            return
        try:
            folder = os.open(self.folder, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW | os.O_CLOEXEC)
        except OSError:
            return
        try:
            if self._identify(os.fstat(folder)) != self._identity:
                return
            while self._made:
                self._remove_entry(self._made.pop(), folder)
        finally:
            os.close(folder)
        try:
            os.rmdir(self.folder)
        except OSError:
            pass

    @staticmethod
    def _identify(state: os.stat_result) -> Tuple[int, int]:
        return state.st_dev, state.st_ino

    @staticmethod
    def _remove_entry(name: str, folder: int) -> None:
        try:
            is_folder = stat.S_ISDIR(os.stat(name, dir_fd=folder, follow_symlinks=False).st_mode)
            (os.rmdir if is_folder else os.unlink)(name, dir_fd=folder)
        except OSError:
            pass

    def _make_folder(self, name: str) -> None:
        os.mkdir(os.path.join(self.folder, name), 0o700)
        self._made.append(name)

    def _make_link(self, name: str, target: str) -> None:
        os.symlink(target, os.path.join(self.folder, name))
        self._made.append(name)
