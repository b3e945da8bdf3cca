"""What goes wrong beside the errors of Python's own that fit: FileNotFoundError, TypeError, ..."""


class LibraryError(Exception):
    """The library cannot be found, opened or read, or did not do what it was asked for."""

    __module__ = "tavrel"  # as programs know it


class AlreadyOpenError(LibraryError):
    """A library is open already in this process, which can have one at a time."""

    __module__ = "tavrel"


class ClosedError(LibraryError):
    """The library is closed; what was read before stays, what was not cannot be read any more."""

    __module__ = "tavrel"
