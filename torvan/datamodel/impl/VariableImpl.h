#pragma once

#include <string>
#include <utility>

#include <torvan/datamodel/Variable.h>
#include <torvan/datamodel/impl/LExpressionImpl.h>

namespace torvan::datamodel {

class TORVAN_DATAMODEL_API Variable::Impl : public orb::zero::ImplOf<Variable> {
  std::string name_;

 public:
  static constexpr Table table{Instances::Concrete, "torvan.datamodel.Variable",
                               "dad3b5dc-56b9-3729-8430-8d673ca0d597",
                               Row{&Impl::name_, "name", 2, "608071fd-1cd3-3457-a84a-8f5025565dee",
                                   Ordered | Unique | NoMutator | NoDefault}};

  const std::string& getName() const noexcept { return name_; }
  bool hasName() const noexcept { return has<&Impl::name_>(); }
  void basicSetName(std::string value) { basicSet<&Impl::name_>(std::move(value)); }
  void setName(std::string value) { set<&Impl::name_>(std::move(value)); }
};

}  // namespace torvan::datamodel
