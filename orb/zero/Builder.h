#pragma once

#include <boost/dynamic_bitset/dynamic_bitset.hpp>
#include <cstdint>
#include <memory>
#include <vector>

#include <orb/zero/ModelElement.h>
#include <orb/zero/Transaction.h>

namespace orb::zero {

/// Stages an element before it becomes part of its model: values are given to the element itself,
/// builders of elements to own are kept aside. A builder makes one element; one that is dropped
/// leaves nothing behind.
class ORB_ZERO_API ModelElement::Builder {
 public:
  class Orchestrator;

  /// Raises "InvalidValue" for an abstract class.
  Builder(const Model& model, const meta::ClassInfo& type);
  Builder(const Builder&) = delete;
  Builder& operator=(const Builder&) = delete;
  virtual ~Builder();

  const meta::ClassInfo& getMetaClass() const noexcept { return class_; }
  /// Gives the builder of an element to be created into the owned collection. Raises
  /// "InvalidValue" when there is no builder or the property is no owned collection of the class,
  /// and "CannotCreateCrossModelAssociation" for a builder of another model; the caller keeps it
  /// then.
  void add(const meta::PropertyInfo& property, std::unique_ptr<Builder>&& child);

  /// Gives a value by the descriptor of its property: a single one, or one more of a collection,
  /// or, as a sequence, all of it. Returns the position of the property; -1 when the class lacks
  /// it. Raises "CannotCastIncompatibleTypes" for a value of another type, and what the setter
  /// raises.
  int setOrAdd(const meta::PropertyInfo& property, const Value& value);
  /// Gives the builder of an element to own, and takes it over; see `add`.
  int setOrAdd(const meta::PropertyInfo& property, std::unique_ptr<Builder>& child);
  /// Takes back what was given for the property.
  int doClear(const meta::PropertyInfo& property);
  /// Which positions were given a value by `setOrAdd`; of no size before the first.
  const boost::dynamic_bitset<>& given() const noexcept { return given_; }

  /// Makes the element and those it is to own, as one unit. What it was given and is gone by now,
  /// as a proxy that was resolved, is left out. Raises "InvalidValue" the second time,
  /// "UniquenessConstraint" when a live element of the model has the given UUID or two children
  /// have one key. A frozen model refuses it, and may be asked again when it is thawed.
  ModelElement create();
  ModelElement create(const uuid& id);

 protected:
  Impl* staged() const;

 private:
  struct Child {
    const meta::PropertyInfo* property;
    std::unique_ptr<Builder> builder;
  };
  friend class Impl;
  int markGiven(int position, bool isGiven);
  static void checkModel(const Builder& builder, const Model& model);
  ModelElement adopt(const uuid& id);
  void cascadeCreation(Impl& owner);
  void dropLost();

  Model model_;
  const meta::ClassInfo& class_;
  std::unique_ptr<Impl, Impl::Disposer> staged_;
  std::vector<Child> children_;
  boost::dynamic_bitset<> given_;
  std::uint64_t losses_;  // of the model when the builder was made
};

/// One unit of creation: elements created by builders through it are kept by `commit`, and gone
/// without. Inside a unit in progress it is part of that one.
class ORB_ZERO_API ModelElement::Builder::Orchestrator {
 public:
  explicit Orchestrator(const Model& model) : model_(model), unit_(model) {}

  /// Creates the element of the builder, and those it is to own. Raises
  /// "CannotCreateCrossModelAssociation" for a builder of another model, and what `create` of the
  /// builder does.
  ModelElement create(Builder& builder, const uuid& id);
  /// The element created first; empty before.
  const ModelElement& getCreatedElement() const noexcept { return created_; }
  void commit() { unit_.commit(); }

 private:
  Model model_;
  Transaction unit_;
  ModelElement created_;
};

}  // namespace orb::zero
