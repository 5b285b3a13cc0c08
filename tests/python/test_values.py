"""What converts to what, and what is refused."""

import enum
import pathlib
import uuid

import hypothesis
import pytest
import tyve
from hypothesis import strategies


class Index:
    def __index__(self):
        return 7


class Odd(enum.IntEnum):
    ONE = 1


@pytest.mark.parametrize(
    "given, told",
    [
        (None, "an empty object"),
        (2**31 - 1, "2147483647"),
        (-(2**53), "-9007199254740992"),
        (Index(), "7"),
        (Odd.ONE, "1"),
        ("ä\0", "'ä\0'"),
        (uuid.UUID(int=5), "'00000000-0000-0000-0000-000000000005'"),
        (pathlib.PurePosixPath("a/b"), "'a/b'"),
        ([], "an empty string"),
        (("a", "b"), "a 1-by-2 string"),
        (["a", 1], "a 1-by-2 cell"),
        ([[]], "a cell"),
        ({}, "a struct"),
    ],
)
def test_from_python(probe, given, told):
    assert probe.Thing.told(given) == told


def echoed(given):
    """What comes back: one text in a list cannot be told from the text alone."""
    if given is None:
        return []
    if isinstance(given, dict):
        return {key: echoed(value) for key, value in given.items()}
    if type(given) is int and not -(2**31) <= given < 2**31:
        return float(given)
    if not isinstance(given, list):
        return given
    is_one_text = len(given) == 1 and isinstance(given[0], str)
    return given[0] if is_one_text else [echoed(value) for value in given]


texts = strategies.text(strategies.characters(blacklist_categories=["Cs"]))
plain = strategies.none() | strategies.booleans() | strategies.integers(-(2**53), 2**53) | texts
nested = strategies.recursive(
    plain | strategies.floats(allow_nan=False),
    lambda inner: strategies.lists(inner) | strategies.dictionaries(texts, inner),
)


@hypothesis.settings(max_examples=50, deadline=None, database=None)
@hypothesis.given(given=nested)
def test_values_come_back(probe, given):
    assert repr(probe.Thing.echo(given)) == repr(echoed(given))  # with the kinds of numbers


@pytest.mark.parametrize(
    "given, error",
    [
        (b"bytes", TypeError),
        ({"a"}, TypeError),
        ([1, object()], TypeError),
        ({1: 2}, TypeError),
        (2**53 + 1, OverflowError),
        (10**400, OverflowError),
        ("\udc80", UnicodeEncodeError),
        ({"\udc80": 1}, UnicodeEncodeError),
    ],
)
def test_refused(probe, given, error):
    with pytest.raises(error):
        probe.Thing.told(given)


def test_nesting_is_limited(probe):
    endless = [1]
    endless += [endless, {"again": endless}]
    deep = {}
    for _ in range(100_000):
        deep = {"deeper": deep}
    for given in (endless, deep):
        with pytest.raises(RecursionError):
            probe.Thing.told(given)


def test_a_list_may_change_while_it_is_converted(probe):
    class Emptying:
        def __index__(self):
            given.clear()
            return 1

    given = [Emptying(), 2, 3]
    assert probe.Thing.echo(given) == [1]


@pytest.mark.parametrize(
    "sample, shown",
    [
        ("uint16", 65535),
        ("matrix", [1.0, 2.0, 3.0, 4.0]),
        ("char", "ä\ufffd"),
        ("structs", [{"f": 1}, {"f": 2}]),
        ("empty", []),
    ],
)
def test_to_python(probe, sample, shown):
    made = probe.Thing.sample(sample)
    assert made == shown and type(made) is type(shown)


def test_members_and_objects_to_python(probe):
    assert probe.Thing.sample("member") is probe.Mood.Wild
    assert probe.Thing.sample("members") == [probe.Mood.Calm, probe.Mood.Wild]
    first, second = probe.Thing.sample("objects")
    assert type(first) is probe.Thing and first == second and hash(first) == hash(second)
    assert probe.Thing.echo([first, None]) == [first, []]
    assert probe.Thing.quiet() is None
    with pytest.raises(ValueError):
        probe.Thing.sample("no member")
    with pytest.raises(tyve.Error) as failure:
        probe.Thing.sample("stranger")
    assert failure.value.identifier == "UnknownClass"


def test_failures_become_errors(probe):
    with pytest.raises(MemoryError):
        probe.Thing.sample("out of memory")
    with pytest.raises(RuntimeError, match="it failed"):
        probe.Thing.sample("failure")
    with pytest.raises(tyve.Error) as failure:
        probe.Thing.sample("ä\0b")
    error = failure.value
    assert (error.catalog, error.identifier, error.arguments) == (
        "NUMBAT:class", "UnknownField", ("ä\0b",))
    assert str(error) == "There is no field 'ä\0b'."


def test_arguments_by_name(probe):
    order, thing = probe.Thing.order, probe.Thing()
    assert order(1, 2, 3, 4) == order(1, opt_c=4, b=3, a=2) == [1, 2, 3, 4]
    assert order(1, None, "b") == order(1, b="b") == order(first=1, a=None, opt_b="b") == [1, "b"]
    assert thing.work(ms=1, other=thing) == probe.Thing.work(thing=thing, ms=1) == "done"
    for call in (
        lambda: order(1, d=1),
        lambda: order(1, first=1),
        lambda: order(1, a=1, opt_a=1),
        lambda: thing.work(other=thing),
        lambda: thing.work(1, thing=thing),
        lambda: probe.Thing.echo(arg1=1),
        lambda: order(1, 2, 3, 4, 5),
    ):
        with pytest.raises(TypeError):
            call()
    with pytest.raises(UnicodeEncodeError):
        order(**{"\udc80": 1})
