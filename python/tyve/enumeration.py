"""The root of the enumerations."""

import enum


class Enumeration(enum.IntEnum):
    """Members of an enumeration. They are numbers and print as their names; they are neither true
    nor false."""

    def __bool__(self) -> bool:
        raise TypeError(f"{self!r} is neither true nor false; compare it with a member")

    def __str__(self) -> str:
        return self.name

    def __format__(self, spec: str) -> str:
        return format(self.name, spec)
