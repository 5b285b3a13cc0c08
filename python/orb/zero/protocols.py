"""What makes the host classes of collections collections of Python."""

from __future__ import annotations

import operator
from collections import abc

import tyve

TYPE_CHECKING = False  # the real one is slow to import
if TYPE_CHECKING:
    from typing import Any, Iterator


class Listing:
    """A collection: `size` and `values` are those of the host class."""

    def __len__(self: Any) -> int:
        return int(self.size)

    def __bool__(self: Any) -> bool:
        return tyve.Object.__bool__(self) and len(self) > 0

    def __iter__(self: Any) -> Iterator[Any]:
        return iter(self.values())

    def __contains__(self: Any, value: object) -> bool:
        return value in self.values()


class Places(Listing):
    """A collection in order, with `at` by the place. It may change while it is iterated over."""

    def __getitem__(self: Any, index: Any) -> Any:
        if isinstance(index, slice):
            return [self.at(place) for place in range(*index.indices(len(self)))]
        place = operator.index(index)
        if place < 0 and -place <= len(self):
            place += len(self)
        try:
            return self.at(place)
        except (TypeError, OverflowError) as error:  # no place could be that
            raise IndexError(index) from error

    def __iter__(self: Any) -> Iterator[Any]:
        return abc.Sequence.__iter__(self)

    def __reversed__(self: Any) -> Iterator[Any]:
        return abc.Sequence.__reversed__(self)

    def index(self: Any, value: object, *bounds: int) -> int:
        """The first place of a value. Raises ValueError when it is not there."""
        return abc.Sequence.index(self, value, *bounds)

    def count(self: Any, value: object) -> int:
        """How often a value is there."""
        return abc.Sequence.count(self, value)


class Keys(Listing):
    """A collection of elements with `at` by the key, and `keys`; iteration yields the keys."""

    def __getitem__(self: Any, key: Any) -> Any:
        try:
            found = self.at(key)
        except (TypeError, ValueError, OverflowError):
            hash(key)  # which a list refuses, as it does for a dict
            found = None  # no key could be that
        if not found:
            raise KeyError(key)
        return found

    def __iter__(self: Any) -> Iterator[Any]:
        return iter(self.keys())

    def __reversed__(self: Any) -> Iterator[Any]:
        return reversed(self.keys())

    def __contains__(self: Any, key: object) -> bool:
        return bool(self.get(key))

    def items(self: Any) -> list[tuple[Any, Any]]:
        """All keys, each with what is under it."""
        return [(key, self.at(key)) for key in self.keys()]

    def get(self: Any, key: Any, default: Any = None) -> Any:
        """What is under a key, or the default when nothing is."""
        try:
            return self.at(key) or default
        except (TypeError, ValueError, OverflowError):  # no key could be that
            return default
