#pragma once

namespace torvan::slicer {

struct BlockColours {
  const char* fill;
  const char* stroke;
  const char* text;
};

inline constexpr BlockColours plainColours{"#f8fafc", "#94a3b8", "#64748b"};
inline constexpr BlockColours sliceColours{"#fde68a", "#b45309", "#1c1917"};
inline constexpr BlockColours criterionColours{"#fca5a5", "#b91c1c", "#1c1917"};

inline constexpr const char* plainLine = "#a8b3c2";
inline constexpr const char* sliceLine = "#d97706";

}  // namespace torvan::slicer
