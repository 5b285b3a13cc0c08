#include <orb/zero/Transaction.h>

#include <orb/zero/ModelImpl.h>

namespace orb::zero {

Transaction::Transaction(const Model& model) : model_(model), era_(model->transactions().begin()) {}
Transaction::~Transaction() { rollback(); }

void Transaction::commit() { model_->transactions().commit(era_); }
void Transaction::rollback() noexcept { model_->transactions().rollback(era_); }

}  // namespace orb::zero
