"""What the class system and the libraries behind it raise."""

from __future__ import annotations


class Error(Exception):
    """A failure: the message catalog, the identifier of the message in it, and its arguments."""

    def __init__(self, text: str, catalog: str, identifier: str, arguments: tuple[str, ...]):
        super().__init__(text, catalog, identifier, arguments)
        self.catalog = catalog
        self.identifier = identifier
        self.arguments = arguments

    def __str__(self) -> str:
        return str(self.args[0])


class WrongType(Error, TypeError):
    """An argument or a value is not what a signature asks for."""


class WrongIndex(Error, IndexError):
    """There is no element at an index."""


class WrongMember(Error, AttributeError):
    """There is no such member, or it cannot be set."""


_classes: dict[str, type[Error]] = {
    "WrongArgument": WrongType,
    "WrongArgumentCount": WrongType,
    "WrongValue": WrongType,
    "CannotCastIncompatibleTypes": WrongType,
    "IndexOutOfRange": WrongIndex,
    "ReadOnlyProperty": WrongMember,
    "UnknownMember": WrongMember,
}


def error_of(text: str, catalog: str, identifier: str, arguments: tuple[str, ...]) -> Error:
    """The failure as an instance of the class for its identifier."""
    return _classes.get(identifier, Error)(text, catalog, identifier, arguments)
