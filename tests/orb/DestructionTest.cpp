#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using DestructionTest = SessionTest;

/// A random graph of elements that refer to each other by every kind of property.
class RandomGraph {
 public:
  explicit RandomGraph(unsigned seed) : random_(seed) {
    for (int i = 0; i < 150; ++i) create();
    for (int i = 0; i < 400; ++i) refer();
  }

  const Model& model() const { return model_; }
  std::size_t below(std::size_t end) { return random_() % end; }

  void create() {
    static constexpr const meta::ClassInfo& (*classes[])() = {
        Variable::metaClass,  Join::metaClass,      Equation::metaClass,     FieldElem::metaClass,
        ArrayElem::metaClass, PowerSet::metaClass,  Conditional::metaClass,  Struct::metaClass,
        System::metaClass,    ArrayType::metaClass, PowerSetType::metaClass, FieldType::metaClass};
    const auto& type = below(3) ? classes[below(std::size(classes))]() : Variable::metaClass();
    all_.push_back(model_->create(type, model_.newUuid()));
    if (type == FieldElem::metaClass())
      FieldElem(all_.back())->basicSetName(std::to_string(all_.size()));
  }
  /// Has some element refer to another, where that can be.
  void refer() {
    const ModelElement owner = any();
    const auto& properties = owner->getMetaClass().all;
    const Property* const property = properties[below(properties.size())];
    if (!property->type) return;
    const ModelElement target = below(3) ? any() : favourite(property->type());
    if (!target || !target->getMetaClass().isKindOf(property->type()) || target == owner) return;
    if (property->services.insert) {
      property->services.insert(*owner.get(), orb::zero::Value(target));
    } else if (LatticeValue* const slot = below(2) ? rawSlot(owner, *property) : nullptr) {
      *slot = LatticeValue(target);
    } else {
      property->services.set(*owner.get(), orb::zero::Value(target));
    }
  }
  void destroy() {
    const std::size_t place = below(all_.size());
    const ModelElement element = all_[place];
    if (element) element->destroy();
  }
  /// Forgets what is gone for good.
  void sweep() {
    std::erase_if(all_, [](const ModelElement& element) { return !element; });
  }

 private:
  ModelElement any() {
    for (;;)
      if (const ModelElement element = all_[below(all_.size())]) return element;
  }
  /// What very many refer to: the oldest one of a class.
  ModelElement favourite(const meta::ClassInfo& type) const {
    for (const ModelElement element : model_.elements(type)) return element;
    return {};
  }
  /// The slot itself, if its address is handed out; what is written there is not noticed.
  static LatticeValue* rawSlot(const ModelElement& owner, const Property& property) {
    if (property == FieldElem::value()) return FieldElem(owner).ref();
    if (property == ArrayElem::value()) return ArrayElem(owner).ref();
    return nullptr;
  }

  std::mt19937 random_;
  const Model model_ = Model::create();
  std::vector<ModelElement> all_;
};

TEST(RandomDestructionTest, LeavesNoReferenceAndRollbackRestoresAll) {
  for (unsigned seed = 0; seed < 40 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomGraph graph(seed);
    if (seed % 2) graph.model().setHistoryLimit(1);
    for (int round = 0; round < 12; ++round) {
      for (std::size_t i = graph.below(80); i > 0; --i) graph.create(), graph.refer();
      const std::string before = snapshot(graph.model());
      {
        Transaction transaction(graph.model());
        for (std::size_t i = graph.below(30); i > 0; --i) {
          graph.destroy();
          expectConsistent(graph.model());
        }
        if (round % 3) transaction.commit();
      }
      if (round % 3 == 0) {
        EXPECT_EQ(snapshot(graph.model()), before);
      }
      graph.sweep();
      for (std::size_t i = graph.below(40); i > 0; --i) graph.destroy();  // single ones
      graph.sweep();
      expectConsistent(graph.model());
    }
  }
}

TEST_F(DestructionTest, ManyReferencesBetweenFewElements) {
  std::vector<Term> variables;
  for (int i = 0; i < 300; ++i) variables.push_back(variable("x"));
  std::vector<Join> joins;
  for (int i = 0; i < 40; ++i) joins.push_back(expressions.createJoin(variables));
  variables[7]->destroy();
  for (const Join& join : joins) EXPECT_EQ(join->getOperands().size(), 299U);
  expectConsistent(model);
}

}  // namespace
}  // namespace torvan::datamodel
