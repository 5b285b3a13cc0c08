#pragma once

#include <string>

#include <torvan/datamodel/StructType.h>
#include <torvan/datamodel/impl/FieldTypeImpl.h>
#include <torvan/datamodel/impl/LatticeTypeImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API StructType::Impl : public orb::zero::ImplOf<StructType> {
  orb::zero::ElementMap<std::string, FieldType> fields_{*this, &FieldType::Impl::keyOf,
                                                        &StructType::fields};

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.StructType", "a25be7f4-c58f-3411-bb04-269ef1caac7d",
      Row{&Impl::fields_, "fields", 5, "31e1c15f-1eee-3f50-a7c1-2771c10214e8", NoMutator, "name"},
      Op{&StructType::at, "at", Defined, "name"}};

  orb::zero::ElementMap<std::string, FieldType>& getFields() noexcept { return fields_; }
  const orb::zero::ElementMap<std::string, FieldType>& getFields() const noexcept {
    return fields_;
  }
  bool hasFields() const noexcept { return !fields_.empty(); }
  /// See `ModelElement::Impl::createInto`.
  FieldType createIntoFields(FieldType::Builder& builder, const orb::zero::uuid& id) {
    return FieldType(createInto(StructType::fields(), builder, id));
  }

  bool isCompatible(const LatticeType& other) const override;
  LatticeType at(const std::string& name) const;

  /// Stores a new field; raises "UniquenessConstraint" when there is one of that name.
  void store(const std::string& name, const LatticeType& elemType);
};

}  // namespace torvan::datamodel
