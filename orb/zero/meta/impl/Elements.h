#pragma once

// Makes `->` work for a user who includes the header of a single class: all handles come first, then
// the Impls. Every handle's header ends by including this file.

#include <orb/zero/meta/Argument.h>
#include <orb/zero/meta/Class.h>
#include <orb/zero/meta/Enum.h>
#include <orb/zero/meta/EnumLiteral.h>
#include <orb/zero/meta/NamedElement.h>
#include <orb/zero/meta/Operation.h>
#include <orb/zero/meta/Package.h>
#include <orb/zero/meta/PrimitiveType.h>
#include <orb/zero/meta/Property.h>
#include <orb/zero/meta/Type.h>
#include <orb/zero/meta/TypedElement.h>

#include <orb/zero/meta/impl/ClassImpl.h>
#include <orb/zero/meta/impl/OperationImpl.h>
#include <orb/zero/meta/impl/PackageImpl.h>
#include <orb/zero/meta/impl/PropertyImpl.h>
#include <orb/zero/meta/impl/TypeImpl.h>
#include <orb/zero/meta/impl/TypedElementImpl.h>
