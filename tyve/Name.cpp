#include <tyve/Name.h>

#include <mutex>
#include <unordered_set>

namespace tyve {
namespace {

struct TextHash : std::hash<std::string_view> {
  using is_transparent = void;
};

struct Pool {
  std::mutex mutex;
  std::unordered_set<std::string, TextHash, std::equal_to<>> texts;  // its nodes stay in place
};

}  // namespace

Name intern(std::string_view text) {
  static Pool& pool = *new Pool;  // outlives all that has a name
  if (text.empty()) return {};
  const std::lock_guard lock(pool.mutex);
  auto found = pool.texts.find(text);
  if (found == pool.texts.end()) found = pool.texts.emplace(text).first;
  return Name(&*found);
}

const std::string& Name::text() const noexcept {
  static const std::string none;
  return text_ ? *text_ : none;
}

Name Name::parent() const {
  const std::size_t point = text().rfind('.');
  return point == std::string::npos ? Name() : intern(std::string_view(text()).substr(0, point));
}

std::string_view Name::last() const noexcept {
  return std::string_view(text()).substr(text().rfind('.') + 1);  // all of it without a point
}

}  // namespace tyve
