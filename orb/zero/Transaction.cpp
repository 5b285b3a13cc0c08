#include <orb/zero/Transaction.h>

#include <orb/zero/ModelImpl.h>

namespace orb::zero {

Transaction::Transaction(const Model& model) : model_(model), era_(model->transactions().begin()) {}

void Transaction::commit() {
  model_->transactions().commit(era_);
  era_ = 0;
}
void Transaction::rollback() noexcept {
  model_->transactions().rollback(era_);
  era_ = 0;
}

}  // namespace orb::zero
