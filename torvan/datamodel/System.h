#ifndef TORVAN_DATAMODEL_SYSTEM_H
#define TORVAN_DATAMODEL_SYSTEM_H

#include <orb/zero/Handle.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// The equations that an analysis solves, in order; it owns them. An equation is part of one system
/// at most.
class TORVAN_DATAMODEL_API System : public orb::zero::Handle<System, orb::zero::ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& equations() { return property(1); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::ElementCollection equations() const { return System::equations(); }
  };
};

}  // namespace torvan::datamodel

#include <torvan/datamodel/impl/Elements.h>

#endif  // TORVAN_DATAMODEL_SYSTEM_H
