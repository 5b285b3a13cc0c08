#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace torvan::tests {

/// What a call raises: "Identifier" or "Identifier(argument,argument)"; "none" if it returns. An
/// error of another catalog than this one begins with "other ".
template <class Exception, class Call>
std::string failureOf(Call call, std::string_view catalog) {
  try {
    call();
  } catch (const Exception& exception) {
    EXPECT_STRNE(exception.what(), "Message text unavailable");
    std::string text;
    for (const std::string& argument : exception.getArguments())
      text += (text.empty() ? "" : ",") + argument;
    return (exception.getCatalog() == catalog ? "" : "other ") + exception.getIdentifier() +
           (text.empty() ? "" : "(" + text + ")");
  }
  return "none";
}

/// The text of what a call raises; "none" if it returns.
template <class Exception, class Call>
std::string textOfFailure(Call call) {
  try {
    call();
  } catch (const Exception& exception) {
    return exception.what();
  }
  return "none";
}

/// Expects that the expression raises what `failureOf` is to tell of it.
#define EXPECT_RAISES(expression, failure) EXPECT_EQ(failureOf([&] { expression; }), failure)

}  // namespace torvan::tests
