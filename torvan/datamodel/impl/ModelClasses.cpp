#include <torvan/datamodel/ModelClasses.h>

#include <orb/zero/meta/Emit.h>
#include <torvan/datamodel/Ref.h>
#include <torvan/datamodel/ValueTypes.h>

namespace torvan::datamodel {

std::span<const meta::ClassInfo* const> modelClasses() { return classesOf(ModelClasses()); }

}  // namespace torvan::datamodel
