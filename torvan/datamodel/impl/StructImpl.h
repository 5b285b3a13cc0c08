#pragma once

#include <string>

#include <torvan/datamodel/Struct.h>
#include <torvan/datamodel/impl/FieldElemImpl.h>
#include <torvan/datamodel/impl/LatticeValueImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Struct::Impl : public orb::zero::ImplOf<Struct> {
  orb::zero::ElementMap<std::string, FieldElem> values_{*this, &FieldElem::Impl::keyOf,
                                                        &Struct::values};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.Struct",
      "096f485a-ee30-3f68-8ae0-88f63ff96674",
      Row{&Impl::values_, "values", 2, "c1b68a6c-272d-341d-aa68-0e311a9387cf", 0, "name"},
      Op{&Struct::at, "at", Defined, "name"},
      Op{&Struct::ref, "ref", Defined, "name"},
      Op{&Struct::prune, "prune", Defined, "fieldName"}};

  orb::zero::ElementMap<std::string, FieldElem>& getValues() noexcept { return values_; }
  const orb::zero::ElementMap<std::string, FieldElem>& getValues() const noexcept {
    return values_;
  }
  bool hasValues() const noexcept { return !values_.empty(); }
  /// See `ModelElement::Impl::createInto`.
  FieldElem createIntoValues(FieldElem::Builder& builder, const orb::zero::uuid& id) {
    return FieldElem(createInto(Struct::values(), builder, id));
  }

  LatticeValue join(const LatticeValue& other) const override;
  LatticeValue meet(const LatticeValue& other) const override;
  boolean3 le(const LatticeValue& other) const override;
  bool eq(const LatticeValue& other) const override;
  LatticeValue clone() const override;
  virtual LatticeValue at(const std::string& name) const;
  virtual Ref ref(const std::string& name);
  virtual Struct prune(const std::vector<std::string>& path) const;

  /// Stores a new field; raises "UniquenessConstraint" when there is one of that name.
  void store(const std::string& name, const LatticeValue& value);
  /// The same with a live value of this model, behind all that are stored, in a unit of the caller.
  void append(const std::string& name, const LatticeValue& value);
};

}  // namespace torvan::datamodel
