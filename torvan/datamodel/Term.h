#ifndef TORVAN_DATAMODEL_TERM_H
#define TORVAN_DATAMODEL_TERM_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// Anything that has a lattice type: expressions, and values, which can stand wherever an operand
/// is asked for. Abstract.
///
/// Every class derived from it has the accessors `getType`, `hasType` and `setType`.
class TORVAN_DATAMODEL_API Term : public orb::zero::Handle<Term, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& type() { return property(1); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Reference type() const { return Term::type(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_TERM_H
