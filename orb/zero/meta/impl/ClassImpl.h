#pragma once

#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/impl/OperationImpl.h>
#include <orb/zero/meta/impl/PropertyImpl.h>

namespace orb::zero::meta {

class ORB_ZERO_API Class::Impl : public ImplOf<Class> {
  bool isAbstract_ = false;
  Slot<Class> superclass_;
  OwnedSequence<Property> properties_{*this, &Class::properties};
  OwnedSequence<Operation> operations_{*this, &Class::operations};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "orb.zero.meta.Class",
      "e82ada8b-15f4-37a3-bc46-92bb11be45a6",
      Row{&Impl::isAbstract_, "isAbstract", 2, "257e80f6-a5aa-31ed-b6f8-65527ab9017c",
          Ordered | Unique},
      Row{&Impl::superclass_, "superclass", 3, "fee1582b-0a45-32dd-aa82-5baa4bf52d50",
          Ordered | Unique},
      Row{&Impl::properties_, "properties", 4, "e5b14373-b2f2-3a11-bc17-41273ea6c0a8", Ordered},
      Row{&Impl::operations_, "operations", 5, "d8d2df3b-0c28-3a8b-b585-0f14dc137735", Ordered}};

  bool isAbstract() const noexcept { return isAbstract_; }
  void setIsAbstract(bool value) { set<&Impl::isAbstract_>(value); }
  /// Empty for the root.
  const Class& getSuperclass() const noexcept { return superclass_; }
  void setSuperclass(const Class& value) { set<&Impl::superclass_>(value); }

  OwnedSequence<Property>& getProperties() noexcept { return properties_; }
  const OwnedSequence<Property>& getProperties() const noexcept { return properties_; }
  /// The property at this position, also an inherited one; empty if there is none.
  Property getPropertyByIndex(int position) const;

  OwnedSequence<Operation>& getOperations() noexcept { return operations_; }
  const OwnedSequence<Operation>& getOperations() const noexcept { return operations_; }

  /// Null for a class that was described without.
  const ClassInfo* getInfo() const noexcept { return info_; }

 private:
  friend class AbstractMetaPackage;
  const ClassInfo* info_ = nullptr;
};

inline Class Property::Impl::getOwningType() const { return Class(getContainer()); }
inline void Property::Impl::setOwningType(const Class& value) {
  value->getProperties().add(This());
}
inline void Operation::Impl::setOwningType(const Class& value) {
  value->getOperations().add(This());
}

}  // namespace orb::zero::meta
