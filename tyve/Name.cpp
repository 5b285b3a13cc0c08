#include <tyve/Name.h>

#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace tyve {

Name intern(std::string_view text) {
  struct Pool {
    std::mutex mutex;
    std::unordered_map<std::string_view, std::unique_ptr<const Name::Entry>> entries;
  };
  static Pool& pool = *new Pool;  // outlives all that has a name
  if (text.empty()) return {};
  const std::lock_guard lock(pool.mutex);
  const auto found = pool.entries.find(text);
  if (found != pool.entries.end()) return Name(found->second.get());
  auto entry = std::make_unique<const Name::Entry>(text);
  const std::string_view key = entry->text;
  return Name(pool.entries.emplace(key, std::move(entry)).first->second.get());
}

const std::string& Name::text() const noexcept {
  static const std::string none;
  return entry_ ? entry_->text : none;
}

Name Name::parent() const {
  const std::size_t point = text().rfind('.');
  return point == std::string::npos ? Name() : intern(std::string_view(text()).substr(0, point));
}

std::string_view Name::last() const noexcept {
  return std::string_view(text()).substr(text().rfind('.') + 1);  // all of it without a point
}

}  // namespace tyve
