#pragma once

#include <memory>

#include <orb/zero/Builder.h>
#include <orb/zero/Model.h>
#include <orb/zero/hb/Api.h>
#include <tyve/Value.h>

/// What the host's constructors make elements of.
namespace orb::zero::hb {

using BuilderPointer = std::unique_ptr<ModelElement::Builder>;

/// An empty builder. Raises "InvalidValue" for an abstract class.
ORB_ZERO_HB_API BuilderPointer instantiateBuilder(const meta::ClassInfo& type, const Model& model);

/// A builder that was given the fields of one host struct, in their order: each names a property of
/// the class. Raises "InvalidValue" for what is not one struct, "NoSuchProperty" for a property
/// that the class, or the host, does not have, and what converting and setting the values raises.
ORB_ZERO_HB_API BuilderPointer createBuilderFromStruct(const meta::ClassInfo& type,
                                                       const Model& model,
                                                       const tyve::Value& structure);
/// The same with the first struct of an array.
ORB_ZERO_HB_API BuilderPointer createBuilderFromStructFirst(const meta::ClassInfo& type,
                                                            const Model& model,
                                                            const tyve::Value& structures);

/// The UUID that a host text shows. Raises "InvalidValue" when it shows none, or is no text.
ORB_ZERO_HB_API uuid extractUuid(const tyve::Value& value);

}  // namespace orb::zero::hb
