#pragma once

#include <orb/zero/Exception.h>

#include "tests/support/Failure.h"

namespace orb::zero {

template <class Call>
std::string failureOf(Call call) {
  return torvan::tests::failureOf<Exception>(call, "orb0:messages");
}

}  // namespace orb::zero
