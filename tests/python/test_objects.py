"""Elements as Python objects."""

import copy
import inspect
import pickle
import pydoc
import weakref

import orb.zero
import pytest
import tyve
from torvan import datamodel


def test_an_element_is_one_object_to_python(colours, model):
    value = datamodel.PowerSet(model, init={"type": colours})
    assert value.type is not value.type
    assert value.type == colours and hash(value.type) == hash(colours)
    assert {colours: 1}[value.type] == 1
    assert value != colours and value != 5 and not value == None  # noqa: E711
    assert isinstance(value, datamodel.LatticeValue) and isinstance(value, orb.zero.ModelElement)
    assert type(datamodel.Equation(model, {"rhs": value}).rhs) is datamodel.PowerSet
    with pytest.raises(TypeError):
        value < value


def test_an_element_that_is_gone(colours, model):
    variable = datamodel.Variable(model, {"name": "x", "type": colours})
    key = hash(variable)
    assert variable and repr(variable) == "x"
    variable.delete()
    assert not variable and not variable.isValid() and hash(variable) == key
    assert "Variable" in repr(variable)
    for use in (lambda: variable.name, lambda: variable.delete(), lambda: variable.model):
        with pytest.raises(tyve.Error) as failure:
            use()
        assert failure.value.identifier == "InvalidHandle"


def test_an_empty_handle_is_false_and_none_of_many_an_empty_list(model):
    equation = datamodel.Equation(model)
    assert not equation.lhs and repr(equation.lhs)
    equation.lhs = datamodel.Variable(model)
    assert equation.lhs
    equation.lhs = None
    assert not equation.lhs
    assert equation.getRhsVariables() == []
    equation.rhs = datamodel.Variable(model)
    assert equation.getRhsVariables() == [equation.rhs]


@pytest.mark.parametrize(
    "use, identifier, kind",
    [
        (lambda c: datamodel.Term(c.model), "AbstractClass", tyve.Error),
        (lambda c: datamodel.Variable(c.model, {"no": 1}), "NoSuchProperty", tyve.Error),
        (lambda c: setattr(c, "name", "x"), "ReadOnlyProperty", AttributeError),
        (lambda c: c.isCompatible(), "WrongArgumentCount", TypeError),
        (lambda c: c.isCompatible(c.top), "WrongArgument", TypeError),
        (lambda c: datamodel.PowerSetType.isCompatible(5, c), "WrongArgument", TypeError),
        (lambda c: type(c).name.__get__(c.top), "WrongArgument", TypeError),
        (lambda c: orb.zero.Model.undo(c), "WrongArgument", TypeError),
        (lambda c: orb.zero.Model.size.__get__(5), "WrongArgument", TypeError),
        (lambda c: c.universe.at(3), "IndexOutOfRange", IndexError),
        (lambda c: datamodel.Array(c.model).at(1, None, None), "WrongArgumentCount", TypeError),
        (lambda c: datamodel.Array(c.model).at(None), "WrongArgument", TypeError),
    ],
)
def test_errors_of_the_library(colours, use, identifier, kind):
    with pytest.raises(kind) as failure:
        use(colours)
    error = failure.value
    assert isinstance(error, tyve.Error) and error.identifier == identifier
    catalogs = ("NUMBAT:class", "orb0:messages")
    assert error.catalog in catalogs and all(isinstance(each, str) for each in error.arguments)
    assert str(pickle.loads(pickle.dumps(error))) == str(error)


def test_an_optional_argument_may_be_none(colours, model):
    top = datamodel.PowerSet(model, {"type": colours})
    assert repr(top.at(1, None)) == repr(top.at(1))
    array = datamodel.Array(model)
    array.createIntoValues({"index": 5}, None)
    array.createIntoValues(None, None)
    assert list(array.values) == [0, 5]


def test_objects_cannot_be_copied_derived_from_or_given_attributes(model):
    variable = datamodel.Variable(model)
    for refused in (
        lambda: pickle.dumps(variable),
        lambda: copy.deepcopy(variable),
        lambda: type("Mine", (datamodel.Variable,), {}),
        lambda: tyve.Object(),
        lambda: object.__new__(datamodel.Variable),
    ):
        with pytest.raises(TypeError):
            refused()
    for refused in (lambda: setattr(variable, "no", 1), lambda: delattr(variable, "name")):
        with pytest.raises(AttributeError):
            refused()
    watched = weakref.ref(variable)
    assert watched() is variable
    del variable
    assert watched() is None


def test_members_of_the_enumeration(colours, model):
    sets = datamodel.PowerSet(model, {"type": colours})
    assert sets.le(sets) is datamodel.boolean3.T
    order = datamodel.boolean3.F
    assert order == 2 and str(order) == f"{order}" == "F"
    assert [each.getLiteral() for each in datamodel.boolean3] == ["T", "F", "NA"]
    assert pickle.loads(pickle.dumps(order)) is order
    with pytest.raises(TypeError):
        bool(order)


def test_methods_are_descriptors(colours):
    bound = colours.isCompatible
    assert bound(colours) is True and bound.__self__ is colours
    assert datamodel.PowerSetType.isCompatible(colours, colours) is True
    assert list(map(datamodel.LatticeType.name.__get__, [colours])) == ["colours"]
    assert {"name", "isCompatible", "universe", "delete"} <= set(dir(colours))


def test_help():
    shown = pydoc.plain(pydoc.render_doc(datamodel.Array))
    for text in ("Array(model, init=None, uuid=None)", "at(self, arg1, arg2=None, /)",
                 "An array value", "The greatest lower bound, as a new value.",
                 "(orb.zero.Set, read-only)"):
        assert text in shown
    assert str(inspect.signature(datamodel.Variable)) == "(model, init=None, uuid=None)"
    assert datamodel.Array.__module__ == "torvan.datamodel" and datamodel.Array.at.__name__ == "at"
    assert datamodel.Array.at.__qualname__ == "Array.at"
    assert datamodel.Array.at.__objclass__ is datamodel.Array
