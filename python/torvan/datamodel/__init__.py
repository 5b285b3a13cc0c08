"""The data model: types, values, expressions and equations."""

import orb.zero  # what the classes here are derived from
import tyve

tyve.offer(globals(), "libtorvan_bindings.so.0", "HBInitialize_torvan_datamodel")
