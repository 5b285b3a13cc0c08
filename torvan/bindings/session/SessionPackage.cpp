#include <torvan/bindings/session/impl/SessionPackage.h>

#include <torvan/bindings/session/impl/SessionClasses.h>

namespace torvan::datamodel::hb {

SessionPackage::SessionPackage() : EmptyParentPackage(tyve::intern("torvan.session")) {}

void SessionPackage::initializePackage() {
  for (const auto make :
       {makeBitsClass, makeExpressionFactoryClass, makeSessionClass, makeSystemBuilderClass,
        makeTransactionClass, makeTypeFactoryClass, makeValueFactoryClass})
    addClass(make());
}

}  // namespace torvan::datamodel::hb
