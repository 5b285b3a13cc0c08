"""What makes the host classes of sessions handy in Python."""

from __future__ import annotations

import builtins
from collections import abc

import torvan.datamodel
import tyve
from torvan import session

TYPE_CHECKING = False  # the real one is slow to import
if TYPE_CHECKING:
    from typing import Any, Collection

_find = tyve.offered_method(session.Session, "find")
_create_power_set = tyve.offered_method(session.ValueFactory, "create_power_set")
_set = tyve.offered_method(session.Bits, "set")


def _bits(given: Any) -> Any:
    """Bits as the host takes them: its only collections are lists, its integers have a size."""
    if isinstance(given, int) and not isinstance(given, bool) and given >= 0:
        return hex(given)
    if isinstance(given, abc.Collection) and not isinstance(given, (str, bytes, abc.Mapping)):
        return list(given)
    return given


class Transaction:
    def __enter__(self: Any) -> Transaction:
        """The transaction itself."""
        return self

    def __exit__(self: Any, kind: object, error: object, trace: object) -> None:
        """Commits it, or rolls it back after an exception, unless it was ended before. One that
        cannot be committed is rolled back."""
        if not self.is_open:
            return
        if kind:
            return self.rollback()
        try:
            self.commit()
        except BaseException:
            self.rollback()
            raise


class Session:
    def transaction(self: Any) -> Transaction:
        """Opens a transaction, to be used in a `with` statement. Until it ends, it takes in what
        all threads do with the model."""
        return self.begin()

    def find(self: Any, type: object, /, **properties: Any) -> list[Any]:
        """The elements of a class, whose properties have these values, in the order of their
        creation; of a collection, one item that it holds. The class is given as such, by its full
        name or by its description."""
        if isinstance(type, builtins.type):
            type = f"{type.__module__}.{type.__qualname__}"
        return _find(self, type, properties)


class ValueFactory:
    def create_power_set(
        self: Any, type: torvan.datamodel.PowerSetType, bits: Collection[str | int] | str | int
    ) -> torvan.datamodel.PowerSet:
        """A set over the elements of a type: names and indices from 1, the bits as text, as they
        print, or as a number, the first element being the lowest bit."""
        return _create_power_set(self, type, _bits(bits))


class Bits:
    @staticmethod
    def set(set: torvan.datamodel.PowerSet, bits: Collection[str | int] | str | int) -> None:
        """Gives a set other bits; they are given as to `ValueFactory.create_power_set`."""
        _set(set, _bits(bits))

    @staticmethod
    def number(set: torvan.datamodel.PowerSet) -> int:
        """The bits as a number, the first element being the lowest."""
        return int(session.Bits.hex(set), 16)


for _extension in (Transaction, Session, ValueFactory, Bits):
    tyve.extend(getattr(session, _extension.__name__), _extension)
