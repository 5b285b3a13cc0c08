#include <orb/zero/query/AbstractQuery.h>

#include <algorithm>
#include <cstddef>

#include <orb/zero/ElementRange.h>
#include <orb/zero/Exception.h>
#include <orb/zero/query/Constrainables.h>

namespace orb::zero::query {
namespace {

/// Elements that are tested together: few enough to stay in the first-level cache.
constexpr std::size_t batchSize = 128;

/// Memory is slower than the tests: what comes so many places later is asked for now.
constexpr std::uint32_t ahead = 32;
/// So many bytes behind what all elements have are most of their properties.
constexpr std::size_t properties = 32;

/// Whether elements are of the class. The answer for the last one is kept, as neighbours are mostly
/// of one class.
class ClassFilter {
 public:
  ClassFilter(const meta::ClassInfo& type, SearchClassMatchMode mode) : type_(type), mode_(mode) {}

  bool operator()(const ModelElement::Impl& element) {
    if (element.classNumber() != last_) {
      last_ = element.classNumber();
      matches_ = isFound(element.getMetaClass(), type_, mode_);
    }
    return matches_;
  }

 private:
  const meta::ClassInfo& type_;
  const SearchClassMatchMode mode_;
  std::uint32_t last_ = 0;  // the number of no class
  bool matches_ = false;
};

}  // namespace

void AbstractQuery::narrow(const meta::ClassInfo& type, SearchClassMatchMode mode) {
  const bool isWithin = mode_ == SearchClassMatchMode::WithSubclasses
                            ? type.isKindOf(*type_)
                            : type == *type_ && mode == mode_;
  if (!isWithin) raise("InvalidValue", {std::string(type.name)});
  type_ = &type;
  mode_ = mode;
}

void AbstractQuery::where(const Constraint& constraint) {
  constraint.check(*type_);
  constraints_.push_back(constraint);
}

Constraint::Elements AbstractQuery::find() const {
  Constraint::Elements found, batch;
  ClassFilter isOfClass(*type_, mode_);
  const std::uint32_t births = model_->births();
  for (std::uint32_t place = 0; place < births;) {
    batch.resize(batchSize);
    auto end = batch.begin();
    for (; place < births && end != batch.end(); ++place) {
      ModelElement::Impl* const element = model_->born(place);
      if (const auto* const later = model_->born(std::min(place + ahead, births - 1))) {
        later->prefetch();
        __builtin_prefetch(reinterpret_cast<const std::byte*>(later + 1) + properties);
      }
      if (element && element->isMember() && isOfClass(*element)) *end++ = element;
    }
    batch.erase(end, batch.end());
    for (const Constraint& constraint : constraints_) constraint.select(batch);
    found.insert(found.end(), batch.begin(), batch.end());
  }
  return found;
}

}  // namespace orb::zero::query

namespace orb::zero {

ModelElement::Constrainables::Constrainables(query::AbstractQuery& query,
                                             const meta::ClassInfo& type,
                                             query::SearchClassMatchMode mode) {
  query.narrow(type, mode);
}

const meta::ClassInfo& ModelElement::Constrainables::checked(const meta::ClassInfo& type,
                                                             const meta::ClassInfo& base) {
  if (!type.isKindOf(base)) raise("InvalidValue", {std::string(type.name)});
  return type;
}

}  // namespace orb::zero
