"""Models, their elements and collections."""

from collections import abc

import tyve
from orb.zero import protocols

tyve.offer(globals(), "libtorvan_bindings.so.0", "HBInitialize_torvan_datamodel")

for _name, _protocol, _interface in (
    ("Set", protocols.Listing, abc.Collection),
    ("Sequence", protocols.Places, abc.Sequence),
    ("Map", protocols.Keys, abc.Mapping),
    ("PrimitiveSet", protocols.Places, abc.Sequence),
):
    tyve.extend(globals()[_name], _protocol)
    _interface.register(globals()[_name])
