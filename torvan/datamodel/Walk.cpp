#include <torvan/datamodel/impl/Walk.h>

#include <algorithm>
#include <unordered_map>
#include <vector>

#include <orb/zero/Targets.h>
#include <torvan/datamodel/Term.h>

namespace torvan::datamodel {
namespace {

/// The most visits of a walk that ends: elements that share their parts can make one as good as
/// endless.
constexpr std::size_t most = 1 << 26;

/// Whether the properties of an element, other than types, lead from it, or from what they lead to
/// and is entered, back to where they came from.
template <class Enters>
bool hasCycle(orb::zero::ModelElement::Impl& root, const Enters& enters) {
  enum class State { New, Open, Done };
  std::unordered_map<const orb::zero::ModelElement::Impl*, State> states;
  std::vector<orb::zero::ModelElement::Impl*> pending{&root};
  while (!pending.empty()) {
    const auto& element = *pending.back();
    State& state = states[&element];
    if (state != State::New) {
      state = State::Done;
      pending.pop_back();
      continue;
    }
    state = State::Open;
    orb::zero::Targets targets;
    for (const meta::PropertyInfo* property : element.getMetaClass().all) {
      if (*property == Term::type()) continue;
      targets.found.clear();
      property->services.targets(element, targets);
      for (auto* const target : targets.found) {
        if (!property->isOwning && !enters(*target)) continue;
        const auto known = states.find(target);
        if (known == states.end())
          pending.push_back(target);
        else if (known->second == State::Open)
          return true;
      }
    }
  }
  return false;
}

}  // namespace

Walk::Walk(const orb::zero::ModelElement& root) : root_(root), limit_(root->getModel().size()) {}

void Walk::check(const std::function<bool(Element&)>& enters) {
  if (steps_ > most || hasCycle(*root_.get(), enters)) orb::zero::raise("CyclicValue");
  limit_ = std::max(limit_, most);
}

}  // namespace torvan::datamodel
