#pragma once

#include <string_view>
#include <utility>

#include <orb/zero/Model.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/hb/Api.h>
#include <orb/zero/meta/ClassInfo.h>
#include <tyve/Value.h>

namespace orb::zero::hb {

/// What stands behind the host object of an element: a handle, which keeps the element and its
/// model. The object is valid while the handle tests true; two objects of one element are equal.
class ORB_ZERO_HB_API ElementObject final : public tyve::NativeObject {
 public:
  explicit ElementObject(ModelElement element) noexcept : element_(std::move(element)) {}

  const ModelElement& element() const noexcept { return element_; }
  bool isValid() const noexcept override;
  bool isEqual(const NativeObject& other) const noexcept override;
  std::size_t hash() const noexcept override;
  const void* domain() const noexcept override;

 private:
  ModelElement element_;
};

/// The same for a model, which is always valid.
class ORB_ZERO_HB_API ModelObject final : public tyve::NativeObject {
 public:
  static constexpr std::string_view hostClass = "orb.zero.Model";

  explicit ModelObject(Model model) noexcept : model_(std::move(model)) {}

  const Model& model() const noexcept { return model_; }
  bool isValid() const noexcept override;
  bool isEqual(const NativeObject& other) const noexcept override;
  std::size_t hash() const noexcept override;
  const void* domain() const noexcept override;

 private:
  Model model_;
};

/// What objects of a model's elements are parts of: the model; null for an empty handle.
ORB_ZERO_HB_API const void* domainOf(const ModelElement& element) noexcept;

/// The interned host name of a class of elements, which is its dotted name.
ORB_ZERO_HB_API tyve::Name hostName(const meta::ClassInfo& type);

/// The host object of an element, of the most derived class of it that the host knows; of an empty
/// handle, of the declared class. It stays an empty handle to the host, told apart from an empty
/// object.
ORB_ZERO_HB_API tyve::Value toHost(ModelElement element, tyve::Name declared);
/// The host object of a model.
ORB_ZERO_HB_API tyve::Value toHost(Model model);

/// The element behind a host object; of an empty object, an empty handle. Raises
/// "CannotCastIncompatibleTypes" with the class for all that is not one element of it.
ORB_ZERO_HB_API ModelElement elementOf(const tyve::Value& value, const meta::ClassInfo& expected);
/// The same of any class, as the object holds it; the class is for the error.
ORB_ZERO_HB_API const ModelElement& anyElementOf(const tyve::Value& value,
                                                 const meta::ClassInfo& expected);
template <class H>
H handleOf(const tyve::Value& value) {
  return H(anyElementOf(value, H::metaClass()));
}
/// The model behind the first of these host objects. Raises "CannotCreateWithoutModel" when there
/// is none, or it is no model.
ORB_ZERO_HB_API Model modelOf(const tyve::Value& value);

}  // namespace orb::zero::hb
