#include <orb/zero/Builder.h>

#include <algorithm>

#include <orb/zero/Exception.h>
#include <orb/zero/Targets.h>
#include <orb/zero/Unit.h>
#include <orb/zero/Value.h>

namespace orb::zero {

ModelElement::Builder::Builder(const Model& model, const meta::ClassInfo& type)
    : model_(model), class_(type), staged_(model->stage(type)), losses_(model->losses()) {}

ModelElement::Builder::~Builder() = default;

void ModelElement::Builder::checkModel(const Builder& builder, const Model& model) {
  if (!(builder.model_ == model)) raise("CannotCreateCrossModelAssociation");
}

ModelElement::Impl* ModelElement::Builder::staged() const {
  if (!staged_) raise("InvalidValue");
  return staged_.get();
}

void ModelElement::Builder::add(const meta::PropertyInfo& property,
                                std::unique_ptr<Builder>&& child) {
  if (!class_.has(property) || !property.isOwning || !child) raise("InvalidValue");
  checkModel(*child, model_);
  children_.push_back({&property, std::move(child)});
}

int ModelElement::Builder::markGiven(int position, bool isGiven) {
  given_.resize(class_.all.size() + 1);
  given_.set(static_cast<std::size_t>(position), isGiven);
  return position;
}

int ModelElement::Builder::setOrAdd(const meta::PropertyInfo& property, const Value& value) {
  if (!class_.has(property)) return -1;
  const bool isWhole = !property.services.insert || value.isEmpty() ||
                       value.type()->multiplicity != Multiplicity::One;
  (isWhole ? property.services.set : property.services.insert)(*staged(), value);
  return markGiven(property.position, !value.isEmpty());
}

int ModelElement::Builder::setOrAdd(const meta::PropertyInfo& property,
                                    std::unique_ptr<Builder>& child) {
  if (!class_.has(property)) return -1;
  add(property, std::move(child));
  return markGiven(property.position, true);
}

int ModelElement::Builder::doClear(const meta::PropertyInfo& property) {
  if (!class_.has(property)) return -1;
  property.services.set(*staged(), Value());
  std::erase_if(children_, [&](const Child& child) { return *child.property == property; });
  return markGiven(property.position, false);
}

ModelElement ModelElement::Builder::create() {
  if (children_.empty()) return adopt(model_->newUuid());
  return create(model_->newUuid());
}

ModelElement ModelElement::Builder::create(const uuid& id) {
  if (children_.empty()) {
    model_->checkUnique(id);
    return adopt(id);
  }
  Orchestrator orchestrator(model_);
  orchestrator.create(*this, id);
  orchestrator.commit();
  return orchestrator.getCreatedElement();
}

ModelElement ModelElement::Builder::adopt(const uuid& id) {
  staged();
  if (model_->transactions().isFrozen()) raise("CannotModifyFrozenModel");  // it may be tried again
  if (model_->losses() != losses_) dropLost();
  return model_->adopt(std::move(staged_), id);
}

void ModelElement::Builder::cascadeCreation(Impl& owner) {
  for (const Child& child : children_) child.property->services.add(owner, child.builder->create());
}

/// What was given to the builder may have been destroyed since, or have gone back to a former owner
/// or key. What is owned is listed anew, as none of that can be told from the old list.
void ModelElement::Builder::dropLost() {
  Unit unit(*staged_);
  Targets targets;
  for (const meta::PropertyInfo* property : class_.referring) {
    targets.collect(*staged_, *property);
    for (Impl* target : targets.found)
      if (!target->isAlive()) property->services.release(*staged_, *target);
  }
  const auto isLost = [this](const Impl* child) {
    return !child->isAlive() || child->container() != staged_.get();
  };
  for (const meta::PropertyInfo* property : class_.owning) {
    targets.found.clear();
    property->services.targets(*staged_, targets);
    targets.found.erase(std::remove_if(targets.found.begin(), targets.found.end(), isLost),
                        targets.found.end());
    property->services.clear(*staged_);
    for (Impl* child : targets.found) property->services.add(*staged_, ModelElement(child));
  }
  unit.commit();
}

ModelElement ModelElement::Impl::createInto(const meta::PropertyInfo& property, Builder& builder,
                                            const uuid& id) {
  checkNoProxy();
  checkOwn(property);
  if (!property.isOwning) raise("InvalidValue");
  Builder::checkModel(builder, getModel());
  Transaction unit(getModel());
  ModelElement made = builder.create(id);
  property.services.add(*this, made);
  unit.commit();
  return made;
}

ModelElement ModelElement::Builder::Orchestrator::create(Builder& builder, const uuid& id) {
  checkModel(builder, model_);
  model_->checkUnique(id);
  ModelElement made = builder.adopt(id);
  if (!created_.get()) created_ = made;
  builder.cascadeCreation(*made.get());
  return made;
}

}  // namespace orb::zero
