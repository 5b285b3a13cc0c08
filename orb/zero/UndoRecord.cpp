#include <orb/zero/UndoRecord.h>

#include <orb/zero/ModelImpl.h>

namespace orb::zero {

UndoRecord::~UndoRecord() = default;

void* UndoRecord::operator new(std::size_t size, Model::Impl& model) {
  return model.pool().allocate(size);
}
void UndoRecord::operator delete(void* memory, Model::Impl&) noexcept { (void)memory; }
void UndoRecord::operator delete(UndoRecord* record, std::destroying_delete_t) noexcept {
  ElementPool& pool = record->element().model().pool();
  const std::size_t size = record->size();
  record->~UndoRecord();
  pool.deallocate(record, size);
}

}  // namespace orb::zero
