#include <orb/zero/Model.h>

#include <orb/zero/ElementRange.h>
#include <orb/zero/History.h>
#include <orb/zero/ModelElement.h>
#include <orb/zero/Transaction.h>

namespace orb::zero {

Model Model::create(const uuid& identity, const ModelConstellation& constellation,
                    const WorkQueueFactory& workQueueFactory) {
  return Model(new Impl(identity, constellation, workQueueFactory));
}
Model Model::create() { return create(uuid{}, ModelConstellation(), DefaultWorkQueueFactory()); }

Model::Model(Impl* impl) noexcept : impl_(impl) { impl_->hold(); }
Model::Model(const Model& other) noexcept : impl_(other.impl_) {
  if (impl_) impl_->hold();
}
Model::~Model() {
  if (impl_) impl_->release();
}

const uuid& Model::getUuid() const noexcept { return impl_->identity_; }
std::size_t Model::size() const noexcept { return impl_->alive_; }
ElementRange Model::elements() const {
  return {*this, nullptr, query::SearchClassMatchMode::WithSubclasses};
}
ElementRange Model::elements(const meta::ClassInfo& type, query::SearchClassMatchMode mode) const {
  return {*this, &type, mode};
}
ModelElement Model::find(const uuid& id) const { return ModelElement(impl_->find(id)); }
uuid Model::newUuid() const { return impl_->newUuid(); }
std::size_t Model::reclaim() const { return impl_->reclaim(); }
ModelElement Model::createProxy(const meta::ClassInfo& type, const uuid& id) const {
  return impl_->proxy({id, &type});
}

void Model::addListener(std::shared_ptr<ModelListener> listener) const {
  impl_->transactions().addListener(std::move(listener));
}
void Model::removeListener(const std::shared_ptr<ModelListener>& listener) const {
  impl_->transactions().removeListener(listener);
}
void Model::setHistoryLimit(std::size_t steps) const {
  impl_->transactions().setHistoryLimit(steps);
}
bool Model::undo() const { return impl_->transactions().undo(); }
bool Model::redo() const { return impl_->transactions().redo(); }
std::size_t Model::undoSteps() const noexcept {
  const History* const history = impl_->transactions().history();
  return history ? history->done.size() : 0;
}
std::size_t Model::redoSteps() const noexcept {
  const History* const history = impl_->transactions().history();
  return history ? history->undone.size() : 0;
}

void Model::Freezer::freeze(const Model& model) { model->transactions().setFrozen(true); }
bool Model::Freezer::isFrozen(const Model& model) noexcept {
  return model->transactions().isFrozen();
}
Model::Freezer::Thaw::Thaw(const Model& model) : model_(model), wasFrozen_(isFrozen(model)) {
  if (wasFrozen_) model->transactions().setFrozen(false);
}
Model::Freezer::Thaw::~Thaw() {
  if (wasFrozen_) freeze(model_);
}

Transaction Model::beginTransaction() const { return Transaction(*this); }

}  // namespace orb::zero
