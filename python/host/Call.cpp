#include "python/host/Call.h"

#include <algorithm>
#include <boost/container/small_vector.hpp>
#include <boost/core/noncopyable.hpp>
#include <span>
#include <sstream>
#include <utility>

#include "python/host/Domains.h"
#include "python/host/FromPython.h"
#include "python/host/ToPython.h"

namespace tyve::host {
namespace {

constexpr std::string_view optionalPrefix = "opt_";

/// The values of one call, which are let go of by way of the domains, as they may be the last ones
/// to hold their objects.
class Values : boost::noncopyable {
 public:
  ~Values() {
    for (Value& value : values_) Domains::getInstance().drop(std::move(value));
  }

  void add(Value value) { values_.push_back(std::move(value)); }
  std::span<const Value> all() const noexcept { return {values_.data(), values_.size()}; }
  const Value& last() const noexcept { return values_.back(); }

 private:
  boost::container::small_vector<Value, 4> values_;
};

}  // namespace

Parameters::Parameters(const Method& method) : method_(method) {
  const Signature& signature = method.getSignature();
  const std::size_t count = signature.arguments.size();
  std::istringstream names(signature.argumentNames);
  for (std::string name; names >> name && parameters_.size() < count;) {
    const std::size_t place = parameters_.size();
    parameters_.push_back(
        {name, place >= count - signature.optional, signature.arguments[place].text() == "any"});
  }
  if (parameters_.size() < count) parameters_.clear();
}

std::string Parameters::print() const {
  const Signature& signature = method_.getSignature();
  std::string text = "(";
  const auto add = [&](const std::string& name) { text += (text.size() > 1 ? ", " : "") + name; };
  const std::size_t count = signature.arguments.size(), first = method_.isStatic() ? 0 : 1;
  if (first) add("$self");
  for (std::size_t i = first; i < count; ++i) {
    std::string name = areNamed() ? parameters_[i].name : "arg" + std::to_string(i + 1 - first);
    if (name.starts_with(optionalPrefix)) name.erase(0, optionalPrefix.size());
    add(name + (i < count - signature.optional ? "" : "=None"));
  }
  if (!areNamed() && count) add("/");
  return text + ")";
}

void Parameters::refuse(const std::string& reason) const {
  throw py::type_error(method_.getName().text() + "() " + reason);
}

std::size_t Parameters::placeOf(const std::string& name) const {
  const auto isIt = [&](const Parameter& parameter) {
    return parameter.name == name || parameter.name == std::string(optionalPrefix) + name;
  };
  const auto found = std::ranges::find_if(parameters_, isIt);
  if (found == parameters_.end()) refuse("got an unexpected keyword argument '" + name + "'");
  return static_cast<std::size_t>(found - parameters_.begin());
}

std::vector<PyObject*> Parameters::arrange(PyObject* const* given, std::size_t count,
                                           PyObject* names) const {
  std::vector<PyObject*> places(given, given + count);
  if (places.size() < parameters_.size()) places.resize(parameters_.size());
  for (Py_ssize_t i = 0; names && i < PyTuple_GET_SIZE(names); ++i) {
    const std::string name = textOf(PyTuple_GET_ITEM(names, i));
    PyObject*& place = places[placeOf(name)];
    if (place) refuse("got multiple values for argument '" + name + "'");
    place = given[count + static_cast<std::size_t>(i)];
  }
  std::vector<PyObject*> arranged;
  const Parameter* gap = nullptr;  // one that cannot be told apart from those behind it
  for (std::size_t i = 0; i < places.size(); ++i) {
    const Parameter* const parameter = i < parameters_.size() ? &parameters_[i] : nullptr;
    if (!places[i] || (parameter && parameter->isOptional && places[i] == Py_None)) {
      if (!gap && !(parameter->isOptional && parameter->isAny)) gap = parameter;
    } else {
      if (gap) refuse("is missing the argument '" + gap->name + "'");
      arranged.push_back(places[i]);
    }
  }
  return arranged;
}

std::size_t Parameters::withoutNones(PyObject* const* given, std::size_t count) const noexcept {
  const Signature& signature = method_.getSignature();
  const std::size_t most = signature.arguments.size(), least = most - signature.optional;
  while (count > least && count <= most && given[count - 1] == Py_None) --count;
  return count;
}

py::object call(const Parameters& parameters, PyObject* const* given, std::size_t count,
                PyObject* names) {
  Domains::Busy busy;  // until the values are gone
  Values values;
  if (parameters.areNamed() || names) {
    for (PyObject* const object : parameters.arrange(given, count, names))
      values.add(fromPython(object));
  } else {
    count = parameters.withoutNones(given, count);
    for (std::size_t i = 0; i < count; ++i) values.add(fromPython(given[i]));
  }

  const Method& method = parameters.method();
  if (method.isLong()) {
    busy.begin(values.all());
    values.add(withoutLock([&] { return method.call(values.all()); }));
  } else {
    Domains::getInstance().await(values.all());
    values.add(method.call(values.all()));
  }
  const Signature& signature = method.getSignature();
  if (!signature.result) return py::none();
  return signature.isArray ? listToPython(values.last()) : toPython(values.last());
}

py::object read(const Property& property, const Value& object) {
  Domains::getInstance().await(object);
  Values values;
  values.add(property.get(object));
  return toPython(values.last());
}

void write(const Property& property, Value object, Value value) {
  Values values;
  values.add(std::move(object));
  values.add(std::move(value));
  Domains::getInstance().await(values.all());
  property.set(values.all()[0], values.all()[1]);
}

}  // namespace tyve::host
