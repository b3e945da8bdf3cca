"""Every property that the library file has of a song, of a playlist or of itself."""
import re
from datetime import datetime, timezone
from typing import Any, Callable, Dict, Iterator, Mapping, Optional, Union

from ._functions import PropertyVisitor
from ._session import Session, call_back, decode
from ._shared_library import SharedLibrary

PropertyValue = Union[str, int, float, bool, datetime, None]

_INTEGER = re.compile(r"[+-]?[0-9]{1,30}")


def _value(text: Optional[str], kind: str) -> PropertyValue:
    """Numbers and dates that are none stay texts: a library file may say anything."""
    if text is None:
        return None
    if kind in ("true", "false"):
        return kind == "true"
    try:
        if kind == "integer" and _INTEGER.fullmatch(text):
            return int(text)
        if kind == "real":
            return float(text)
        if kind == "date":
            return datetime.strptime(text, "%Y-%m-%dT%H:%M:%SZ").replace(tzinfo=timezone.utc)
    except ValueError:
        pass
    return text


class Properties(Mapping[str, PropertyValue]):
    """{key: value}, in the file's order; of equal keys the first counts. Read once, when first looked into.

    A string is a str, an integer an int, a real a float, true and false are bools, and a date is a datetime in
    UTC. What has no text is None: data, arrays, dictionaries, and elements without content.
    """

    def __init__(self, session: Session, visit: Callable[[SharedLibrary, Any], Any]) -> None:
        """visit(functions, visitor) visits the dictionary."""
        self._session = session
        self._visit = visit
        self._values: Optional[Dict[str, PropertyValue]] = None

    def __getitem__(self, key: str) -> PropertyValue:
        return self._read()[key]

    def __iter__(self) -> Iterator[str]:
        return iter(self._read())

    def __len__(self) -> int:
        return len(self._read())

    def __repr__(self) -> str:
        if self._session.is_closed and self._values is None:
            return "Properties(closed)"
        return f"Properties({self._read()})"

    def _read(self) -> Dict[str, PropertyValue]:
        if self._values is None:
            values: Dict[str, PropertyValue] = {}

            def visitor(key: bytes, text: Optional[bytes], kind: bytes, _: object) -> int:
                values.setdefault(decode(key), _value(None if text is None else decode(text), decode(kind)))
                return 1

            with self._session as functions:
                call_back(lambda callback: self._visit(functions, callback), PropertyVisitor, visitor)
            self._values = values
        return self._values
