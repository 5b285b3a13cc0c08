#include <orb/zero/ElementRange.h>

namespace orb::zero {

bool isFound(const meta::ClassInfo& actual, const meta::ClassInfo& type,
             query::SearchClassMatchMode mode) noexcept {
  return mode == query::SearchClassMatchMode::ThisClassOnly ? actual == type
                                                            : actual.isKindOf(type);
}

ElementRange::ElementRange(const Model& model, const meta::ClassInfo* type,
                           query::SearchClassMatchMode mode) noexcept
    : model_(model), type_(type), mode_(mode) {
  ++model_->readers_;
}
ElementRange::ElementRange(const ElementRange& other) noexcept
    : ElementRange(other.model_, other.type_, other.mode_) {}
ElementRange::~ElementRange() { --model_->readers_; }

ElementRange::Iterator ElementRange::begin() const {
  return Iterator(*this, model_->firstMember()).settle();
}

ModelElement ElementRange::Iterator::operator*() const {
  return ModelElement(range_->model_->born(index_));
}

bool ElementRange::Iterator::operator==(std::default_sentinel_t) const noexcept {
  return index_ >= range_->model_->births();
}

ElementRange::Iterator& ElementRange::Iterator::settle() {
  for (; index_ < range_->model_->births(); ++index_) {
    const ModelElement::Impl* const element = range_->model_->born(index_);
    if (!element || !element->isMember()) continue;
    if (!range_->type_ || isFound(element->getMetaClass(), *range_->type_, range_->mode_)) break;
  }
  return *this;
}

}  // namespace orb::zero
