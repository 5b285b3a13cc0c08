"""Sessions in Python, and the example that solves a system with them."""

import os
import subprocess
import sys
from pathlib import Path

import pytest
import tyve
from torvan import datamodel
from torvan.session import Bits, Session

ROOT = Path(__file__).parents[2]


@pytest.fixture
def session():
    return Session()


@pytest.fixture
def sets(session):
    return session.type_factory.create_power_set_type("colours", ["red", "green", "blue"])


def test_bits_in_all_forms(session, sets):
    for bits in ({"red", "blue"}, frozenset([1, 3]), ["red", 3], ("blue", "red"), "101", 5, "0x5"):
        made = session.value_factory.create_power_set(sets, bits)
        assert Bits.text(made) == "101"
    Bits.set(made, {2})
    assert (Bits.members(made), Bits.indices(made), Bits.count(made)) == (["green"], [2], 1)
    assert Bits.number(made) == 2
    many = session.type_factory.create_power_set_type("many", 200)
    assert Bits.indices(session.value_factory.create_power_set(many, bits=2**150)) == [151]
    for wrong in ({"pink"}, {4}, {0}, 8, -1, True, 2.5, "10", {"red": 1}):
        with pytest.raises(tyve.Error):
            session.value_factory.create_power_set(sets, wrong)


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
    assert not outer.is_open and session.find(datamodel.Variable) == [kept]


def test_find(session, sets):
    first, second = (session.expression_factory.create_variable(sets, name) for name in "xy")
    assert session.find(datamodel.Variable, type=sets) == [first, second]
    assert session.find("torvan.datamodel.Variable", name="y") == [second]
    assert session.find(datamodel.Variable.StaticMetaClass(), name="z") == []
    for wrong in (lambda: session.find(int), lambda: session.find(datamodel.Variable, no=1)):
        with pytest.raises(tyve.Error):
            wrong()


def test_save_and_load(session, sets, tmp_path):
    bits = session.value_factory.create_power_set(sets, {"green"})
    builder = session.create_system_builder()
    builder.add_equation(session.expression_factory.create_variable(sets, "x"), bits)
    session.save(str(tmp_path / "saved"))
    loaded = Session.load(str(tmp_path / "saved"))
    assert str(loaded.find(datamodel.Equation)[0]) == "x = 010"
    assert loaded.model.size == session.model.size


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
    assert pipe.is_fifo()


def test_the_example_finds_what_the_slicer_finds(tmp_path):
    slicer, saved = os.environ["TORVAN_SLICE"], str(tmp_path / "room")
    room = ROOT / "slicer/examples/room.xcos"
    sliced = subprocess.run([slicer, room, "--criterion", "CMSCOPE#1", "--save", saved],
                            capture_output=True, text=True, check=True).stdout
    solved = subprocess.run([sys.executable, ROOT / "examples/fixpoint.py", saved],
                            capture_output=True, text=True, check=True).stdout
    bits = solved.split("CMSCOPE#1 = ")[1].split("\n")[0]
    names = Session.load(saved).find(datamodel.PowerSetType)[0].universe
    members = [name for name, bit in zip(names, reversed(bits)) if bit == "1"]
    assert sorted(members) == [line.strip() for line in sliced.splitlines()[1:]]
