#pragma once

#include <string>
#include <utility>

#include <orb/zero/ImplOf.h>
#include <orb/zero/meta/Enum.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/Package.h>
#include <orb/zero/meta/PrimitiveType.h>

namespace orb::zero::meta {

class ORB_ZERO_API NamedElement::Impl : public ImplOf<NamedElement> {
  std::u16string name_;

 public:
  static constexpr Table table{
      Instances::Abstract, "orb.zero.meta.NamedElement", "0198d211-56f8-3e01-a673-3f83f13dd86c",
      Row{&Impl::name_, "name", 1, "742dc40e-7825-3357-b372-d6344e1dd63a", Ordered | Unique}};

  const std::u16string& getName() const noexcept { return name_; }
  void setName(std::u16string value) { set<&Impl::name_>(std::move(value)); }
};

/// Finds the collection that an element has under a property of its class; null for a property that
/// is no collection.
using CollectionAccessor = Collection* (*)(ModelElement::Impl& element, const PropertyInfo&);
/// Makes an empty builder for a model.
using BuilderFactory = std::unique_ptr<ModelElement::Builder> (*)(const Model&);

class ORB_ZERO_API Type::Impl : public ImplOf<Type> {
 public:
  static constexpr Table table{Instances::Abstract, "orb.zero.meta.Type",
                               "2a316e57-5bc3-31b5-9d95-87c5ecf0b009"};

  Package getOwningPackage() const { return Package(getContainer()); }
  void setOwningPackage(const Package& value);

  const std::string& getQualifiedName() const noexcept { return qualifiedName_; }
  const std::string& getNativeName() const noexcept { return nativeName_; }
  /// Null until the type is registered, and for a primitive one.
  CollectionAccessor getCollectionAccessor() const noexcept { return collectionAccessor_; }
  /// Null for all but concrete classes.
  BuilderFactory getBuilderFactory() const noexcept { return builderFactory_; }

 private:
  friend class MetaRegistry;
  std::string qualifiedName_, nativeName_;
  CollectionAccessor collectionAccessor_ = nullptr;
  BuilderFactory builderFactory_ = nullptr;
};

class ORB_ZERO_API PrimitiveType::Impl : public ImplOf<PrimitiveType> {
 public:
  static constexpr Table table{Instances::Concrete, "orb.zero.meta.PrimitiveType",
                               "1d23f160-0c6d-384a-8c54-bc2d6fb7726b"};
};

class ORB_ZERO_API EnumLiteral::Impl : public ImplOf<EnumLiteral> {
  int value_ = 0;

 public:
  static constexpr Table table{
      Instances::Concrete, "orb.zero.meta.EnumLiteral", "a77620f6-9a9a-3036-accf-cdec3530ab5c",
      Row{&Impl::value_, "value", 2, "868e7f66-afcf-3d52-bb84-63b93873d7ac", Ordered | Unique}};

  int getValue() const noexcept { return value_; }
  void setValue(int value) { set<&Impl::value_>(value); }

  Enum getParentEnum() const { return Enum(getContainer()); }
  void setParentEnum(const Enum& value);

  std::string getText(LiteralText form) const;
  std::string getPublicIdentifier() const { return getText(LiteralText::PublicId); }
};

class ORB_ZERO_API Enum::Impl : public ImplOf<Enum> {
  Slot<Type> underlyingType_;
  OwnedSequence<EnumLiteral> literals_{*this, &Enum::literals};

 public:
  static constexpr Table table{
      Instances::Concrete, "orb.zero.meta.Enum", "f3c9c638-a9f3-3e70-952c-57991c3a9f89",
      Row{&Impl::underlyingType_, "underlyingType", 2, "3837e576-eca5-3fc1-add5-84bc1b8aa1ff",
          Ordered | Unique},
      Row{&Impl::literals_, "literals", 3, "cf1e7d1f-0935-3a72-a36a-310a4873c529", Ordered}};

  const Type& getUnderlyingType() const noexcept { return underlyingType_; }
  void setUnderlyingType(const Type& value) { set<&Impl::underlyingType_>(value); }

  OwnedSequence<EnumLiteral>& getLiterals() noexcept { return literals_; }
  const OwnedSequence<EnumLiteral>& getLiterals() const noexcept { return literals_; }
  /// The literal of this name or value, or an empty handle.
  EnumLiteral getLiteral(std::u16string_view name) const;
  EnumLiteral getLiteral(int value) const;
};

inline void EnumLiteral::Impl::setParentEnum(const Enum& value) {
  value->getLiterals().add(This());
}

}  // namespace orb::zero::meta
