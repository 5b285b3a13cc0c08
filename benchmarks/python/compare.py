"""What calls from Python cost beside the same bound by hand, in one process and taking turns.

Run as `./dev bench python`. Prints the cheapest of many runs; timings fail nothing.
"""

import subprocess
import sys
import timeit

import direct

from torvan.session import Session

CALLS, TURNS = 20_000, 60


def our_sets():
    session = Session()
    of_type = session.type_factory.create_power_set_type("universe", 64)
    return tuple(session.value_factory.create_power_set(of_type, bits) for bits in (1, 3))


def nanoseconds(statement, names):
    """The cheapest of many runs of a statement over each of several sets of names, in turn."""
    timers = [timeit.Timer(statement, globals=each) for each in names]
    runs = [[timer.timeit(CALLS) for timer in timers] for _ in range(TURNS)]
    return [min(column) / CALLS * 1e9 for column in zip(*runs)]


def milliseconds_of_import():
    """Of the package over a bare interpreter."""
    def start(statement):
        command = [sys.executable, "-c", statement]
        return timeit.timeit(lambda: subprocess.run(command, check=True), number=1) * 1e3

    runs = [(start("import torvan.datamodel"), start("pass")) for _ in range(15)]
    return min(ours for ours, _ in runs) - min(bare for _, bare in runs)


def main():
    names = [dict(zip("ab", sets)) for sets in (our_sets(), direct.make_sets())]
    for each in names:
        each["t"] = each["a"].type
    print(f"{'':16} {'ours':>7} {'by hand':>8} {'ratio':>6} {'target':>7}")
    for statement, target in (("a.le(b)", 2), ("a.type", 1.5), ("t.name", 1.5),
                              ("t.numElems", 1.5)):
        ours, by_hand = nanoseconds(statement, names)
        print(f"{statement:16} {ours:4.0f} ns {by_hand:5.0f} ns {ours / by_hand:6.2f} {target:7}")
    print(f"{'import':16} {milliseconds_of_import():4.0f} ms {'':15} {'50 ms':>7}")


if __name__ == "__main__":
    main()
