"""Threads, and the end of the interpreter with objects and threads left."""

import gc
import subprocess
import sys
import threading
import time


def together(*calls):
    threads = [threading.Thread(target=call) for call in calls]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def test_long_calls_run_side_by_side(probe):
    first, second = probe.Thing(0), probe.Thing(1)
    began = time.monotonic()
    together(lambda: first.work(400), lambda: second.work(400))
    assert time.monotonic() - began < 0.75


def test_one_domain_is_used_by_one_thread_at_a_time(probe):
    things = [probe.Thing(domain) for domain in (0, 1, 0, 1)]

    def use(seed):
        for turn in range(60):
            thing, other = things[(seed + turn) % 4], things[(seed * 3 + turn) % 4]
            thing.work(1, other)
            assert thing.self == thing and thing in {thing: 0} and thing
            things[turn % 4] = probe.Thing(turn % 2)  # lets go of one that may be in use
            probe.Thing.echo([{"deep": thing}])

    together(*(lambda seed=seed: use(seed) for seed in range(4)))
    things.clear()
    gc.collect()
    assert probe.Thing.collisions() == 0
    assert probe.Thing.living() == 0


def test_the_interpreter_ends_with_objects_left():
    script = """
import atexit, sys, threading, orb.zero, torvan.datamodel as datamodel
class Cycle:
    def __del__(self): self.held.type, self.held.le(self.held), repr(self.held)
model = orb.zero.Model()
kept = Cycle()
def new_set(model):
    return datamodel.PowerSet(model, {"type": datamodel.PowerSetType(model, {"universe": ["a"]})})
kept.kept, kept.held = kept, new_set(model)
sys.modules["held"] = kept
atexit.register(lambda: print(kept.held.type.universe[0]))
threading.Thread(target=lambda: [kept.held.clone() for _ in range(2000)]).start()
def forever():
    own = new_set(orb.zero.Model())
    while True: own.clone()
threading.Thread(target=forever, daemon=True).start()
threading.Thread(target=lambda: [kept.held.clone() for _ in iter(int, 1)], daemon=True).start()
"""
    for _ in range(5):
        done = subprocess.run([sys.executable, "-c", script],
                              capture_output=True, text=True, timeout=60)
        assert (done.returncode, done.stdout) == (0, "a\n"), done.stderr


def test_the_interpreter_ends_in_a_transaction():
    script = """
from torvan.session import Session
def step():
    with Session().transaction():
        yield
left = step()
next(left)
"""
    subprocess.run([sys.executable, "-c", script], check=True, timeout=60)
