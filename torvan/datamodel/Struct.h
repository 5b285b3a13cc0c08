#include <torvan/datamodel/LatticeValue.h>  // before the guard, see impl/Elements.h

#ifndef TORVAN_DATAMODEL_STRUCT_H
#define TORVAN_DATAMODEL_STRUCT_H

#include <string>
#include <vector>

#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

class Ref;

/// A record of a `StructType`: owned `FieldElem`s by field name. A field that is not stored reads
/// as the bottom of its type, so a record may be sparse. Stored names that the type lacks are read
/// by no operation; only `prune` copies them.
class TORVAN_DATAMODEL_API Struct : public orb::zero::Handle<Struct, LatticeValue> {
 public:
  class Impl;
  using Handle::Handle;

  /// The value of the field: the stored element itself, or the bottom of the field's type. An empty
  /// handle when neither the record nor its type has the field, or it has no type.
  LatticeValue at(const std::string& name) const;
  /// The place of the field, to be written; see `Ref`. A field that is not stored is stored first,
  /// with a clone of its bottom, or with nothing when the type lacks it.
  Ref ref(const std::string& name) const;
  /// A new record without the field that the path names, field by field from the outermost record:
  /// the field reads as bottom there. All other stored values are cloned, fields that are not
  /// stored, or stored without a value, stay so. With an empty path all stored fields are cloned. A
  /// step inside a value that is no record raises "CannotCastIncompatibleTypes".
  Struct prune(const std::vector<std::string>& path) const;

  static const Property& values() { return property(2); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection values() const { return Struct::values(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_STRUCT_H
