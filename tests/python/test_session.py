"""Sessions in Python, and the example that solves a system with them."""

import importlib
import os
import subprocess
import sys
from pathlib import Path

import pytest
import tyve
from torvan import datamodel
from torvan.session import Bits, Session, extensions

ROOT = Path(__file__).parents[2]


@pytest.fixture
def session():
    return Session()


@pytest.fixture
def sets(session):
    return session.type_factory.create_power_set_type("colours", ["red", "green", "blue"])


def test_bits_of_pythons_own_kinds(session, sets):
    ends = session.type_factory.create_power_set_type("ends", ["blue", "red"]).universe
    for bits in ({"red", "blue"}, frozenset([1, 3]), ["red", 3], ("blue", "red"), range(1, 4, 2),
                 {"red": 1, "blue": 2}.keys(), ends):
        made = session.value_factory.create_power_set(sets, bits)
        assert Bits.text(made) == "101" and Bits.members(made) == ["red", "blue"]
    many = session.type_factory.create_power_set_type("many", 200)
    assert Bits.indices(session.value_factory.create_power_set(many, bits=2**150)) == [151]
    assert Bits.number(made) == 5
    none = session.type_factory.create_power_set_type("none", 0)
    empty = session.value_factory.create_power_set(none, [])
    assert Bits.number(empty) == 0
    assert Bits.hex(session.value_factory.create_power_set(none, Bits.hex(empty))) == "0x0"
    for of_type, wrong in ((sets, True), (sets, -1), (sets, {"red": 1}), (many, b"101")):
        with pytest.raises((tyve.Error, TypeError)):
            session.value_factory.create_power_set(of_type, wrong)


def test_factories_take_none_for_no_element(session, sets):
    make, builder = session.expression_factory, session.create_system_builder()
    x = make.create_variable(None, "x")
    assert not x.type and make.create_conditional(None, x, None).operandTrue == x
    assert not builder.add_equation(None, rhs=x).lhs
    with pytest.raises(tyve.WrongType, match="'torvan.datamodel.LatticeType or none', not 5"):
        make.create_variable(5, "x")


def test_transactions_are_contexts(session, sets):
    variables = session.expression_factory
    with session.transaction() as outer:
        kept = variables.create_variable(sets, "kept")
        with pytest.raises(ZeroDivisionError), session.transaction():
            lost = variables.create_variable(sets, "lost")
            raise ZeroDivisionError
        assert outer.is_open and not lost
        with session.transaction() as ended:
            ended.rollback()
    with pytest.raises(tyve.Error, match="transaction is open"), session.transaction() as refused:
        forgotten = session.begin()
        variables.create_variable(sets, "lost")
    assert not any(each.is_open for each in (outer, refused, forgotten))
    assert session.find(datamodel.Variable) == [kept]


def test_modules_may_be_loaded_again(session, sets):
    importlib.reload(extensions)
    assert session.find(datamodel.PowerSetType) == [sets]
    assert Bits.text(session.value_factory.create_power_set(sets, {"red"})) == "001"


def test_find(session, sets):
    find, make = session.find, session.expression_factory
    x, y = (make.create_variable(sets, name) for name in "xy")
    variable = datamodel.Variable
    join = make.create_join([y, x])
    assert find("torvan.datamodel.Expression") == [x, y, join]
    assert find(variable.StaticMetaClass()) == [x, y]
    assert find(variable, name="y", type=sets) == [y]
    assert find(datamodel.Join, operands=x) == [join]
    assert find(datamodel.PowerSetType, universe="blue") == [sets]
    assert find(datamodel.PowerSetType, universe="blue", name="") == []
    assert find(datamodel.Term, type=None) == []
    for wrong, told in (
        (lambda: find("Colour"), ("NoSuchType", "Colour")),
        (lambda: find(int), ("NoSuchType", "builtins.int")),
        (lambda: find(variable, no=1), ("NoSuchProperty", "torvan.datamodel.Variable", "no")),
        (lambda: find(variable, name=1), ("WrongValue", "TyveFactoryString scalar", "1")),
    ):
        with pytest.raises(tyve.Error) as failure:
            wrong()
        assert (failure.value.identifier, *failure.value.arguments) == told


def test_a_path_is_not_cut(session, tmp_path):
    for use in (session.save, Session.load):
        with pytest.raises(tyve.Error):
            use(f"{tmp_path}/saved\0more")
    assert not list(tmp_path.iterdir())


def test_what_is_no_file_is_not_replaced(session, tmp_path):
    pipe = tmp_path / "pipe"
    os.mkfifo(pipe)
    with pytest.raises(tyve.Error, match="is no file"):
        session.save(str(pipe))
    assert pipe.is_fifo() and list(tmp_path.iterdir()) == [pipe]


def test_the_example_finds_what_the_slicer_finds(tmp_path):
    slicer, saved = os.environ["TORVAN_SLICE"], tmp_path / "room"
    example, room = ROOT / "examples/fixpoint.py", ROOT / "slicer/examples/room.xcos"
    sliced = subprocess.run([slicer, room, "--criterion", "CMSCOPE#1", "--save", saved],
                            capture_output=True, text=True, check=True).stdout
    solved = subprocess.run([sys.executable, example, saved],
                            capture_output=True, text=True, check=True).stdout
    bits = solved.split("CMSCOPE#1 = ")[1].split("\n")[0]
    names = Session.load(saved).find(datamodel.PowerSetType)[0].universe
    members = [name for name, bit in zip(names, reversed(bits)) if bit == "1"]
    assert sorted(members) == [line.strip() for line in sliced.splitlines()[1:]]
    asked = subprocess.run([sys.executable, example], capture_output=True, text=True)
    assert asked.returncode == 1 and asked.stderr.startswith("Solves")
