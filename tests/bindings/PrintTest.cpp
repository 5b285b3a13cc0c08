#include <gtest/gtest.h>

#include <boost/uuid/uuid_io.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include <orb/zero/ElementMap.h>
#include <orb/zero/ImplOf.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/WrapperInfo.h>
#include <torvan/datamodel/Api.h>
#include <torvan/datamodel/ValueTypes.h>

#include <orb/zero/meta/Emit.h>  // after the types

namespace torvan::datamodel {

/// Its name is a number; its parts have keys that hosts have no form for.
class Pipe : public orb::zero::Handle<Pipe, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const Property& parts() { return property(3); }
};

class Pipe::Impl : public orb::zero::ImplOf<Pipe> {
  std::uint16_t name_ = 0;
  BitSet bits_;
  orb::zero::ElementMap<BitSet, Pipe> parts_{*this, &Impl::keyOf, &Pipe::parts};

 public:
  static constexpr Table table{
      Instances::Concrete,
      "torvan.datamodel.Pipe",
      "2d6a1f0c-7b58-4b0e-9c35-6f1d0e8a4b11",
      Row{&Impl::name_, "name", 1, "95c3e7d4-1a2f-4f86-8d70-b3e94c5a6d12", Unique},
      Row{&Impl::bits_, "bits", 2, "0c8f5b2e-64d7-4a19-b3e0-7d915a2c6f84", Unique},
      Row{&Impl::parts_, "parts", 3, "e17a94d3-2b5c-4d08-9f6e-3a0c8b7d5142", 0, "bits"}};

  static const BitSet& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).bits_;
  }
  void setName(std::uint16_t value) { set<&Impl::name_>(value); }
};

namespace {

TEST(PrintTest, WhatTheHostHasNoFormForIsNotShown) {
  meta::classesOf(meta::ClassList<Pipe>());
  const auto model = orb::zero::Model::create();
  const Pipe pipe = Pipe::create(model, model.newUuid());
  pipe->setName(5);
  const orb::zero::hb::WrapperInfo info(Pipe::metaClass(), {});
  const auto object = std::make_shared<const orb::zero::hb::ElementObject>(pipe);
  EXPECT_EQ(info.print(tyve::Value::object(info.getName(), object)),
            "<torvan.datamodel.Pipe " + to_string(pipe->getUuid()) + ">");
  EXPECT_EQ(info.getProperties().size(), 1U);
}

}  // namespace
}  // namespace torvan::datamodel
