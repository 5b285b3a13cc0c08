import gc
import os
import types

import orb.zero
import pytest
import tyve
from torvan import datamodel


@pytest.fixture(scope="session")
def probe():
    """The module of the package that the tests bring along."""
    module = types.ModuleType("test.probe")
    tyve.offer(vars(module), os.environ["TYVE_PROBE"], "HBInitialize_test_probe")
    return module


@pytest.fixture
def model():
    yield orb.zero.Model()
    gc.collect()


@pytest.fixture
def colours(model):
    universe = ["red", "green", "red"]
    return datamodel.PowerSetType(model, {"name": "colours", "universe": universe})
