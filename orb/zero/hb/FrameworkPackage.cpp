#include <orb/zero/hb/FrameworkPackage.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include <orb/zero/Exception.h>
#include <orb/zero/Model.h>
#include <orb/zero/hb/CollectionObject.h>
#include <orb/zero/hb/HostBuilder.h>
#include <orb/zero/hb/NativeClass.h>
#include <orb/zero/hb/ORB0WrapperInfo.h>
#include <orb/zero/meta/DescriptionClasses.h>
#include <tyve/ClassSystem.h>

namespace orb::zero::hb {
namespace {

using Arguments = std::span<const tyve::Value>;

/// Whether one object of the class is given that is still there.
void addIsValid(tyve::COSClassInfo& info) {
  info.addMethod(
      tyve::intern("isValid"),
      {.argumentNames = {},
       .result = tyve::intern("logical scalar"),
       .arguments = {info.getName()},
       .takesGone = true},
      [](Arguments given) {
        const tyve::Value& object = given.front();
        return tyve::Value::scalar(object.isScalar() && object.native()->isValid());
      },
      "Whether the object is still there.");
}

/// A constructor that is given something else than a model is told that it needs one.
std::optional<tyve::Value> toModel(const tyve::Value&) {
  raiseToHost(Exception(std::string(frameworkCatalog), "CannotCreateWithoutModel"));
}

/// A model: what elements are created in.
std::unique_ptr<const tyve::COSClassInfo> makeModelClass() {
  const auto count = [](std::size_t number) { return static_cast<std::int32_t>(number); };
  auto info = std::make_unique<NativeClass<ModelObject>>(
      "The container of elements. It lasts while it, or one of its elements, is held.");
  info->constructor("Creates an empty model.", [] { return Model::create(); });
  info->property("size", "How many live elements it has.",
                 [count](const Model& model) { return count(model.size()); });
  info->property("undoSteps", "How many transactions can be undone.",
                 [count](const Model& model) { return count(model.undoSteps()); });
  info->property("redoSteps", "How many transactions can be made again.",
                 [count](const Model& model) { return count(model.redoSteps()); });
  addIsValid(*info);
  info->method(
      "find", "uuid", "The element of a UUID; an empty one when there is none.",
      [](const Model& model, const tyve::Value& id) { return model.find(extractUuid(id)); });
  info->method("undo", "", "Takes the latest kept transaction back; false when there is none.",
               [](const Model& model) { return model.undo(); }, {.isLong = true});
  info->method("redo", "", "Makes again what was undone last; false when there is none.",
               [](const Model& model) { return model.redo(); }, {.isLong = true});
  info->method("reclaim", "", "Frees what nothing can reach any more; returns how many elements.",
               [count](const Model& model) { return count(model.reclaim()); }, {.isLong = true});
  return info;
}

/// The root of all classes of elements.
class ModelElementWrapper final : public ORB0WrapperInfo<ModelElement> {
 public:
  ModelElementWrapper() : ORB0WrapperInfo("What all elements of a model have in common.") {
    addReader("uuid", "char", "Its UUID, as text.", [](const ModelElement& element) {
      return tyve::Value::text(toString(element->getUuid()));
    });
    addReader("container", "orb.zero.ModelElement",
              "The element that owns it; an empty one when none does.",
              [](const ModelElement& element) { return toHost(element->getContainer()); });
    addReader("model", "orb.zero.Model", "The model that it belongs to.",
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
  void addReader(std::string_view name, std::string_view result, std::string documentation,
                 Read read) {
    addProperty(
        tyve::intern(name),
        [read](const tyve::Value& object) {
          return asHost([&] { return read(fromHost(object)); });
        },
        {}, {}, std::move(documentation), tyve::intern(result));
  }
};

/// The package of the descriptions.
class MetaPackage final : public EmptyParentPackage {
 public:
  MetaPackage() : EmptyParentPackage(tyve::intern("orb.zero.meta")) {}

 protected:
  void initializePackage() override { addClasses(meta::Descriptions()); }

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
  addClass(makeModelClass());
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
  tyve::ClassSystem::getInstance().types().addConversion(tyve::intern("orb.zero.Model"), &toModel);
  registerPackage(std::make_unique<FrameworkPackage>());
  registerPackage(std::make_unique<MetaPackage>());
}

}  // namespace orb::zero::hb
