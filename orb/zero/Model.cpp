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

void Model::Count::end() noexcept { delete static_cast<Impl*>(this); }

const uuid& Model::getUuid() const noexcept { return (*this)->identity_; }
std::size_t Model::size() const noexcept { return (*this)->alive_; }
ElementRange Model::elements() const {
  return {*this, nullptr, query::SearchClassMatchMode::WithSubclasses};
}
ElementRange Model::elements(const meta::ClassInfo& type, query::SearchClassMatchMode mode) const {
  return {*this, &type, mode};
}
ModelElement Model::find(const uuid& id) const { return ModelElement((*this)->find(id)); }
uuid Model::newUuid() const { return (*this)->newUuid(); }
std::size_t Model::reclaim() const { return (*this)->reclaim(); }
ModelElement Model::createProxy(const meta::ClassInfo& type, const uuid& id) const {
  return (*this)->proxy({id, &type});
}

void Model::addListener(std::shared_ptr<ModelListener> listener) const {
  (*this)->transactions().addListener(std::move(listener));
}
void Model::removeListener(const std::shared_ptr<ModelListener>& listener) const {
  (*this)->transactions().removeListener(listener);
}
void Model::setHistoryLimit(std::size_t steps) const {
  (*this)->transactions().setHistoryLimit(steps);
}
bool Model::undo() const { return (*this)->transactions().undo(); }
bool Model::redo() const { return (*this)->transactions().redo(); }
std::size_t Model::historyLimit() const noexcept {
  const History* const history = (*this)->transactions().history();
  return history ? history->limit() : 0;
}
std::size_t Model::undoSteps() const noexcept {
  const History* const history = (*this)->transactions().history();
  return history ? history->done.size() : 0;
}
std::size_t Model::redoSteps() const noexcept {
  const History* const history = (*this)->transactions().history();
  return history ? history->undone.size() : 0;
}

void Model::Freezer::freeze(const Model& model) { model->transactions().freeze(); }
bool Model::Freezer::isFrozen(const Model& model) noexcept {
  return model->transactions().isFrozen();
}
Model::Freezer::Thaw::Thaw(const Model& model) : model_(model) {
  model_->transactions().beginThaw();
}
Model::Freezer::Thaw::~Thaw() { model_->transactions().endThaw(); }

Transaction Model::beginTransaction() const { return Transaction(*this); }

}  // namespace orb::zero
