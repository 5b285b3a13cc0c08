#pragma once

#include <memory>

#include <orb/zero/Model.h>
#include <torvan/datamodel/ExpressionFactory.h>
#include <torvan/datamodel/SystemBuilder.h>
#include <torvan/datamodel/TypeFactory.h>
#include <torvan/datamodel/ValueFactory.h>

namespace torvan::datamodel {

/// The entry point of the library: a fresh model and the factories that fill it. A session is used
/// from one thread at a time; elements made through it live on after it while a handle refers to
/// them.
class TORVAN_DATAMODEL_API Session {
 public:
  Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  orb::zero::Model model() const { return model_; }
  /// The factories belong to the session and are the same for its whole life.
  TypeFactory* typeFactory() const noexcept { return typeFactory_.get(); }
  ValueFactory* valueFactory() const noexcept { return valueFactory_.get(); }
  ExpressionFactory* expressionFactory() const noexcept { return expressionFactory_.get(); }
  /// A builder of a new system in the session's model; it may outlive the session.
  std::unique_ptr<SystemBuilder> createSystemBuilder() const;

 private:
  // Destroyed from the last to the first.
  orb::zero::Model model_;
  std::unique_ptr<ValueFactory> valueFactory_;
  std::unique_ptr<TypeFactory> typeFactory_;
  std::unique_ptr<ExpressionFactory> expressionFactory_;
};

}  // namespace torvan::datamodel
