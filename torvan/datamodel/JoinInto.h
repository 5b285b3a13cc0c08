#pragma once

#include <span>

#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/LatticeValue.h>

namespace torvan::datamodel {

/// Whether a handle may come to refer to what others refer to as well.
enum class Sharing : bool { None, Allowed };

/// Joins another value into the one that the handle refers to, as analyses do that collect values;
/// true when that has made it more. A power set that this handle alone holds is changed in place,
/// recorded as by its setter; otherwise the handle gets a new value, if it is more, and what it
/// referred to stays as it is. Where sharing is allowed, that is the other value itself if it is a
/// power set of the same type and model and all that results. Raises what `LatticeValue::join`
/// does. What is below the value is known by `le`, so parts are to have the types that the type of
/// their owner gives them, or `join` may do more.
TORVAN_DATAMODEL_API bool joinInto(LatticeValue& value, const LatticeValue& other,
                                   Sharing sharing = Sharing::None);
/// The same of several values, one after the other. When one raises, those before it have been
/// joined.
TORVAN_DATAMODEL_API bool joinAllInto(LatticeValue& value,
                                      std::span<const LatticeValue* const> others,
                                      Sharing sharing = Sharing::None);

/// Whether nothing but this handle refers to the value, and what the open transaction, but not a
/// history, keeps to undo.
inline bool isHeldAlone(const LatticeValue& value) noexcept {
  const auto* const element = value.get();
  if (!element || element->outsideCount() != 1) return false;
  std::uint32_t others = element->slotCount();
  if (others == 0) [[likely]]
    return true;
  for (const auto* record = element->storage(); record; record = record->previous()) --others;
  return others == 0;
}

}  // namespace torvan::datamodel
