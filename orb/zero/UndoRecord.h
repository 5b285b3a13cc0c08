#pragma once

#include <orb/zero/ModelElement.h>
#include <orb/zero/Slot.h>

namespace orb::zero {

/// One entry of the log of a model's transactions. It holds its element.
class ORB_ZERO_API UndoRecord {
 public:
  explicit UndoRecord(ModelElement::Impl& element) noexcept : element_(&element) {}
  UndoRecord(const UndoRecord&) = delete;
  UndoRecord& operator=(const UndoRecord&) = delete;
  virtual ~UndoRecord();

  /// Brings back what was before.
  virtual void undo() noexcept = 0;
  /// Told when the outermost transaction is committed.
  virtual void settle() noexcept {}

  ModelElement::Impl& element() const noexcept { return *element_.get(); }

 private:
  Slot<ModelElement> element_;
};

}  // namespace orb::zero
