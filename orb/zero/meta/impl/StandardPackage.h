#pragma once

#include <orb/zero/meta/AbstractMetaPackage.h>

namespace orb::zero::meta {

/// Describes the framework itself: the root of all classes, the standard primitive types, and the
/// classes of the descriptions. The registry initialises it.
class StandardPackage final : public AbstractMetaPackage {
 public:
  static StandardPackage& getInstance();

 private:
  StandardPackage();
  void instantiate(MetaRegistry& registry) override;
  void weave(MetaRegistry& registry, PropertySerializerRegistry& serializers) override;
};

}  // namespace orb::zero::meta
