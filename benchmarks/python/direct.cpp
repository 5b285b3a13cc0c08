#include <pybind11/pybind11.h>
#include <torvan/datamodel.h>

// A few operations bound by hand, for `compare.py`.

namespace py = pybind11;
using namespace torvan::datamodel;

namespace {

/// Two sets over one universe, the first one below the second.
py::tuple makeSets() {
  const Session session;
  const PowerSetType type = session.typeFactory()->createPowerSetType("universe", 64);
  return py::make_tuple(session.valueFactory()->createPowerSet(type, BitSet(64, 1)),
                        session.valueFactory()->createPowerSet(type, BitSet(64, 3)));
}

}  // namespace

PYBIND11_MODULE(direct, module) {
  py::enum_<boolean3>(module, "boolean3")
      .value("T", boolean3::T)
      .value("F", boolean3::F)
      .value("NA", boolean3::NA);
  py::class_<LatticeType>(module, "LatticeType")
      .def_property_readonly("name", [](const LatticeType& type) { return type->getName(); })
      .def_property_readonly("numElems",
                             [](const LatticeType& type) { return type->getNumElems(); });
  py::class_<PowerSet>(module, "PowerSet")
      .def("le", [](const PowerSet& a, const PowerSet& b) { return a.le(b); })
      .def_property_readonly("type", [](const PowerSet& set) { return set->getType(); });
  module.def("make_sets", &makeSets);
}
