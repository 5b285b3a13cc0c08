"""The descriptions of models: classes, properties, operations."""

import tyve

tyve.offer(globals(), "libtorvan_bindings.so.0", "HBInitialize_torvan_datamodel")
