#include <orb/zero/ModelImpl.h>

#include <algorithm>

#include <orb/zero/Exception.h>
#include <orb/zero/Existence.h>
#include <orb/zero/History.h>
#include <orb/zero/Unit.h>
#include <orb/zero/UuidIndex.h>

namespace orb::zero {

Model::Impl::Impl(const uuid& identity, const ModelConstellation& constellation,
                  const WorkQueueFactory& workQueueFactory)
    : transactions_(*this),
      identity_(identity),
      constellation_(constellation),
      workQueue_(workQueueFactory(&transactions_)) {
  constellation_.members_->push_back(this);
}

/// Rings and long chains end without recursion: first all slots let go, then all elements die.
Model::Impl::~Impl() {
  std::erase(*constellation_.members_, this);
  transactions_.forgetHistory();
  const auto forAll = [this](auto visit) {
    for (const auto* list : {&elements_, &ended_})
      for (Element* element : *list)
        if (element) visit(*element);
  };
  forAll([](Element& element) {
    for (const meta::PropertyInfo* link : element.getMetaClass().links)
      link->services.forget(element);
  });
  forAll([this](Element& element) { dispose(element); });
}

Model::Impl::Staged Model::Impl::stage(const meta::ClassInfo& type) {
  if (type.isAbstract()) raise("InvalidValue");
  return stage(*type.construct(pool_.allocate(type.size)));
}

void Model::Impl::dispose(Element& element) noexcept {
  const std::size_t size = element.getMetaClass().size;
  element.~Element();
  pool_.deallocate(&element, size);
}
void ModelElement::Impl::Disposer::operator()(Impl* element) const noexcept {
  element->model_->retire(*element);
}

Model::Impl::Element* Model::Impl::find(const uuid& id) {
  if (!index_) index_ = std::make_unique<UuidIndex>();
  return index_->find(id, elements_);
}

void Model::Impl::checkUnique(const uuid& id) {
  if (find(id)) raise("UniquenessConstraint");
}

ModelElement Model::Impl::adoptWithCare(Staged staged, const meta::ClassInfo& type) {
  Unit unit(*this);
  if (elements_.size() == elements_.capacity() && 2 * gaps_ > elements_.size()) compact();
  std::unique_ptr<UndoRecord> creation;
  if (transactions_.isRecordingAll()) [[unlikely]] {
    transactions_.reserve();
    creation.reset(new (*this) Existence(*staged, Existence::Change::Creation));
  }
  elements_.push_back(staged.get());
  ModelElement made = enroll(*staged.release(), type);
  if (creation) transactions_.log(std::move(creation));
  unit.commit();
  return made;
}

ModelElement Model::Impl::create(const meta::ClassInfo& type, const uuid& id) {
  Staged element = stage(type);
  checkUnique(id);
  return adopt(std::move(element), id);
}

void Model::Impl::remove(Element& element) noexcept {
  if (element.isProxy()) {
    const auto entry = proxies_.find(element.getUuid());
    if (entry != proxies_.end()) {
      if (entry->second.latest == &element) entry->second.latest = nullptr;
      if (--entry->second.count == 0) proxies_.erase(entry);
    }
  }
  if (index_) index_->erase(element, element.index_);
  elements_[element.index_] = nullptr;
  ++gaps_;
}

void Model::Impl::end(Element& element) noexcept {
  remove(element);
  retire(element);
}

void Model::Impl::retire(Element& element) noexcept {
  for (const meta::PropertyInfo* link : element.getMetaClass().links) link->services.clear(element);
  element.standing_.life = Element::Life::Ended;
  element.setContainer(nullptr, 0);
  if (element.outside_ == 0 && element.slots_ == 0) {
    dispose(element);
  } else {
    element.index_ = static_cast<std::uint32_t>(ended_.size());
    ended_.push_back(&element);
  }
}

void Model::Impl::free(Element& element) noexcept {
  ended_.back()->index_ = element.index_;
  ended_[element.index_] = ended_.back();
  ended_.pop_back();
  dispose(element);
}

void Model::Impl::endYoungerThan(std::uint32_t births) noexcept {
  lose();
  while (elements_.size() > births) {
    if (Element* const element = elements_.back()) {
      if (element->isAlive() && !element->isProxy()) --alive_;
      end(*element);
    }
    elements_.pop_back();
    --gaps_;
  }
  if (index_) index_->cut(births);
  first_ = std::min(first_, births);
}

/// Closes the gaps in the creation order.
void Model::Impl::compact() noexcept {
  if (readers_ != 0) return;
  const auto left = [this](std::uint32_t births) {
    const auto end = elements_.begin() + births;
    return births - static_cast<std::uint32_t>(std::count(elements_.begin(), end, nullptr));
  };
  transactions_.renumber(left);
  std::uint32_t next = 0;
  for (Element* element : elements_)
    if (element) element->index_ = next++;
  referrers_.renumber();
  if (index_) index_->renumber(elements_);
  std::erase(elements_, nullptr);
  gaps_ = 0;
  first_ = 0;
}

std::uint32_t Model::Impl::firstMember() noexcept {
  while (first_ < births() && !(elements_[first_] && elements_[first_]->isMember())) ++first_;
  return first_;
}

}  // namespace orb::zero
