"""Solves a saved system of equations by iteration and prints the values of its variables:

    ./dev slice slicer/examples/room.xcos --save build/room.json
    ./dev python examples/fixpoint.py build/room.json
"""

from __future__ import annotations

import sys
from collections import OrderedDict, defaultdict
from functools import reduce
from typing import Any

from torvan.datamodel import (
    Conditional, Equation, IndexRef, Join, Meet, PowerSetType, Prune, StructRef, System, Term,
    Variable, boolean3)
from torvan.session import Bits, Session


class Solver:
    """Finds the least values of the variables such that no right side is above its left side."""

    def __init__(self, session: Session, system: System):
        self.session = session
        self.values: dict[Variable, Any] = {}
        self.equations = [each for each in system.equations if each.getLhsVariable()]
        self.readers: dict[Variable, list[Equation]] = defaultdict(list)
        for equation in self.equations:
            for variable in set(equation.getRhsVariables()):
                self.readers[variable].append(equation)

    def solve(self) -> None:
        pending, most = OrderedDict.fromkeys(self.equations), 10_000
        while pending:
            equation, _ = pending.popitem(last=False)
            if self.grows(equation):
                pending.update(dict.fromkeys(self.readers[equation.getLhsVariable()]))
            if self.session.model.size > most:  # mostly values that nobody holds any more
                self.session.reclaim()
                most = 2 * self.session.model.size

    def grows(self, equation: Equation) -> bool:
        """Joins the right side into the left side; whether that has grown."""
        if not (value := self.value(equation.rhs)):
            return False
        variable = equation.getLhsVariable()
        before, more = self.value(variable), self.whole(equation.lhs, value)
        self.values[variable] = before.join(more)
        return bool(more.le(before) != boolean3.T)

    def value(self, term: Term) -> Any:
        """What a term is under the present values of the variables; None of a join of nothing."""
        match term:
            case Variable():
                return self.values.get(term, term.type.bottom)
            case StructRef():
                return self.value(term.expr).at(term.field)
            case IndexRef():
                return self.value(term.expr).at(term.startIndex, term.endIndex)
            case Prune():
                return self.value(term.expr).prune(list(term.field))
            case Join() | Meet() | Conditional():
                return self.combined(term)
        return term

    def combined(self, term: Any) -> Any:
        if isinstance(term, Conditional):  # whatever decides is an influence as well
            operands = [term.operandTrue, term.operandFalse, term.ctrlExpr]
        else:
            operands = [operand for operand in term.operands if operand]
        values: list[Any] = [self.value(operand) for operand in operands]
        name = "meet" if isinstance(term, Meet) else "join"
        return reduce(lambda a, b: getattr(a, name)(b), values) if values else None

    def whole(self, place: Term, value: Any) -> Any:
        """The least value of the variable of a place that has this value in the place."""
        make = self.session.value_factory
        match place:
            case StructRef():
                record: Any = place.expr.type
                fields = {name: record.at(name).bottom for name in record.fields}
                fields[place.field] = value
                return self.whole(place.expr, make.create_struct(record, fields))
            case IndexRef():
                row: Any = place.expr.type
                places = range(place.startIndex, max(place.startIndex, place.endIndex) + 1)
                if isinstance(row, PowerSetType):
                    bits = {places[index - 1] for index in Bits.indices(value)}
                    return self.whole(place.expr, make.create_power_set(row, bits))
                items = [row.elemType.bottom] * row.numElems
                parts = [value] if len(places) == 1 else value.values.values()
                items[places.start - 1:places.stop - 1] = parts
                indices = list(range(1, row.numElems + 1))
                return self.whole(place.expr, make.create_array(row, indices, items))
        return value


def main(file: str) -> None:
    session = Session.load(file)
    solver = Solver(session, session.find(System)[0])
    solver.solve()
    for variable in solver.values:
        print(f"{variable.name} = {solver.values[variable]}")


if __name__ == "__main__":
    main(sys.argv[1])
