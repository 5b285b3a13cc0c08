// A single header is enough for all that its class offers.
#include <torvan/datamodel/Session.h>

using namespace torvan::datamodel;

int main() {
  const Session session;
  const PowerSetType type = session.typeFactory()->createPowerSetType("colours", 3);
  const LatticeValue top = type->getTop();
  const auto transaction = session.model().beginTransaction();
  type->setNumElems(4);
  try {
    StructType{type};
  } catch (const orb::zero::Exception& error) {
    return error.getIdentifier() == "CannotCastIncompatibleTypes" && top.le(top) == boolean3::T ? 0
                                                                                                : 1;
  }
  return 1;
}
