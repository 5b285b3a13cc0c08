#pragma once

#include <exception>

#include <orb/zero/ModelElement.h>

namespace orb::zero {

/// A single change as a transaction of its own, where the model needs one: nobody else has opened
/// one, and listeners or the history want to know. Raises "CannotModifyFrozenModel" in a frozen
/// model. Costs a test otherwise. Without `commit` it is rolled back.
class Unit {
 public:
  explicit Unit(const ModelElement::Impl& element) : Unit(element.model()) {}
  explicit Unit(Model::Impl& model) {
    if (model.transactions().needsUnit()) [[unlikely]] {
      era_ = model.transactions().begin();
      model_ = &model;
    }
  }
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;
  ~Unit() {
    if (model_) [[unlikely]]
      model_->transactions().rollback(era_);
  }
  void commit() {
    if (!model_) [[likely]]
      return;
    model_->transactions().commit(era_);
    model_ = nullptr;
  }

 private:
  Model::Impl* model_ = nullptr;
  std::uint64_t era_ = 0;
};

/// Several changes that listeners and the history are to see as one, without being all or nothing:
/// what was changed before an error stays.
class Batch {
 public:
  explicit Batch(const Model& model) : unit_(*model.operator->()) {}
  explicit Batch(const ModelElement::Impl& element) : unit_(element) {}
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;
  ~Batch() noexcept(false) {
    try {
      unit_.commit();
    } catch (...) {
      if (std::uncaught_exceptions() == errors_) throw;  // or else the first error is told
    }
  }

 private:
  Unit unit_;
  int errors_ = std::uncaught_exceptions();
};

}  // namespace orb::zero
