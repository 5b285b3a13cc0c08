#include "python/host/Domains.h"

#include <chrono>
#include <stdexcept>
#include <thread>

namespace tyve::host {
namespace {

/// Shows the domains of all objects in a value until the visitor returns true; whether it did.
template <class Visit>
bool anyDomain(const Value& value, Visit visit) {
  const auto anyOf = [&](std::size_t count, auto item) {
    for (std::size_t i = 0; i < count; ++i)
      if (anyDomain(item(i), visit)) return true;
    return false;
  };
  switch (value.kind()) {
    case Kind::Object:
      if (!value.isScalar())
        return anyOf(value.count(), [&](std::size_t i) { return value.at(i); });
      return value.native()->domain() && visit(value.native()->domain());
    case Kind::Cell:
      return anyOf(value.count(), [&](std::size_t i) { return value.cells()[i]; });
    case Kind::Struct:
      return anyOf(value.count() * value.fields().size(), [&](std::size_t i) {
        return value.field(i % value.fields().size(), i / value.fields().size());
      });
    default:
      return false;
  }
}

}  // namespace

Domains& Domains::getInstance() {
  static Domains& instance = *new Domains;  // objects may go after everything else has
  return instance;
}

/// A use of one of the domains by another thread; null when there is none.
Domains::Use* Domains::findOther(std::span<const Value> values) {
  Use* other = nullptr;
  const auto isOther = [&](const void* domain) {
    const auto found = uses_.find(domain);
    if (found == uses_.end() || found->second.thread == PyThread_get_thread_ident()) return false;
    other = &found->second;
    return true;
  };
  for (const Value& value : values)
    if (anyDomain(value, isOther)) break;
  return other;
}

void Domains::awaitFree(std::span<const Value> values) {
  while (findOther(values)) {
    if (_Py_IsFinalizing())
      throw std::runtime_error("an object is in use by a thread that outlives the interpreter");
    const int seen = ended_;
    PyThreadState* const thread = PyEval_SaveThread();
    ended_.wait(seen);
    takeLock(thread);
  }
}

bool Domains::keep(Value& value) noexcept {
  Use* const other = findOther({&value, 1});
  if (other) other->dropped.push_back(std::move(value));
  return other;
}

void Domains::begin(std::span<const Value> values, std::vector<const void*>& marked) {
  awaitFree(values);
  for (const Value& value : values)
    anyDomain(value, [&](const void* domain) {
      marked.reserve(marked.size() + 1);
      if (uses_.try_emplace(domain, Use{PyThread_get_thread_ident(), {}}).second)
        marked.push_back(domain);
      return false;
    });
}

void Domains::end(std::span<const void* const> domains) noexcept {
  if (!PyGILState_Check()) return;  // the interpreter has ended under the call
  for (const void* const domain : domains) {
    auto use = uses_.extract(domain);
    for (Value& value : use.mapped().dropped) drop(std::move(value));
  }
  ++ended_;
  ended_.notify_all();
}

void takeLock(PyThreadState* thread) {
  while (_Py_IsFinalizing()) std::this_thread::sleep_for(std::chrono::hours(1));
  PyEval_RestoreThread(thread);
}

}  // namespace tyve::host
