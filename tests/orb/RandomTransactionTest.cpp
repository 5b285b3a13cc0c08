#include <array>
#include <list>
#include <random>

#include "tests/datamodel/SessionTest.h"
#include "tests/orb/ModelSnapshot.h"

namespace torvan::datamodel {
namespace {

using orb::zero::CollisionResolution;

/// Does random things to a small model. Every savepoint remembers what its rollback has to restore.
class RandomChanges {
 public:
  RandomChanges(unsigned seed, bool reclaims) : random_(seed), reclaims_(reclaims) {
    for (int i = 0; i < 20; ++i) create();
  }

  void step() {
    const std::size_t choice = below(30);
    if (choice < 4)
      begin();
    else if (choice < 9)
      end(choice < 6);
    else if (choice < 12)
      create();
    else if (choice < 14)
      destroy();
    else if (choice < 15 && reclaims_)
      model_.reclaim();
    else
      change();
    expectConsistent(model_);
  }
  void finish() {
    while (!open_.empty()) end(false);
  }

 private:
  struct Savepoint {
    explicit Savepoint(const Model& model) : before(snapshot(model)), transaction(model) {}
    std::string before;
    Transaction transaction;
  };

  std::size_t below(std::size_t end) { return random_() % end; }
  std::string name() { return std::string(1, static_cast<char>('a' + below(4))); }

  /// A random element of the class, or an empty handle.
  template <class X>
  X any() {
    std::vector<ModelElement> all;
    for (const ModelElement element : model_.elements(X::metaClass())) all.push_back(element);
    return all.empty() || below(20) == 0 ? X() : X{all[below(all.size())]};
  }

  void begin() { open_.emplace_back(model_); }
  void end(bool commit) {
    if (open_.empty()) return;
    const std::string before = std::move(open_.back().before);
    if (commit) open_.back().transaction.commit();
    open_.pop_back();
    if (!commit) {
      EXPECT_EQ(snapshot(model_), before);
    }
  }

  void create() {
    static const std::array classes{
        &StructType::metaClass(), &FieldType::metaClass(), &FieldType::metaClass(),
        &Struct::metaClass(),     &FieldElem::metaClass(), &FieldElem::metaClass(),
        &System::metaClass(),     &Equation::metaClass(),  &Equation::metaClass(),
        &Variable::metaClass(),   &Join::metaClass(),      &PowerSetType::metaClass(),
        &PowerSet::metaClass()};
    const ModelElement made = model_->create(*classes[below(classes.size())], model_.newUuid());
    held_[below(held_.size())] = made;
    if (made->getMetaClass() == FieldElem::metaClass()) FieldElem{made}->basicSetName(name());
    if (made->getMetaClass() == FieldType::metaClass()) FieldType{made}->setName(name());
  }
  void destroy() {
    if (const ModelElement element = any<ModelElement>()) element->destroy();
  }

  void change() {
    try {
      switch (below(9)) {
        case 0: return changeTerm(any<Term>());
        case 1: return changeLatticeType(any<LatticeType>());
        case 2: return changeFields(any<StructType>(), any<FieldType>());
        case 3: return changeFields(any<StructType>(), any<FieldType>());
        case 4: return changeValues(any<Struct>(), any<FieldElem>());
        case 5: return changeEquations(any<System>(), any<Equation>());
        case 6: return changeEquations(any<System>(), any<Equation>());
        case 7: return changeOperands(any<Join>());
        default: return changeEquation(any<Equation>());
      }
    } catch (const orb::zero::Exception&) {
      // A refusal, such as of a key that is taken, has to leave everything as it was.
    }
  }
  void changeTerm(const Term& term) {
    term->setType(any<LatticeType>());
    const auto& type = term->getMetaClass();
    if (type == Variable::metaClass()) Variable{term}->setName(name());
    if (type == PowerSet::metaClass()) PowerSet{term}->setValue(BitSet(below(130), random_()));
  }
  void changeLatticeType(const LatticeType& type) {
    type->setNumElems(static_cast<std::uint16_t>(below(3)));
    type->setTop(any<LatticeValue>());
    if (!(type->getMetaClass() == PowerSetType::metaClass())) return;
    auto& universe = PowerSetType{type}->getUniverse();
    universe.insert(below(universe.size() + 1), name());
    if (below(2)) universe.erase(below(universe.size()));
  }
  void changeFields(const StructType& type, const FieldType& field) {
    switch (below(5)) {
      case 0: return field->setName(name());
      case 1: return field->setElemType(any<LatticeType>());
      case 2: return type->getFields().erase(name());
      default: return type->getFields().insert(field, resolution());
    }
  }
  void changeValues(const Struct& record, const FieldElem& field) {
    if (below(3) == 0) return field->setValue(any<LatticeValue>());
    record->getValues().insert(field, resolution());
  }
  void changeEquations(const System& system, const Equation& equation) {
    auto& equations = system->getEquations();
    switch (below(4)) {
      case 0: return equations.set(below(equations.size() + 1), equation);
      case 1: return equations.remove(equation);
      default: return equations.add(equation);
    }
  }
  void changeOperands(const Join& join) {
    auto& operands = join->getOperands();
    switch (below(5)) {
      case 0: return operands.addEmpty();
      case 1: return operands.erase(below(operands.size() + 1));
      case 2: return operands.set(below(operands.size() + 1), any<Term>());
      default: return operands.insert(below(operands.size() + 1), any<Term>());
    }
  }
  void changeEquation(const Equation& equation) {
    equation->setLhs(any<LExpression>());
    equation->setRhs(any<Term>());
  }
  CollisionResolution resolution() { return static_cast<CollisionResolution>(below(3)); }

  std::mt19937 random_;
  const bool reclaims_;
  const Model model_ = Model::create();
  std::array<ModelElement, 4> held_;  // some of all elements are held from outside
  std::list<Savepoint> open_;
};

void expectRollbacksToRestore(bool reclaims) {
  for (unsigned seed = 0; seed < 200 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    RandomChanges changes(seed, reclaims);
    for (int step = 0; step < 60; ++step) changes.step();
    changes.finish();
  }
}

TEST(RandomTransactionTest, RollbackRestoresEverything) { expectRollbacksToRestore(false); }
TEST(RandomTransactionTest, ReclaimTakesNothingFromARollback) { expectRollbacksToRestore(true); }

}  // namespace
}  // namespace torvan::datamodel
