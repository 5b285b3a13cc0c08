"""What the modules offer, beside what is to be offered."""

import os
import subprocess
import sys
from pathlib import Path

import orb.zero
import orb.zero.meta
import pytest
import tyve
from torvan import datamodel

# Class, base, "new" for a constructor, properties ("=": can be set), methods.
CLASSES = """
Array IndexableValue new values createIntoValues() at() join() meet() le() eq() clone()
ArrayElem ModelElement new index value=
ArrayType LatticeType new elemType isCompatible()
Conditional Expression new ctrlExpr operandTrue operandFalse
Equation ModelElement new lhs= rhs= print() getLhsVariable() getRhsVariables()
Expression Term
FieldElem ModelElement new name value=
FieldType ModelElement new name elemType
IndexRef LExpression new expr startIndex endIndex
IndexableValue LatticeValue at()
Join Expression new operands
LExpression Expression
LatticeType ModelElement name numElems top bottom isCompatible()
LatticeValue Term join() meet() le() eq() clone()
Meet Expression new operands
PowerSet IndexableValue new at() join() meet() le() eq() clone()
PowerSetType LatticeType new universe isCompatible()
Prune Expression new expr field
Struct LatticeValue new values createIntoValues() at() join() meet() le() eq() clone() prune()
StructRef LExpression new expr field
StructType LatticeType new fields at() isCompatible()
System ModelElement new equations createIntoEquations()
Term ModelElement type
Variable LExpression new name
boolean3 Enumeration getValue() getLiteral() getPublicIdentifier()
"""


def shown(cls):
    told = tyve.describe(f"torvan.datamodel.{cls.__name__}")
    words = [cls.__name__, cls.__base__.__name__, *["new"] * bool(told["constructor"])]
    words += [each["name"] + "=" * (not each["read_only"]) for each in told["properties"]]
    methods = [each["name"] for each in told["methods"] if each["name"] != "StaticMetaClass"]
    assert all(name in vars(cls) for name in methods)
    return " ".join(words + [name + "()" for name in methods])


def test_classes_are_those_of_the_data_model():
    offered = [shown(getattr(datamodel, name)) for name in datamodel.__all__]
    assert offered == CLASSES.split("\n")[1:-1]
    for name in datamodel.__all__[:-1]:
        description = getattr(datamodel, name).StaticMetaClass()
        assert type(description) is orb.zero.meta.Class and description.name == name


def test_all_modules_offer_the_same_classes(colours):
    assert datamodel.Variable.__mro__[-3] is orb.zero.ModelElement
    assert type(colours.universe) is orb.zero.PrimitiveSet
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
import orb.zero
from torvan import datamodel
model = orb.zero.Model()
colours = datamodel.PowerSetType(model, {"name": "colours"}, uuid=None)
top: datamodel.LatticeValue = datamodel.PowerSet(model, init={"type": colours})
if top.join(top.clone()).le(top) == datamodel.boolean3.T:
    print(colours.name.upper(), len(colours.universe), [name for name in colours.universe])
for variable in datamodel.Equation(model).getRhsVariables():
    print(variable.name.upper(), variable.StaticMetaClass().name)
"""
MISUSE = "colours.name = 'x'\ntop.le(5)\ntop.no\ndatamodel.Variable()\n1 + top.clone()\n"


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
