"""Solves a saved system of equations by iteration and prints the values of its variables:

    ./dev slice slicer/examples/room.xcos --save build/room.json
    ./dev python examples/fixpoint.py build/room.json
"""

import sys
from collections import OrderedDict, defaultdict
from functools import reduce
from typing import Any

from torvan import datamodel as model
from torvan.session import Bits, Session

values: dict[model.Variable, Any] = {}  # those of the others are the bottoms of their types


def solve(session: Session, system: model.System) -> None:
    """Finds the least values of the variables such that no right side is above its left side."""
    pending = OrderedDict.fromkeys(each for each in system.equations if each.getLhsVariable())
    readers: dict[model.Variable, list[model.Equation]] = defaultdict(list)
    for equation in pending:
        for variable in equation.getRhsVariables():
            readers[variable].append(equation)
    most = 10_000
    while pending:
        equation, _ = pending.popitem(last=False)
        if (value := value_of(equation.rhs)) and grows(equation.lhs, value):
            pending.update(dict.fromkeys(readers[equation.getLhsVariable()]))
        if session.model.size > most:  # mostly values that nobody holds any more
            session.reclaim()
            most = 2 * session.model.size


def value_of(term: Any) -> Any:
    """What a term is under the present values of the variables; None of a join of nothing."""
    match term:
        case model.Variable():
            return values.get(term, term.type.bottom)
        case model.StructRef():
            return value_of(term.expr).at(term.field)
        case model.IndexRef():
            return value_of(term.expr).at(term.startIndex, term.endIndex)
        case model.Prune():
            return value_of(term.expr).prune(list(term.field))
        case model.Join() | model.Meet():
            operands = [value_of(each) for each in term.operands if each]
            combine = "join" if isinstance(term, model.Join) else "meet"
            return reduce(getattr(model.LatticeValue, combine), operands) if operands else None
        case model.Conditional():  # whatever decides is an influence as well
            either = value_of(term.operandTrue).join(value_of(term.operandFalse))
            return either.join(value_of(term.ctrlExpr))
    return term


def grows(place: Any, value: Any) -> bool:
    """Joins a value into a place, a part by way of the whole; whether that has grown."""
    if isinstance(place, model.Variable):
        before = value_of(place)
        values[place] = before.join(value)
        return bool(value.le(before) != model.boolean3.T)
    whole = value_of(place.expr).clone()
    if isinstance(place, model.StructRef):
        whole.values[place.field].value = value
    elif isinstance(whole, model.PowerSet):
        moved = {place.startIndex - 1 + index for index in Bits.indices(value)}
        Bits.set(whole, {index for index in moved if index <= place.endIndex})
    elif place.startIndex >= place.endIndex:
        whole.values[place.startIndex].value = value
    else:
        for index, part in value.values.items():
            if place.startIndex - 1 + index <= place.endIndex:
                whole.values[place.startIndex - 1 + index].value = part.value
    return grows(place.expr, whole)


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    session = Session.load(sys.argv[1])
    solve(session, session.find(model.System)[0])
    for variable in values:
        print(f"{variable.name} = {values[variable]}")
