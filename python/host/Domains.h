#pragma once

#include <pybind11/pybind11.h>

#include <boost/core/noncopyable.hpp>

#include <atomic>
#include <exception>
#include <optional>
#include <span>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include <tyve/Value.h>

namespace tyve::host {

namespace py = pybind11;

/// Which domains of objects (see `NativeObject::domain`) long calls are busy with. Such a call runs
/// without the interpreter lock; other threads go on until they touch an object of its domains, and
/// then wait. A call that is given no object touches no domain that another one may be busy with.
///
/// All members are called under the interpreter lock, which guards what is kept here.
class Domains : boost::noncopyable {
 public:
  static Domains& getInstance();

  /// Waits until no other thread is busy with the domains of these values. Throws
  /// `std::runtime_error` instead of waiting when the interpreter ends.
  void await(std::span<const Value> values) {
    if (!uses_.empty()) awaitFree(values);
  }
  void await(const Value& value) { await(std::span(&value, 1)); }

  /// Lets go of a value; of an object that another thread is busy with, when that is done.
  void drop(Value&& value) noexcept {
    if (!uses_.empty() && keep(value)) return;
    value = Value();
  }

  /// What a long call is busy with, from `begin` to the end of its life.
  class Busy : boost::noncopyable {
   public:
    ~Busy() {
      if (!domains_.empty()) getInstance().end(domains_);
    }
    /// Waits for the domains of these values and marks them.
    void begin(std::span<const Value> values) { getInstance().begin(values, domains_); }

   private:
    std::vector<const void*> domains_;
  };

 private:
  struct Use {
    unsigned long thread;
    std::vector<Value> dropped;
  };

  Domains() = default;
  ~Domains() = default;
  Use* findOther(std::span<const Value> values);
  void awaitFree(std::span<const Value> values);
  bool keep(Value& value) noexcept;
  void begin(std::span<const Value> values, std::vector<const void*>& marked);
  void end(std::span<const void* const> domains) noexcept;

  std::unordered_map<const void*, Use> uses_;
  std::atomic<int> ended_ = 0;  // how many uses have, for those who wait
};

/// Takes the interpreter lock again. When the interpreter ends meanwhile, it does not return.
void takeLock(PyThreadState* thread);

/// Calls without the interpreter lock. The thread that ends the interpreter keeps it, as it would
/// wait for itself.
template <class Call>
auto withoutLock(Call call) {
  if (_Py_IsFinalizing()) return call();
  std::optional<std::invoke_result_t<Call>> result;
  std::exception_ptr failure;
  PyThreadState* const thread = PyEval_SaveThread();
  try {
    result.emplace(call());
  } catch (const std::exception&) {
    failure = std::current_exception();
  }
  takeLock(thread);
  if (failure) std::rethrow_exception(failure);
  return *std::move(result);
}

}  // namespace tyve::host
