#include <orb/zero/hb/FrameworkPackage.h>

#include <boost/uuid/uuid_io.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <orb/zero/Exception.h>
#include <orb/zero/Model.h>
#include <orb/zero/hb/CollectionObject.h>
#include <orb/zero/hb/ORB0WrapperInfo.h>
#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/ClassList.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/Property.h>
#include <tyve/ClassSystem.h>

namespace orb::zero::hb {
namespace {

using Arguments = std::span<const tyve::Value>;

/// Whether one object of the class is given that is still there.
void addIsValid(tyve::COSClassInfo& info) {
  info.addStaticMethod(
      tyve::intern("isValid"), {"object", tyve::intern("logical scalar"), {info.getName()}},
      [](Arguments given) {
        const tyve::Value& object = given.front();
        return tyve::Value::scalar(object.isScalar() && object.native()->isValid());
      },
      "Whether the object is still there.");
}

/// A model: what elements are created in.
class ModelWrapper final : public tyve::COSClassInfo {
 public:
  ModelWrapper()
      : tyve::COSClassInfo(tyve::intern("orb.zero.Model"),
                           "The container of elements. It lasts while it, or one of its elements, "
                           "is held.") {
    addConstructor(
        {{}, getName(), {}}, [](Arguments) { return toHost(Model::create()); },
        "Creates an empty model.");
    addProperty(
        tyve::intern("size"),
        [](const tyve::Value& object) {
          return asHost([&] {
            return tyve::Value::scalar(static_cast<std::int32_t>(modelOf(object).size()));
          });
        },
        {}, {}, "How many live elements it has.");
    addIsValid(*this);
  }

  /// A constructor that is given something else is told that it needs a model.
  static std::optional<tyve::Value> convert(const tyve::Value& value) {
    static const tyve::Name name = tyve::intern("orb.zero.Model");
    if (value.className() == name) return value;
    raiseToHost(Exception(std::string(frameworkCatalog), "CannotCreateWithoutModel"));
  }
};

/// The root of all classes of elements.
class ModelElementWrapper final : public ORB0WrapperInfo<ModelElement> {
 public:
  ModelElementWrapper() : ORB0WrapperInfo("What all elements of a model have in common.") {
    addReader("uuid", "Its UUID, as text.", [](const ModelElement& element) {
      return tyve::Value::text(to_string(element->getUuid()));
    });
    addReader("container", "The element that owns it; an empty one when none does.",
              [](const ModelElement& element) { return toHost(element->getContainer()); });
    addReader("model", "The model that it belongs to.",
              [](const ModelElement& element) { return hb::toHost(element->getModel()); });
    addIsValid(*this);
    addMethod(
        tyve::intern("delete"), {{}, {}, {getName()}},
        [](Arguments given) {
          return asHost([&] { return fromHost(given.front())->destroy(), tyve::Value(); });
        },
        "Deletes it from its model, with all that it owns.");
  }

 private:
  template <class Read>
  void addReader(std::string_view name, std::string documentation, Read read) {
    addProperty(
        tyve::intern(name),
        [read](const tyve::Value& object) {
          return asHost([&] { return read(fromHost(object)); });
        },
        {}, {}, std::move(documentation));
  }
};

using Descriptions =
    meta::ClassList<meta::Argument, meta::Class, meta::Enum, meta::EnumLiteral, meta::NamedElement,
                    meta::Operation, meta::Package, meta::PrimitiveType, meta::Property, meta::Type,
                    meta::TypedElement>;

/// The package of the descriptions.
class MetaPackage final : public EmptyParentPackage {
 public:
  MetaPackage() : EmptyParentPackage(tyve::intern("orb.zero.meta")) {}

 protected:
  void initializePackage() override { addClasses(Descriptions()); }

 private:
  template <class... X>
  void addClasses(meta::ClassList<X...>) {
    (addClass(std::make_unique<ORB0WrapperInfo<X>>("A part of the description of a model.",
                                                   WrapperInfo::Access::ReadOnly)),
     ...);
  }
};

}  // namespace

FrameworkPackage::FrameworkPackage() : EmptyParentPackage(tyve::intern("orb.zero")) {}

void FrameworkPackage::initializePackage() {
  addClass(std::make_unique<ModelWrapper>());
  addClass(std::make_unique<ModelElementWrapper>());

  using enum CollectionClass::Members;
  const auto add = [this](std::string_view name, std::string_view superclass, unsigned members,
                          std::string documentation) {
    addClass(std::make_unique<CollectionClass>(name, superclass, members, documentation));
  };
  add("orb.zero.Set", {}, Listing, "The elements that a property names; a live view.");
  add("orb.zero.Sequence", "orb.zero.Set", Places, "Elements in order.");
  add("orb.zero.Map", "orb.zero.Set", Keys, "Elements by unique keys, in the order of the keys.");
  add("orb.zero.Multimap", "orb.zero.Map", Inherited, "Elements by keys that may repeat.");
  add("orb.zero.PrimitiveSet", {}, Listing | Places,
      "The values of a property, in order; a live view.");
  add("orb.zero.PrimitiveSequence", "orb.zero.PrimitiveSet", Inherited,
      "Values in order, which may repeat.");
  add("orb.zero.PrimitiveAssociativeCollection", "orb.zero.PrimitiveSet", Keys, "Values by keys.");
}

void registerFramework() {
  tyve::ClassSystem::getInstance().types().addConversion(tyve::intern("orb.zero.Model"),
                                                         &ModelWrapper::convert);
  registerPackage(std::make_unique<FrameworkPackage>());
  registerPackage(std::make_unique<MetaPackage>());
}

}  // namespace orb::zero::hb
