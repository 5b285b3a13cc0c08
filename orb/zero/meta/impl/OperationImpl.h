#pragma once

#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/impl/TypedElementImpl.h>

namespace orb::zero::meta {

class ORB_ZERO_API Argument::Impl : public ImplOf<Argument> {
  bool isInput_ = false;

 public:
  static constexpr Table table{
      Instances::Concrete, "orb.zero.meta.Argument", "4b8ccd1f-c4fb-38f3-a5fe-332d14c12657",
      Row{&Impl::isInput_, "isInput", 6, "dfe86fab-8a91-39ad-bd55-959b7903eeb6", Ordered | Unique}};

  bool isInput() const noexcept { return isInput_; }
  void setIsInput(bool value) { set<&Impl::isInput_>(value); }

  Operation getOperation() const { return Operation(getContainer()); }
  void setOperation(const Operation& value);
};

class ORB_ZERO_API Operation::Impl : public ImplOf<Operation> {
  bool isAbstract_ = false;
  bool isStatic_ = false;
  bool isPublic_ = true;
  bool isEvent_ = false;
  OwnedSequence<Argument> arguments_{*this, &Operation::arguments};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "orb.zero.meta.Operation",
      "d55a63c2-3af0-3cbe-85d2-6bca4ac4c807",
      Row{&Impl::isAbstract_, "isAbstract", 6, "8eca33bd-c59b-3fcd-b49d-c310e5fd0ccf",
          Ordered | Unique},
      Row{&Impl::isStatic_, "isStatic", 7, "0a2cc140-1d4f-32d9-a0cf-b50891918d2e",
          Ordered | Unique},
      Row{&Impl::isPublic_, "isPublic", 8, "30c53459-e314-3b37-b3da-88724844906c",
          Ordered | Unique},
      Row{&Impl::isEvent_, "isEvent", 9, "b0540647-e32b-338c-8796-c79f0cc63ef5", Ordered | Unique},
      Row{&Impl::arguments_, "arguments", 10, "bab4a049-d833-36b5-932b-798b52567d30", Ordered}};

  bool isAbstract() const noexcept { return isAbstract_; }
  void setIsAbstract(bool value) { set<&Impl::isAbstract_>(value); }
  bool isStatic() const noexcept { return isStatic_; }
  void setIsStatic(bool value) { set<&Impl::isStatic_>(value); }
  bool isPublic() const noexcept { return isPublic_; }
  void setIsPublic(bool value) { set<&Impl::isPublic_>(value); }
  bool isEvent() const noexcept { return isEvent_; }
  void setIsEvent(bool value) { set<&Impl::isEvent_>(value); }

  OwnedSequence<Argument>& getArguments() noexcept { return arguments_; }
  const OwnedSequence<Argument>& getArguments() const noexcept { return arguments_; }

  Class getOwningType() const { return Class(getContainer()); }
  void setOwningType(const Class& value);

  /// What calls the operation; null until it is set.
  Invoker getInvoker() const noexcept { return invoker_; }

 private:
  friend class AbstractMetaPackage;
  Invoker invoker_ = nullptr;
};

inline void Argument::Impl::setOperation(const Operation& value) {
  value->getArguments().add(This());
}

}  // namespace orb::zero::meta
