"""The classes of the class system as Python classes.

A package of them is a module that calls `offer`; see `torvan.datamodel`.
"""

from __future__ import annotations

from tyve._host import Object, classes, describe, load
from tyve.errors import Error, WrongIndex, WrongMember, WrongType

TYPE_CHECKING = False  # the real one is slow to import
if TYPE_CHECKING:
    from typing import Any

__all__ = [
    "Error", "Object", "WrongIndex", "WrongMember", "WrongType", "describe", "extend", "offer",
    "offered_method"
]


def offer(module: dict[str, Any], library: str, entry: str) -> None:
    """Loads a library and puts all classes of a package into the module of the package's name.

    Raises ImportError when the library, its entry or the package is not there.
    """
    load(library, entry)
    offered = classes(module["__name__"])
    module.update(offered)
    module["__all__"] = list(offered)


def extend(offered: type, extension: type) -> None:
    """Puts what a Python class defines on a class of objects, which cannot be derived from."""
    for base in reversed(extension.__mro__[:-1]):
        for name, function in vars(base).items():
            if callable(function):
                replaced = offered_method(offered, name)
                getattr(function, "__func__", function).replaced = replaced
                setattr(offered, name, function)


def offered_method(offered: type, name: str) -> Any:
    """The method of a class of objects itself, also where `extend` has put another in its place,
    as when a module is loaded again. None when there is no such method."""
    method = getattr(offered, name, None)
    return getattr(method, "replaced", method)
