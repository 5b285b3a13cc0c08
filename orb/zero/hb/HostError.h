#pragma once

#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/hb/Api.h>

namespace orb::zero::hb {

/// Throws the failure as one of the host: catalog, identifier, arguments and text stay the same.
[[noreturn]] ORB_ZERO_HB_API void raiseToHost(const Exception& error);

/// Calls on behalf of the host: failures of elements become failures of the host.
template <class Call>
decltype(auto) asHost(Call&& call) {
  try {
    return std::forward<Call>(call)();
  } catch (const Exception& error) {
    raiseToHost(error);
  }
}

}  // namespace orb::zero::hb
