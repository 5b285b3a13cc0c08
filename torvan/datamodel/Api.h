#pragma once

#include <orb/zero/meta/Table.h>

/// Marks what the shared library `torvan_datamodel` offers to its users; all else stays hidden.
#define TORVAN_DATAMODEL_API __attribute__((visibility("default")))

namespace torvan::datamodel {

namespace meta = orb::zero::meta;
namespace query = orb::zero::query;
using meta::Instances, meta::Row, meta::Table;

using orb::zero::ModelElement;
using Property = meta::PropertyInfo;

}  // namespace torvan::datamodel
