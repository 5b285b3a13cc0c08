#pragma once

#include <memory>

#include <tyve/COSClassInfo.h>

namespace torvan::datamodel::hb {

using ClassPointer = std::unique_ptr<const tyve::COSClassInfo>;

// The host classes of the package "torvan.session".
ClassPointer makeBitsClass();
ClassPointer makeExpressionFactoryClass();
ClassPointer makeSessionClass();
ClassPointer makeSystemBuilderClass();
ClassPointer makeTransactionClass();
ClassPointer makeTypeFactoryClass();
ClassPointer makeValueFactoryClass();

}  // namespace torvan::datamodel::hb
