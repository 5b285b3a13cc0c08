"""Slices every file of a corpus with torvan-slice and with the oracle, and compares block by block;
and with torvan-slice again from the system that it saved.

usage: compare.py TORVAN_SLICE FOLDERS
"""
import json
import pathlib
import subprocess
import sys
import tempfile

import oracle

MODES = ("direct", "data", "activation")


def criteria_of(path):
    """All leaf blocks, their input ports, and the first elements of these."""
    sizes = oracle.network(path, "data").sizes
    for leaf in oracle.read(path):
        yield leaf.name
        for port in leaf.select(oracle.DATA_IN, oracle.IMPLICIT[0]):
            yield f"{leaf.name}.in{port.number}"
            for element in range(1, min(sizes[port] or 0, 8) + 1):
                yield f"{leaf.name}.in{port.number}[{element}]"


def slices(program, path, deps, direction, criteria, *options):
    words = [word for criterion in criteria for word in ("--criterion", criterion)]
    result = subprocess.run([program, path, "--format", "json", "--deps", deps, f"--{direction}", *words, *options],
                            capture_output=True, text=True, check=False)
    if result.returncode:
        return result.stderr.strip() or f"exit status {result.returncode}"
    return {line["criterion"]: line["blocks"] for line in map(json.loads, result.stdout.splitlines())}


def differences(program, path, saved):
    """What the program says otherwise than the oracle, one line each."""
    wanted = {"backward": list(criteria_of(path)), "forward": [leaf.name for leaf in oracle.read(path)]}
    if not wanted["forward"]:
        return
    for direction, criteria in wanted.items():
        save = ("--save", saved) if direction == "backward" else ()
        found = {deps: slices(program, path, deps, direction, criteria, *(save if deps == "data" else ()))
                 for deps in MODES}
        if slices(program, saved, "data", direction, criteria) != found["data"]:
            yield f"{direction}: the saved system gives other slices"
        for deps, sliced in found.items():
            if isinstance(sliced, str):
                yield f"{deps}: {sliced}"
                return
            for criterion in criteria:
                try:
                    expected = oracle.slice(path, criterion, deps, direction)
                except LookupError as error:
                    expected = [str(error)]
                if sliced.get(criterion) != expected:
                    yield f"{deps} {direction} {criterion}: {set(sliced.get(criterion, [])) ^ set(expected)}"


def main(program, *folders):
    paths = sorted(str(path) for folder in folders for path in pathlib.Path(folder).rglob("*.?cos"))
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in paths:
            oracle.read.cache_clear()
            oracle.network.cache_clear()
            lines = list(differences(program, path, f"{folder}/saved"))
            for line in lines:
                print(f"{path}: {line}")
            failed += bool(lines)
    print(f"{len(paths) - failed} passed, {failed} failed")
    return 0 if paths and not failed else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
