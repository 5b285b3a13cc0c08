#pragma once

#include <cstddef>
#include <new>

#include <orb/zero/ModelElement.h>
#include <orb/zero/Slot.h>

namespace orb::zero {

/// One change of one element, as the log of a model's transactions keeps it. It holds its element,
/// and lives in the model's pool.
class ORB_ZERO_API UndoRecord {
 public:
  explicit UndoRecord(ModelElement::Impl& element) noexcept : element_(&element) {}
  UndoRecord(const UndoRecord&) = delete;
  UndoRecord& operator=(const UndoRecord&) = delete;
  virtual ~UndoRecord();

  static void* operator new(std::size_t size, Model::Impl& model);
  static void operator delete(void* memory, Model::Impl& model) noexcept;  // of a failed `new`
  static void operator delete(UndoRecord* record, std::destroying_delete_t) noexcept;

  /// Takes the change back; when taken back, makes it again.
  virtual void flip() noexcept = 0;
  /// Told when the transaction is over, or is being rolled back; newest record first.
  virtual void unlink() noexcept {}
  /// Told when the change, or that it was taken back, is final.
  virtual void settle() noexcept {}

  ModelElement::Impl& element() const noexcept { return *element_.get(); }
  /// The record, if it is one of the changes of an element; else null.
  virtual Storage* asStorage() noexcept { return nullptr; }
  virtual bool isDestruction() const noexcept { return false; }

 private:
  /// Of the record itself, in bytes.
  virtual std::size_t size() const noexcept = 0;

  Slot<ModelElement> element_;
};

}  // namespace orb::zero
