"""What the modules offer, and what their stubs say of it."""

import os
import subprocess
import sys
from pathlib import Path

import orb.zero
import orb.zero.meta
import pytest
import tyve
from torvan import datamodel, session


def described(name):
    """What scripts rely on of a class, a line each. Of the data model only the methods, as the rest
    follows from its own list in tests/orb/golden.
    class.property type, = for one that can be set
    class.method(types of arguments) how many are optional, result, 'names of arguments'"""
    told = tyve.describe(name)
    calls = [told["constructor"]] * bool(told["constructor"]) + told["methods"]
    assert all(each["documentation"] for each in [told, *told["properties"], *calls])
    if name.startswith("torvan.datamodel"):
        calls, told["properties"] = told["methods"], []
    for each in told["properties"]:
        yield f"{name}.{each['name']} {'' if each['read_only'] else '= '}{each['result']}"
    for each in calls:
        if each["name"] != "StaticMetaClass":
            yield (f"{name}.{each['name']}({','.join(each['arguments'])}) {each['optional']} "
                   f"{each['result']} '{each['argument_names']}'" + " static" * each["static"])


def test_classes_never_change():
    names = [f"{each.__name__}.{name}" for each in (datamodel, session) for name in each.__all__]
    golden = Path(__file__).parent / "golden/classes.list"
    assert [line for name in names for line in described(name)] == golden.read_text().splitlines()


def test_classes_offer_what_is_described(colours):
    for name in datamodel.__all__[:-1]:
        cls, told = getattr(datamodel, name), tyve.describe(f"torvan.datamodel.{name}")
        assert {each["name"] for each in told["properties"] + told["methods"]} <= {*vars(cls)}
        description = cls.StaticMetaClass()
        assert type(description) is orb.zero.meta.Class and description.name == name
    for refused in (lambda: setattr(description, "name", "x"), lambda: description.delete()):
        with pytest.raises(tyve.Error):
            refused()
    assert datamodel.Variable.__mro__[-3] is orb.zero.ModelElement
    assert type(colours.universe) is orb.zero.PrimitiveSet
    assert type(datamodel.Prune(colours.model).field) is orb.zero.PrimitiveSequence
    assert type(colours.model) is orb.zero.Model


def test_what_cannot_be_loaded_cannot_be_imported():
    library, entry = "libtorvan_bindings.so.0", "HBInitialize_torvan_datamodel"
    for name, *rest in (
        ("torvan.datamodel", "libno.so", entry),
        ("torvan.datamodel", library, "no_entry"),
        ("no.package", library, entry),
    ):
        with pytest.raises(ImportError):
            tyve.offer({"__name__": name}, *rest)


USE = """
from pathlib import Path
from typing import Callable
import orb.zero
from torvan import datamodel, session
model = orb.zero.Model()
colours = datamodel.PowerSetType(model, {"name": "colours"}, uuid=None)
top: datamodel.LatticeValue = datamodel.PowerSet(model, init={"type": colours})
if top.join(top.clone()).le(top) == datamodel.boolean3.T:
    print(colours.name.upper(), len(colours.universe), [name for name in colours.universe])
own = session.Session()
equation = own.create_system_builder().add_equation(None, None)
equation.lhs = own.expression_factory.create_variable(None, "x")
print(equation.lhs.type, colours.top, datamodel.Array(model).createIntoValues({}, None))
equation.lhs = None
record, system = datamodel.Struct(model), datamodel.System(model)
print(record.values.get("a"), record.values.at("a"), "a" in record.values, system.equations[:1])
save: Callable[[Path], None] = own.save
for variable in equation.getRhsVariables():
    print(variable.name.upper(), variable.StaticMetaClass().name)
"""
MISUSE = "colours.name = 'x'\ntop.le(5)\ntop.no\ndatamodel.Variable()\n1 + top.clone()\n"
MISUSE += "equation.lhs = top\ntop.join(None)\n"


def test_stubs_fit_what_is_there(tmp_path):
    program = tmp_path / "program.py"
    program.write_text(USE + MISUSE)
    exec(compile(USE, "program", "exec"), {})
    examples = map(str, Path(__file__).parents[2].glob("examples/*.py"))
    checked = subprocess.run(
        [sys.executable, "-m", "mypy", "--strict", "--cache-dir", tmp_path, program, *examples],
        env=os.environ | {"MYPYPATH": str(Path(tyve.__file__).parents[1])},
        capture_output=True, text=True)
    first = USE.count("\n") + 1
    lines = [f":{first + i}: error" for i in range(MISUSE.count("\n"))]
    assert [line in checked.stdout for line in lines] == [True] * len(lines), checked.stdout
    assert f"{len(lines)} errors in 1 file" in checked.stdout, checked.stdout
