#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include <tyve/COSClassInfo.h>

#include "python/host/Call.h"

namespace tyve::host {

namespace py = pybind11;

/// A class of the class system and the Python class made from its description.
struct HostClass {
  const COSClassInfo* info;
  PyTypeObject* type;
  std::optional<Parameters> constructor;                    ///< none for an abstract class
  std::vector<std::pair<std::int32_t, PyObject*>> members;  ///< of an enumeration
};

/// The Python classes, each made when it is first needed and kept for good. Under the interpreter
/// lock.
class Classes {
 public:
  static Classes& getInstance();
  Classes(const Classes&) = delete;
  Classes& operator=(const Classes&) = delete;

  /// Raises "UnknownClass" when there is none.
  const HostClass& get(Name name);
  /// Null for a Python class that is none of them.
  const HostClass* find(PyTypeObject* type) const noexcept;

  /// Whether a class is being derived here, and not by a user.
  bool isMakingClass() const noexcept { return isMakingClass_; }

 private:
  Classes() = default;
  ~Classes() = default;
  std::unique_ptr<HostClass> make(const COSClassInfo& info);
  py::object makeClass(const COSClassInfo& info);

  std::unordered_map<Name, std::unique_ptr<const HostClass>> byName_;
  std::unordered_map<PyTypeObject*, const HostClass*> byType_;
  bool isMakingClass_ = false;
};

}  // namespace tyve::host
