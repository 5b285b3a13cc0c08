#include <orb/zero/ModelConstellation.h>

#include <orb/zero/ModelImpl.h>

namespace orb::zero {

ModelConstellation::ModelConstellation()
    : members_(std::make_shared<std::vector<Model::Impl*>>()) {}

std::vector<Model> ModelConstellation::getModels() const {
  std::vector<Model> models;
  for (Model::Impl* member : *members_) models.emplace_back(member);
  return models;
}

}  // namespace orb::zero
