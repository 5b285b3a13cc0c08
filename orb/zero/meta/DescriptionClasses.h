#pragma once

#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/ClassList.h>

namespace orb::zero::meta {

/// All classes of descriptions.
using Descriptions = ClassList<Argument, Class, Enum, EnumLiteral, NamedElement, Operation, Package,
                               PrimitiveType, Property, Type, TypedElement>;

}  // namespace orb::zero::meta
