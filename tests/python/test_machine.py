"""What Python can call and assign, used at random, beside what was read of the models before.

Each run searches the same; MACHINE_SEED=5 MACHINE_EXAMPLES=2000 search elsewhere, and longer.
"""

import contextlib
import ctypes
import gc
import os
import sys
import uuid
import weakref

import hypothesis
import orb.zero
import orb.zero.meta
import pytest
import tyve
from hypothesis import stateful
from hypothesis import strategies as st
from torvan import datamodel, session

CLASSES = {f"{each.__name__}.{name}": getattr(each, name)
           for each in (orb.zero, orb.zero.meta, datamodel, session) for name in each.__all__}


def told(cls, kind):
    """What the descriptions of a class and its bases say of its members, by name."""
    bases = [name for base in cls.__mro__ for name, each in CLASSES.items() if each is base]
    return {each["name"]: each for name in reversed(bases) for each in tyve.describe(name)[kind]}


METHODS = {cls: told(cls, "methods") for cls in CLASSES.values()}
PROPERTIES = {cls: told(cls, "properties") for cls in CLASSES.values()}
# These have rules of their own, or need files.
APART = {"begin", "transaction", "commit", "rollback", "undo", "redo", "delete", "set", "save",
         "load", "export_values", "import_values"}
REFUSED = (TypeError, ValueError, ArithmeticError, LookupError, AttributeError, RecursionError)
WEIGHT = 2**20  # bytes in each model, which tell whether it has ended

texts = st.sampled_from(["", "a", "b", "c", "a\0b", "ä", "\udc80", "0x5", "101"])
numbers = st.sampled_from([0, 1, 2, 3, -1, 65535, 65536, 2**31, 2**53 + 1, -(10**400), True, 2.5])
uuids = st.builds(uuid.UUID, int=st.integers(1, 30))
plain = st.none() | texts | numbers | uuids | uuids.map(str) | st.just(float("nan"))
odd = plain | st.lists(plain, max_size=3) | st.dictionaries(texts | numbers, plain, max_size=2)
places = st.integers(0, 99)


def shown(value):
    """The value of a property, without objects."""
    if isinstance(value, orb.zero.ModelElement):
        return value.uuid if value else None
    if isinstance(value, (orb.zero.Set, orb.zero.PrimitiveSet)):
        return [value.keys() if isinstance(value, orb.zero.Map) else len(value),
                *map(shown, value.values())]
    return value


def state_of(model):
    """All that can be read of a session's model: its elements in order, their properties, bits."""
    state = {}
    for element in model.find("orb.zero.ModelElement"):
        properties = {name: shown(getattr(element, name))
                      for name in PROPERTIES[type(element)] if name != "model"}
        bits = session.Bits.text(element) if isinstance(element, datamodel.PowerSet) else None
        state[element.uuid] = (type(element), properties, bits)
    assert len(state) == model.model.size
    return state


class World:
    """A session, its state after the last rule, and its open transactions with the state before."""

    def __init__(self):
        self.session = session.Session()
        self.open = []
        colours = self.session.type_factory.create_power_set_type("colours", ["a", "b", "c"])
        datamodel.Variable(self.session.model, {"name": "x" * WEIGHT, "type": colours})
        self.state = state_of(self.session)


class Interrupting:
    """An argument whose conversion or comparison runs other code."""

    def __init__(self, run):
        self.run = run

    def __eq__(self, other):
        return bool(self.run())

    def __str__(self):
        self.run()
        return str(uuid.UUID(int=31))

    @property
    def __class__(self):
        self.run()
        return uuid.UUID


class InterruptingIndex(Interrupting):
    def __index__(self):
        return self.run() or 1


class Memory(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in [*"abcd", "mapped", "e", "f", "used", *"gh"]]


def memory():
    """How many bytes the libraries have in use."""
    gc.collect()
    mallinfo = ctypes.CDLL(None).mallinfo2
    mallinfo.restype = Memory
    return mallinfo().mapped + mallinfo().used


