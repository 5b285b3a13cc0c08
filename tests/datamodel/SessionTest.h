#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <orb/zero/ElementRange.h>
#include <orb/zero/Transaction.h>
#include <torvan/datamodel.h>

#include "tests/orb/Failure.h"

namespace torvan::datamodel {

using orb::zero::failureOf;
using orb::zero::Model;
using orb::zero::Transaction;

/// The bits of these elements of a universe, counted from 1.
inline BitSet bitsOf(std::size_t length, std::initializer_list<std::size_t> elements) {
  BitSet bits(length);
  for (const std::size_t element : elements) bits.set(element - 1);
  return bits;
}

/// What is raised where an element of this class is asked for.
template <class X>
std::string castFailure() {
  return "CannotCastIncompatibleTypes(" + std::string(X::metaClass().name) + ')';
}

/// A fresh session with shorthands.
class SessionTest : public testing::Test {
 protected:
  PowerSetType sets(std::uint16_t size) { return types.createPowerSetType("P", size); }
  PowerSet set(const PowerSetType& type, std::initializer_list<std::size_t> elements) {
    return values.createPowerSet(type, bitsOf(type->getNumElems(), elements));
  }
  Variable variable(const std::string& name, const LatticeType& type = {}) {
    return expressions.createVariable(type, name);
  }
  /// A field of that name, part of no record.
  FieldElem field(const std::string& name, const LatticeValue& value = {}) {
    FieldElem::Builder builder(model);
    builder->basicSetName(name);
    builder->setValue(value);
    return builder.create();
  }
  FieldType fieldType(const std::string& name) {
    FieldType::Builder builder(model);
    builder->basicSetName(name);
    return builder.create();
  }
  System systemOf(const std::vector<Equation>& equations) {
    const System system = make<System>();
    for (const Equation& each : equations) system->getEquations().add(each);
    return system;
  }
  /// A set without a type.
  PowerSet bits(std::size_t length, std::initializer_list<std::size_t> elements) {
    return values.createPowerSet({}, bitsOf(length, elements));
  }
  template <class Changes>
  void inTransaction(Changes changes) {
    Transaction transaction(model);
    changes();
    transaction.commit();
  }
  template <class X>
  X make() {
    return X::create(model, model.newUuid());
  }

  Session session;
  Model model = session.model();
  TypeFactory& types = *session.typeFactory();
  ValueFactory& values = *session.valueFactory();
  ExpressionFactory& expressions = *session.expressionFactory();
};

}  // namespace torvan::datamodel
