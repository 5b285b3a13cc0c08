#pragma once

#include <memory>
#include <vector>

#include <orb/zero/Model.h>

namespace orb::zero {

/// A group of models that know each other. Copies stand for the same group; a model belongs to the
/// constellation that it was created with until it ends. A constellation does not keep its models.
class ORB_ZERO_API ModelConstellation {
 public:
  ModelConstellation();

  /// The live models, in the order of their creation.
  std::vector<Model> getModels() const;

 private:
  friend class Model;
  std::shared_ptr<std::vector<Model::Impl*>> members_;
};

}  // namespace orb::zero
