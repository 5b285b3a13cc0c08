#pragma once

#include <string>

#include <gtest/gtest.h>
#include <orb/zero/Exception.h>

namespace orb::zero {

/// What a call raises: "Identifier" or "Identifier(argument,argument)"; "none" if it returns.
template <class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const Exception& exception) {
    EXPECT_EQ(exception.getCatalog(), "orb0:messages");
    std::string text;
    for (const std::string& argument : exception.getArguments())
      text += (text.empty() ? "" : ",") + argument;
    return exception.getIdentifier() + (text.empty() ? "" : "(" + text + ")");
  }
  return "none";
}

}  // namespace orb::zero
