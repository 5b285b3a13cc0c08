#pragma once

#include <cstddef>
#include <utility>

#include <orb/zero/Api.h>
#include <orb/zero/Uuid.h>
#include <orb/zero/WorkQueue.h>
#include <orb/zero/query/SearchClassMatchMode.h>

namespace orb::zero {

class ElementRange;
class ModelConstellation;
class ModelElement;
class Transaction;
namespace meta {
struct ClassInfo;
}

/// Handle of a model, the container of elements. The model ends, and all its elements with it, when
/// its last handle and the last outside handle of any of its elements are gone. Two handles are
/// equal when they refer to the same model; the identity of a model need not be unique.
///
/// A model and its elements are used from one thread at a time.
class ORB_ZERO_API Model {
 public:
  class Impl;

  /// Makes an empty model.
  static Model create(const uuid& identity, const ModelConstellation& constellation,
                      const WorkQueueFactory& workQueueFactory);
  /// The same with the nil identity, a constellation of its own and the default work queue.
  static Model create();

  explicit Model(Impl* impl) noexcept;
  Model(const Model& other) noexcept;
  Model(Model&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}
  Model& operator=(Model other) noexcept { return std::swap(impl_, other.impl_), *this; }
  ~Model();

  const uuid& getUuid() const noexcept;
  /// Number of live elements.
  std::size_t size() const noexcept;
  /// The live elements, all or those of a class, in the order of their creation.
  ElementRange elements() const;
  ElementRange elements(
      const meta::ClassInfo& type,
      query::SearchClassMatchMode mode = query::SearchClassMatchMode::WithSubclasses) const;
  /// The live element of this UUID, or an empty handle. The first look-up indexes the model, later
  /// ones only what has come since.
  ModelElement find(const uuid& id) const;
  /// A UUID for a new element.
  uuid newUuid() const;
  /// Frees the elements that nothing can reach any more and whose class allows it: values that no
  /// outside handle and no slot holds, and what these alone held. Returns their number. Takes time
  /// proportional to the size of the model: call it whenever the size has doubled. Elements that
  /// are older than an open transaction stay.
  std::size_t reclaim() const;
  /// Opens a transaction that is rolled back when it leaves its scope uncommitted.
  [[nodiscard]] Transaction beginTransaction() const;

  Impl* operator->() const noexcept { return impl_; }
  friend bool operator==(const Model& a, const Model& b) noexcept { return a.impl_ == b.impl_; }

 private:
  Impl* impl_;
};

}  // namespace orb::zero
