#pragma once

namespace torvan::slicer {

struct BlockColours {
  const char* fill;
  const char* stroke;
  const char* text;
};

inline constexpr BlockColours kPlainColours{"#f8fafc", "#94a3b8", "#64748b"};
inline constexpr BlockColours kSliceColours{"#fde68a", "#b45309", "#1c1917"};
inline constexpr BlockColours kCriterionColours{"#fca5a5", "#b91c1c", "#1c1917"};

inline constexpr const char* kPlainLine = "#a8b3c2";
inline constexpr const char* kSliceLine = "#d97706";

}  // namespace torvan::slicer
