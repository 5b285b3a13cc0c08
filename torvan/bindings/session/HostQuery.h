#pragma once

#include <torvan/bindings/session/HostLists.h>

namespace torvan::datamodel::hb {

/// The elements of a class, given by its dotted name or its description, whose properties have the
/// values of a struct: equal single values, no value or element where it has an empty one, and
/// collections that contain it. They are in the order of their creation, as the open transaction
/// left them. Raises "NoSuchType", "NoSuchProperty", and what converting the values raises.
List findElements(const orb::zero::Model& model, const tyve::Value& type,
                  const tyve::Value& filter);

}  // namespace torvan::datamodel::hb
