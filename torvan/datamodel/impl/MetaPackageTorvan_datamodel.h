#pragma once

#include <orb/zero/meta/AbstractMetaPackage.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// Describes the classes of the data model, `boolean3` and the primitive types of its values in the
/// registry. The packages "torvan" and "datamodel" follow the root package, which carries the bare
/// namespace URI.
class TORVAN_DATAMODEL_API MetaPackageTorvan_datamodel final : public meta::AbstractMetaPackage {
 public:
  /// The one instance; it describes nothing before `initialize`.
  static MetaPackageTorvan_datamodel& getInstance();

 private:
  MetaPackageTorvan_datamodel();

  void instantiate(meta::MetaRegistry& registry) override;
  void instantiate_torvan(meta::MetaRegistry& registry);
  void instantiate_torvan_datamodel(meta::MetaRegistry& registry);

  void weave(meta::MetaRegistry& registry, meta::PropertySerializerRegistry& serializers) override;
  void weave_torvan(meta::MetaRegistry& registry, meta::PropertySerializerRegistry& serializers);
  void weave_torvan_datamodel(meta::MetaRegistry& registry,
                              meta::PropertySerializerRegistry& serializers);
};

}  // namespace torvan::datamodel
