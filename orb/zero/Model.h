#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include <orb/zero/Api.h>
#include <orb/zero/Uuid.h>
#include <orb/zero/WorkQueue.h>
#include <orb/zero/query/SearchClassMatchMode.h>

namespace orb::zero {

class ElementRange;
class ModelConstellation;
class ModelElement;
class ModelListener;
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
  /// What keeps a model: its handles and the elements held outside.
  class Count;
  class Freezer;

  /// Makes an empty model.
  static Model create(const uuid& identity, const ModelConstellation& constellation,
                      const WorkQueueFactory& workQueueFactory);
  /// The same with the nil identity, a constellation of its own and the default work queue.
  static Model create();

  explicit Model(Impl* impl) noexcept;
  Model(const Model& other) noexcept;
  Model(Model&& other) noexcept : count_(std::exchange(other.count_, nullptr)) {}
  Model& operator=(Model other) noexcept { return std::swap(count_, other.count_), *this; }
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
  /// outside handle and no slot holds, anonymous types that only their own top and bottom refer to,
  /// and what these alone held. Returns their number. Takes time proportional to the size of the
  /// model: call it whenever the size has doubled. Elements that are older than an open transaction
  /// stay.
  std::size_t reclaim() const;
  /// The stand-in for an element of this class and UUID that is not there: the one that the model
  /// has, or a new one. Raises "InvalidValue" for an abstract class, and when the model has a proxy
  /// of this UUID for another class.
  ModelElement createProxy(const meta::ClassInfo& type, const uuid& id) const;

  // Listeners, history and freezing change between transactions only; in an open one they raise
  // "TransactionInProgress".

  /// Has the listener told of every committed outermost transaction, and of every single change
  /// outside of one, through the work queue. A change of a collection is told with all that it held
  /// before and holds now, and so takes time proportional to its size.
  void addListener(std::shared_ptr<ModelListener> listener) const;
  void removeListener(const std::shared_ptr<ModelListener>& listener) const;

  /// Keeps the latest committed transactions, so many at most, and single changes like them, for
  /// `undo` and `redo`; 0, as at first, keeps none. Elements that these know are not reclaimed.
  void setHistoryLimit(std::size_t steps) const;
  std::size_t historyLimit() const noexcept;
  /// Takes the latest transaction back; false when none is kept. Listeners are told.
  bool undo() const;
  /// Makes again what was taken back last; false when there is none, as after any other change.
  bool redo() const;
  std::size_t undoSteps() const noexcept;
  std::size_t redoSteps() const noexcept;

  /// Opens a transaction that is rolled back when it leaves its scope uncommitted.
  [[nodiscard]] Transaction beginTransaction() const;

  Impl* operator->() const noexcept;  // defined with the Impl
  friend bool operator==(const Model& a, const Model& b) noexcept { return a.count_ == b.count_; }

 private:
  Count* count_;
};

class ORB_ZERO_API Model::Count {
 public:
  void hold() noexcept { ++held_; }
  /// The last one ends the model.
  void release() noexcept {
    if (--held_ == 0) end();
  }

 protected:
  Count() noexcept = default;
  ~Count() = default;

 private:
  void end() noexcept;

  std::size_t held_ = 0;
};

inline Model::Model(const Model& other) noexcept : count_(other.count_) {
  if (count_) count_->hold();
}
inline Model::~Model() {
  if (count_) count_->release();
}

/// Freezes models: every change of a frozen one raises "CannotModifyFrozenModel".
class ORB_ZERO_API Model::Freezer {
 public:
  static void freeze(const Model& model);
  static bool isFrozen(const Model& model) noexcept;

  /// Lets a frozen model be changed as long as one of these lives, and until the end of the
  /// transaction that is open then.
  class ORB_ZERO_API Thaw {
   public:
    explicit Thaw(const Model& model);
    Thaw(const Thaw&) = delete;
    Thaw& operator=(const Thaw&) = delete;
    ~Thaw();

   private:
    Model model_;
  };
  [[nodiscard]] static Thaw thaw(const Model& model) { return Thaw(model); }
};

}  // namespace orb::zero
