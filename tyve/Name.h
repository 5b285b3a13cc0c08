#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

#include <tyve/Api.h>

namespace tyve {

class COSClassInfo;

/// An interned text: one word, equal to another one when the texts are. It is valid until the
/// process ends, and may be used by all threads.
class TYVE_API Name {
 public:
  /// No name; its text is empty.
  constexpr Name() noexcept = default;

  const std::string& text() const noexcept;
  /// What stands before the last point ("a.b" of "a.b.C"); no name when there is no point.
  Name parent() const;
  /// What stands behind it: "C".
  std::string_view last() const noexcept;

  explicit operator bool() const noexcept { return entry_ != nullptr; }
  friend bool operator==(Name, Name) noexcept = default;

 private:
  friend TYVE_API Name intern(std::string_view text);
  friend class ClassSystem;
  friend struct std::hash<Name>;

  struct Entry {
    explicit Entry(std::string_view name) : text(name) {}

    const std::string text;
    mutable std::atomic<const COSClassInfo*> foundClass = nullptr;  // see `ClassSystem::findClass`
  };
  explicit Name(const Entry* entry) noexcept : entry_(entry) {}

  const Entry* entry_ = nullptr;
};

/// The name of this text; no name of an empty one. Names are never given back, so they are for
/// what programs declare, not for what users enter.
TYVE_API Name intern(std::string_view text);

}  // namespace tyve

template <>
struct std::hash<tyve::Name> {
  std::size_t operator()(tyve::Name name) const noexcept {
    return std::hash<const void*>()(name.entry_);
  }
};
