#pragma once

#include <vector>

#include <orb/zero/ModelElement.h>
#include <orb/zero/Value.h>

namespace orb::zero {

/// What became of one property. A single value that is not set, before or now, is an empty `Value`;
/// those of collections are sequences.
struct PropertyChange {
  const meta::PropertyInfo* property;
  Value before, after;
};

/// What became of one element that was there before and still is.
struct ElementChange {
  ModelElement element;
  std::vector<PropertyChange> properties;  ///< in the order of their positions
};

/// An element that is gone. Its handles test false.
struct DestroyedElement {
  uuid id;
  const meta::ClassInfo* type;
};

/// What one outermost transaction made of a model, or the undo or redo of one. What was created and
/// destroyed within is not named; a property that is as it was before is not either, unless it is a
/// keyed collection of several: that counts as changed by every change (see `Storage`).
struct ModelChanges {
  std::vector<ModelElement> created;  ///< in the order of creation
  std::vector<DestroyedElement> destroyed;
  std::vector<ElementChange> changed;

  bool isEmpty() const noexcept { return created.empty() && destroyed.empty() && changed.empty(); }
};

/// Is told what changed, after every outermost commit, by the work queue of the model. It may
/// change the model in turn; what it throws is dropped, as the commit stands and others are to be
/// told.
class ORB_ZERO_API ModelListener {
 public:
  virtual ~ModelListener();
  virtual void changed(const ModelChanges& changes) = 0;
};

}  // namespace orb::zero
