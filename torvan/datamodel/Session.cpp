#include <torvan/datamodel/Session.h>

#include <orb/zero/meta/AbstractMetaPackage.h>

namespace torvan::datamodel {

Session::Session()
    : model_(orb::zero::Model::create()),
      valueFactory_(std::make_unique<ValueFactory>(model_)),
      typeFactory_(std::make_unique<TypeFactory>(model_)),
      expressionFactory_(std::make_unique<ExpressionFactory>(model_)) {
  typeFactory_->valueFactory(valueFactory_.get());
  metaPackage().ensureInitialized();  // so that classes are found by name
}

Session::~Session() = default;

std::unique_ptr<SystemBuilder> Session::createSystemBuilder() const {
  return std::make_unique<SystemBuilder>(model_);
}

}  // namespace torvan::datamodel
