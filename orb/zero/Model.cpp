#include <orb/zero/Model.h>

#include <orb/zero/ElementRange.h>
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
Transaction Model::beginTransaction() const { return Transaction(*this); }

}  // namespace orb::zero