class Surface(stateful.RuleBasedStateMachine):
    def __init__(self):
        super().__init__()
        self.before = memory()
        self.worlds = [World(), World()]
        self.pool = []  # objects of all kinds, to be used and to be forgotten
        self.given = []
        for world in self.worlds:
            self.keep([world.session, world.session.model])
            self.keep(world.session.find(datamodel.LatticeType))
        self.fill(self.worlds[0].session)
        self.now()

    def fill(self, own):
        """Some of everything."""
        types, values, expressions = own.type_factory, own.value_factory, own.expression_factory
        colours, builder = own.find(datamodel.PowerSetType)[0], own.create_system_builder()
        record = types.create_struct_type("record", {"a": colours, "b": colours})
        row = types.create_array_type("row", record, 2)
        x = expressions.create_variable(row, "x")
        place = expressions.create_struct_ref(expressions.create_index_ref(x, 1), "a")
        equation = builder.add_equation(place, expressions.create_join([x, colours.top]))
        fields = values.create_struct(record, {"a": colours.top})
        items = values.create_array(row, [1, 2], [fields, record.top])
        self.keep([types, values, expressions, builder, builder.build().equations, record, row])
        self.keep([x, place, equation, equation.rhs, fields, items, items.values])

    # What the rules share.

    def now(self):
        """What is now is as it should be."""
        for world in self.worlds:
            world.state = state_of(world.session)

    def unchanged(self):
        for world in self.worlds:
            assert state_of(world.session) == world.state

    def keep(self, made):
        for each in made if isinstance(made, list) else [made]:
            if isinstance(each, tyve.Object) and len(self.pool) < 100:
                self.pool.append(each)

    def pick(self, place, cls=tyve.Object):
        """One of the kept objects of a class; None without one."""
        fitting = [each for each in self.pool if isinstance(each, cls)]
        return fitting[place % len(fitting)] if fitting else None

    def attempt(self, call):
        """What a call returns; None when it is refused, which is told and has changed nothing."""
        try:
            made = call()
        except tyve.Error as error:
            assert error.catalog and error.identifier and str(error)
            assert all(isinstance(each, str) for each in error.arguments)
        except REFUSED as error:
            assert type(error).__module__ == "builtins"
        else:
            self.keep(made)
            return made
        self.unchanged()
        return None

    def argument(self, draw, word):
        """For an argument or a property: mostly what is asked for."""
        kind, place = draw(st.integers(0, 9)), draw(places)
        if kind == 0:
            return draw(odd)
        if kind == 1:
            return self.interrupting(draw(st.integers(0, 6)), place)
        name = word.removesuffix(" scalar").removesuffix(" or none")
        if name in CLASSES:
            return self.pick(place, CLASSES[name] if kind > 2 else tyve.Object)
        if name in ("uint16", "int32"):
            return place % 6
        if name in ("char", "TyveFactoryString"):
            return draw(texts)
        if kind < 6:
            return draw(st.lists(texts | st.integers(1, 3), max_size=3))
        wanted = datamodel.LatticeType if kind % 2 else datamodel.Term
        some = [self.pick(place + i, wanted) for i in range(3)]
        return some[place % 3:] if kind < 8 else dict(zip("abc", some))

    def interrupting(self, kind, place):
        def run():
            world = self.worlds[place % 2]
            element = self.pick(place, orb.zero.ModelElement)
            if kind == 0:
                del self.pool[1::2]
            elif kind == 1 and element is not None:
                with contextlib.suppress(tyve.Error):
                    element.delete()
            elif kind == 2 and world.open:
                self.end(world, place, lambda transaction: transaction.rollback())
            elif kind == 3 and not world.open:
                world.session.undo()
            elif kind == 4:
                world.session.reclaim()
            elif kind == 5:
                self.keep(datamodel.Variable(world.session.model, {"name": "interrupted"}))
            elif kind == 6:
                self.given.clear()
            gc.collect()
            self.now()

        return (InterruptingIndex if place % 4 else Interrupting)(run)

    def end(self, world, place, how):
        """Ends a transaction without commit, the inner ones with it: all is as it was before it."""
        place %= len(world.open)
        ended, world.open = world.open[place:], world.open[:place]
        transaction, world.state = ended.pop(0)
        how(transaction)
        del transaction
        assert not any(inner.is_open for inner, _ in ended)

    # Everything by its description.

    @stateful.rule(data=st.data(), which=st.lists(places, max_size=6))
    def calls(self, data, which):
        for place in which:
            self.call(data, self.pick(place))
            self.now()

    def call(self, data, target):
        methods = METHODS[type(target)]
        name = data.draw(st.sampled_from(sorted(set(methods) - APART)))
        words = methods[name]["arguments"][0 if methods[name]["static"] else 1:]
        words = words[:len(words) - data.draw(st.integers(0, methods[name]["optional"]))]
        arguments = [self.argument(data.draw, word) for word in words]
        if data.draw(places) == 0:
            arguments.append(None)
        self.given = next((each for each in arguments if type(each) in (list, dict)), [])
        self.attempt(lambda: getattr(target, name)(*arguments))
        for world in self.worlds if name != "reclaim" else []:
            state = state_of(world.session)
            assert [*state][:len(world.state)] == [*world.state]
            if not name.startswith(("createInto", "add_equation")):
                assert world.state.items() <= state.items()

    @stateful.rule(data=st.data(), place=places)
    def assign(self, data, place):
        target = self.pick(place)
        known = PROPERTIES[type(target)]
        settable = [name for name in known if not known[name]["read_only"]]
        name = data.draw(st.sampled_from([*settable * 4, *known, "no"]))
        value = self.argument(data.draw, known[name]["result"] if name in known else "any")
        if name == "history_limit" and isinstance(value, int):
            value %= 5
        self.attempt(lambda: setattr(target, name, value))

    @stateful.rule(place=places, kind=st.integers(0, 6))
    def look(self, place, kind):
        view = self.pick(place, (orb.zero.Set, orb.zero.PrimitiveSet))
        self.attempt(lambda: self.interrupting(kind, place) in view)
        self.attempt(lambda: view[self.interrupting(kind, place)])

    @stateful.rule(place=places, bits=st.sets(st.integers(1, 5)))
    def give_bits(self, place, bits):
        held = self.pick(place, datamodel.PowerSet)
        if self.attempt(lambda: session.Bits.set(held, bits) or "set"):
            assert session.Bits.indices(held) == sorted(bits)

    # Changes of the model as a whole.

    @stateful.rule(place=places)
    def delete(self, place):
        element = self.pick(place, orb.zero.ModelElement)
        worlds = [each for each in self.worlds if element and each.session.model == element.model]
        if not worlds:  # it is gone, or a description, which cannot be deleted
            assert element is None or self.attempt(lambda: element.delete() or "deleted") is None
            return
        views = [getattr(element, name) for name in PROPERTIES[type(element)]]
        gone, left = {element.uuid}, worlds[0].state
        for _ in left:
            gone |= {key for key, (_, told, _) in left.items() if told["container"] in gone}
        element.delete()
        assert not element and not any(view for view in views if isinstance(view, orb.zero.Set))
        assert [*state_of(worlds[0].session)] == [key for key in left if key not in gone]

    @stateful.rule(which=st.integers(0, 1))
    def begin(self, which):
        world = self.worlds[which]
        if len(world.open) < 4:
            world.open.append((world.session.transaction(), world.state))

    @stateful.rule(which=st.integers(0, 1), place=places,
                   how=st.sampled_from(["commit", "rollback", "drop", "with"]))
    def close(self, which, place, how):
        world = self.worlds[which]
        if not world.open:
            return
        if how == "commit":
            transaction = world.open[place % len(world.open)][0]
            self.attempt(lambda: transaction.commit())
            assert transaction.is_open is (transaction != world.open[-1][0])
            if not transaction.is_open:
                world.open.pop()
                self.attempt(lambda: transaction.rollback())
            self.unchanged()
        else:
            ways = {"rollback": lambda each: each.rollback(), "drop": lambda each: None,
                    "with": lambda each: each.__exit__(KeyError, None, None)}
            self.end(world, place, ways[how])
            self.unchanged()

    @stateful.rule(which=st.integers(0, 1), steps=st.integers(1, 4))
    def undo_and_redo(self, which, steps):
        """What is taken back and made again is as it was."""
        world = self.worlds[which]
        passed = [world.state]
        while len(passed) <= steps and self.attempt(world.session.undo):
            passed.append(state_of(world.session))
        for state in passed[-2::-1]:
            assert world.session.redo() and state_of(world.session) == state
        world.state = passed[0]
        if len(passed) > 1:
            assert world.session.model.undo() and state_of(world.session) == passed[1]

    @stateful.rule(which=st.integers(0, 1))
    def reclaim(self, which):
        world = self.worlds[which]
        held = [each for each in self.pool if isinstance(each, orb.zero.ModelElement) and each]
        freed = world.session.reclaim()
        state = state_of(world.session)
        assert all(held) and freed == len(world.state) - len(state)
        assert state.items() <= world.state.items()

    @stateful.rule(place=places)
    def forget(self, place):
        """What only the pool holds ends at once."""
        if len(self.pool) > 1:
            forgotten = self.pool.pop(place % len(self.pool))
            watched = weakref.ref(forgotten)
            kept = [*self.pool, *(world.session for world in self.worlds)]
            is_kept = any(each is forgotten for each in kept)
            del kept, forgotten
            assert is_kept or watched() is None
            self.unchanged()

    @stateful.invariant()
    def settle(self):
        self.given = []
        self.now()

    def teardown(self):
        self.pool.clear()
        for world in self.worlds:
            world.__dict__.clear()
        if not sys.exc_info()[0]:  # what has failed may hold objects
            assert memory() - self.before < WEIGHT / 2


@pytest.mark.filterwarnings("ignore:It looks like `register_random`")
def test_machine():
    gc.freeze()  # what is there already, so that each collection is fast
    seed, examples = os.environ.get("MACHINE_SEED"), int(os.environ.get("MACHINE_EXAMPLES", 60))
    if seed:
        Surface._hypothesis_internal_use_seed = int(seed)
    stateful.run_state_machine_as_test(Surface, settings=hypothesis.settings(
        max_examples=examples, stateful_step_count=30, derandomize=not seed, database=None,
        deadline=None, suppress_health_check=list(hypothesis.HealthCheck)))
