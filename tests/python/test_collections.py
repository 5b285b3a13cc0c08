"""The views of collections, as collections of Python."""

from collections import abc

import pytest
import tyve
from torvan import datamodel


@pytest.fixture
def array(model):
    array = datamodel.Array(model)
    for index in (7, 3, 5):
        array.createIntoValues({"index": index})
    return array


def test_sequences(colours):
    names = colours.universe
    assert isinstance(names, abc.Sequence) and names and len(names) == 3
    assert list(names) == ["red", "green", "red"] == list(reversed(names))
    assert (names[0], names[-2]) == ("red", "green")
    assert (names[1:], names[::-2]) == (["green", "red"], ["red", "red"])
    one = datamodel.PowerSetType(colours.model, {"universe": ["alone"]}).universe
    assert one.values() == list(one) == ["alone"]  # no text
    assert "green" in names and "blue" not in names and 5 not in names
    assert names.index("green") == 1 and names.count("red") == 2
    for wrong in (3, -4, 2**31, 10**30):
        with pytest.raises(IndexError):
            names[wrong]
    with pytest.raises(IndexError, match="no element -5 among 3"):
        names[-5]
    with pytest.raises(TypeError):
        names["red"]


def test_maps(array):
    values = array.values
    assert isinstance(values, abc.Mapping) and list(values) == values.keys() == [3, 5, 7]
    assert values[7].index == 7 == values.get(7).index and 7 in values
    for wrong in (8, "7", "\udc80", None, -1, 2**40, 10**400):
        assert wrong not in values and values.get(wrong) is None and values.get(wrong, 5) == 5
    assert dict(values) == dict(values.items()) and list(reversed(values)) == [7, 5, 3]
    for wrong in (8, -1, 2**16, 10**30, "7", "\udc80", None, 1.5, (7,)):
        with pytest.raises(KeyError):
            values[wrong]
    with pytest.raises(TypeError):
        values[[7]]


def test_views_are_alive(array, model):
    values = array.values
    for key in values:
        values[key].delete()
    assert len(values) == 0 and not values and values == array.values
    join = datamodel.Join(model, {"operands": [datamodel.Variable(model) for _ in range(4)]})
    seen = 0
    for operand in join.operands:
        seen += 1
        operand.delete()
    assert seen == 2 and len(join.operands) == 2
    array.delete()
    assert not values
    assert repr(values)
    for use in (len, list, lambda view: view[3]):
        with pytest.raises(tyve.Error):
            use(values)
