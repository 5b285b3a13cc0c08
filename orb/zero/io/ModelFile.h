#pragma once

#include <iosfwd>
#include <span>
#include <string_view>

#include <orb/zero/Model.h>
#include <orb/zero/ModelElement.h>

/// Models as JSON text (UTF-8), written and read as a stream:
///
///     {"format":"orb.zero.model","version":1,"metamodels":["http://…"],"elements":[
///     {"torvan.datamodel.Variable":"<UUID>","name":"x1","type":"<UUID>"},
///     {"torvan.datamodel.Array":"<UUID>","values":{
///      "1":{"uuid":"<UUID>","value":"<UUID>"}
///     }}
///     ],"proxies":[
///     {"torvan.datamodel.PowerSetType":"<UUID>"}
///     ]}
///
/// An element begins with its class and UUID; one that is exactly of the class that its owner's
/// property declares, with "uuid"; a proxy among what an element owns, with the word "proxy" before
/// the class. It goes on with its properties: values as their serializers write them, references as
/// UUIDs, owned elements in place, all in their order; those of a keyed collection are members
/// under their keys, which count as set when they are read. What is not set, empty or transient is
/// left out.
///
/// Every element has a line of its own: those without an owner in the order of creation, each
/// followed by what it owns. Loading creates in the order of the file, so that saving again gives
/// the same text. What is referred to but not saved, proxies included, is listed under "proxies";
/// one whose element is in the file as well reads as that element.
namespace orb::zero::io {

/// Writes all elements of the model. Raises "CannotSave" with the element, the property and a cause
/// for a text that is no UTF-8 and a value whose type has no serializer, and when the stream fails;
/// what was written until then is of no use.
ORB_ZERO_API void save(const Model& model, std::ostream& out);

/// Writes these elements of one model with all that they own, each once. Refuses, beside what
/// `save` of a model does, an empty or destroyed one ("CannotCastIncompatibleTypes"), a proxy
/// ("CannotSave") and one of another model ("CannotCreateCrossModelAssociation").
ORB_ZERO_API void save(std::span<const ModelElement> roots, std::ostream& out);

/// Adds the elements of a file to the model, as one unit with the UUIDs of the file. They may refer
/// to each other, to elements that the model has, and to what the file lists as proxies; of these,
/// the model gets the ones that it lacks. The packages of the classes must be registered (see
/// `AbstractMetaPackage::ensureInitialized`).
///
/// Raises "CannotLoad" for a text that is no such file, for references to nothing and UUIDs that
/// the model has, and for whatever setters and collections refuse; the model is then as it was. The
/// arguments are the name given for the file, the line, the UUID of the innermost element that was
/// made by then and the name of its property, empty when there is none, and the cause.
ORB_ZERO_API void load(const Model& model, std::istream& in, std::string_view name = "");

}  // namespace orb::zero::io
