#include <orb/zero/ModelElement.h>

#include <orb/zero/Exception.h>
#include <orb/zero/Storage.h>
#include <orb/zero/meta/Emit.h>

namespace orb::zero {

const meta::ClassInfo& ModelElement::metaClass() { return meta::classOf<ModelElement>; }
uuid ModelElement::Uuid() { return metaClass().id; }

void ModelElement::raiseEmpty(const meta::ClassInfo& expected) {
  raise("CannotCastIncompatibleTypes", {std::string(expected.name)});
}

ModelElement::Impl::~Impl() = default;

void ModelElement::Impl::lastOutside() noexcept {
  Model::Impl& model = *model_;
  if (slots_ == 0 && life_ == Life::Ended) model.free(*this);
  model.release();
}

void ModelElement::Impl::lastSlot() noexcept {
  if (outside_ == 0) model_->free(*this);
}

void ModelElement::Impl::recordValue(int position) {
  TransactionCoordinator& transactions = model_->transactions();
  if (!storage_ || storage_->era() < transactions.era()) {
    transactions.reserve();
    transactions.log(getMetaClass().makeStorage(*this));
  }
  storage_->keep(*getMetaClass().all[static_cast<std::size_t>(position) - 1]);
}

void ModelElement::Impl::checkCompatibleModel(const ModelElement& target) const {
  if (target.get() && target.get()->model_ != model_) raise("CannotCreateCrossModelAssociation");
}

void ModelElement::Impl::checkInsertion(const ModelElement& element,
                                        const meta::ClassInfo& expected) const {
  if (!element) raise("CannotAddNonExistentObject");
  const meta::ClassInfo& actual = element.get()->getMetaClass();
  if (!actual.isKindOf(expected))
    raise("CannotAddIncompatibleTypes", {std::string(actual.name), std::string(expected.name)});
  checkCompatibleModel(element);
}

}  // namespace orb::zero
