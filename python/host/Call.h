#pragma once

#include <pybind11/pybind11.h>

#include <cstddef>
#include <string>
#include <vector>

#include <tyve/Member.h>

namespace tyve::host {

namespace py = pybind11;

/// The arguments of a callable as Python gives them. Where its signature names them they may be
/// given by name, those that may be left out ("opt_init") also by what follows ("init").
class Parameters {
 public:
  /// Of a method, which lives as long as the class system.
  explicit Parameters(const Method& method);

  const Method& method() const noexcept { return method_; }

  /// As Python writes them: "($self, arg1, arg2=None, /)", "(model, init=None, uuid=None)".
  std::string print() const;

  /// The arguments in their places, from what Python calls with: those by place, then those by
  /// name, see the vectorcall protocol. One that may be left out is left out when it is None; those
  /// behind it move up, as they are told apart by their kind. Throws `TypeError` for names that are
  /// unknown, given twice or missing. The objects are those of the caller.
  std::vector<PyObject*> arrange(PyObject* const* given, std::size_t count, PyObject* names) const;
  /// The same where none are named: how many are left without those at the end that may be left out
  /// and are None. The others keep their places, which are all that tells them apart.
  std::size_t withoutNones(PyObject* const* given, std::size_t count) const noexcept;
  bool areNamed() const noexcept { return !parameters_.empty(); }

 private:
  struct Parameter {
    std::string name;
    bool isOptional;
    bool isAny;
  };

  std::size_t placeOf(const std::string& name) const;
  [[noreturn]] void refuse(const std::string& reason) const;

  const Method& method_;
  std::vector<Parameter> parameters_;  // none where the signature names none
};

/// Calls a method on behalf of Python; None comes of one without a result. A long one lets other
/// threads work meanwhile.
py::object call(const Parameters& parameters, PyObject* const* given, std::size_t count,
                PyObject* names);
/// Reads or sets a property.
py::object read(const Property& property, const Value& object);
void write(const Property& property, Value object, Value value);

}  // namespace tyve::host
