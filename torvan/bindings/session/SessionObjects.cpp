#include <torvan/bindings/session/impl/SessionObjects.h>

#include <functional>
#include <typeinfo>

#include <orb/zero/Exception.h>

namespace torvan::datamodel::hb {

bool SessionPart::isEqual(const NativeObject& other) const noexcept {
  return typeid(other) == typeid(*this) && static_cast<const SessionPart&>(other).host_ == host_;
}
std::size_t SessionPart::hash() const noexcept {
  return std::hash<const void*>()(host_.get()) ^ typeid(*this).hash_code();
}

std::size_t SingleObject::hash() const noexcept { return std::hash<const void*>()(this); }

TransactionObject::TransactionObject(std::shared_ptr<HostSession> host)
    : host_(std::move(host)), transaction_(host_->session.model()) {
  host_->open.push_back(this);
}

TransactionObject::~TransactionObject() {
  if (isOpen()) end();
}

void TransactionObject::commit() const {
  checkOpen();
  if (host_->open.back() != this) orb::zero::raise("TransactionInProgress");
  transaction_->commit();
  end();
}

void TransactionObject::rollback() const {
  checkOpen();
  end();
}

void TransactionObject::checkOpen() const {
  if (!isOpen()) orb::zero::raise("TransactionEnded");
}

/// What is not committed is rolled back.
void TransactionObject::end() const noexcept {
  while (host_->open.back() != this) host_->open.back()->end();
  host_->open.pop_back();
  transaction_.reset();
}

}  // namespace torvan::datamodel::hb
