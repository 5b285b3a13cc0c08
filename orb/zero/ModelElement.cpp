#include <orb/zero/ModelElement.h>

#include <atomic>
#include <cstdlib>

#include <orb/zero/Exception.h>
#include <orb/zero/Storage.h>
#include <orb/zero/meta/Emit.h>

namespace orb::zero {

constinit const meta::ClassInfo* const ModelElement::record = &meta::classOf<ModelElement>;
constinit const meta::ClassInfo* meta::classTable[classLimit] = {};
std::uint32_t meta::enlist(const ClassInfo& type) noexcept {
  static std::atomic<std::uint32_t> last = 0;
  const std::uint32_t number = ++last;
  if (number >= classLimit) std::abort();
  classTable[number] = &type;
  return number;
}

uuid ModelElement::Uuid() { return metaClass().id; }

void ModelElement::raiseEmpty(const meta::ClassInfo& expected) {
  raise("CannotCastIncompatibleTypes", {std::string(expected.name)});
}

ModelElement::Impl::~Impl() = default;

void ModelElement::Impl::lastOutside() noexcept {
  if (slots_ == 0) model_->free(*this);
}

void ModelElement::Impl::lastSlot() noexcept {
  if (outside_ == 0) model_->free(*this);
}

Storage& ModelElement::Impl::storageOfSavepoint() {
  TransactionCoordinator& transactions = model_->transactions();
  if (!storage_ || storage_->era() < transactions.era()) {
    transactions.reserve();
    std::unique_ptr<Storage> storage = createStorage();
    storage->push(transactions.era());
    transactions.log(std::move(storage));
  }
  return *storage_;
}

void ModelElement::Impl::rekey(int position, const void* key) {
  if (!container_) return;
  const meta::PropertyInfo& owning = containment();
  if (owning.services.rekey && getPropertyByName(owning.key)->position == position)
    owning.services.rekey(*container_, *this, key);
}

/// Collections log their changes themselves.
void ModelElement::Impl::recordValue(int position) {
  const meta::PropertyInfo& property = *getMetaClass().all[static_cast<std::size_t>(position) - 1];
  if (!property.services.save) return;
  Storage& storage = storageOfSavepoint();
  if (!storage.isChanged(position)) storage.keep(property);
}

std::unique_ptr<Storage> ModelElement::Impl::createStorage() const {
  return getMetaClass().makeStorage(const_cast<Impl&>(*this));
}
void ModelElement::Impl::copyValue(Storage& storage, int position) const {
  const meta::PropertyInfo* const property = getPropertyByIndex(position);
  if (property && property->services.save && !storage.isChanged(position)) storage.keep(*property);
}
void ModelElement::Impl::copyStateFromStorage(Storage& storage) noexcept { storage.flip(); }

void ModelElement::Impl::raiseCrossModel() { raise("CannotCreateCrossModelAssociation"); }
void ModelElement::Impl::raiseProxy() { raise("CannotModifyProxy"); }

void ModelElement::Impl::refuseInsertion(const ModelElement& element,
                                         const meta::ClassInfo& expected) {
  if (!element) raise("CannotAddNonExistentObject");
  const meta::ClassInfo& actual = element.get()->getMetaClass();
  if (!actual.isKindOf(expected))
    raise("CannotAddIncompatibleTypes", {std::string(actual.name), std::string(expected.name)});
  raiseCrossModel();
}

}  // namespace orb::zero
