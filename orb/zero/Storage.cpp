#include <orb/zero/Storage.h>

#include <utility>

namespace orb::zero {

UndoRecord::~UndoRecord() = default;

Storage::Storage(ModelElement::Impl& element) noexcept
    : UndoRecord(element),
      previous_(std::exchange(element.storage_, this)),
      era_(element.model().transactions().era()) {}
Storage::~Storage() = default;

void Storage::keep(const meta::PropertyInfo& property) {
  if (isChanged(property.position)) return;
  property.services.save(element(), *this);
  changed_ |= 1u << property.position;
  given_ |= element().given_ & (1u << property.position);
}

void Storage::undo() noexcept {
  ModelElement::Impl& restored = element();
  for (const meta::PropertyInfo* property : restored.getMetaClass().all)
    if (isChanged(property->position)) property->services.restore(restored, *this);
  restored.given_ = (restored.given_ & ~changed_) | given_;
  restored.storage_ = previous_;
}

void Storage::settle() noexcept { element().storage_ = nullptr; }

}  // namespace orb::zero
