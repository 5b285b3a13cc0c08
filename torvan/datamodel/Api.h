#pragma once

#include <orb/zero/meta/Table.h>

/// Marks what the shared library `torvan_datamodel` offers to its users; all else stays hidden.
#define TORVAN_DATAMODEL_API __attribute__((visibility("default")))

namespace torvan::datamodel {

namespace meta = orb::zero::meta;
namespace query = orb::zero::query;
using meta::Instances, meta::Op, meta::Row, meta::Table;

/// The package that describes the classes, see `MetaPackageTorvan_datamodel`.
TORVAN_DATAMODEL_API meta::AbstractMetaPackage& metaPackage();
template <class X>
meta::AbstractMetaPackage& packageOf(std::type_identity<X>) {
  return metaPackage();
}

using orb::zero::ModelElement;
using Property = meta::PropertyInfo;

}  // namespace torvan::datamodel
