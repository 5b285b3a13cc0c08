"""Sessions: a model, the factories that fill it, transactions, queries, files, and bits."""

import torvan.datamodel  # what the factories make
import tyve

tyve.offer(globals(), "libtorvan_bindings.so.0", "HBInitialize_torvan_datamodel")

import torvan.session.extensions  # of what was offered
