#include <gtest/gtest.h>

#include <boost/uuid/uuid_io.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include <orb/zero/ImplOf.h>
#include <orb/zero/hb/HostObject.h>
#include <orb/zero/hb/WrapperInfo.h>
#include <orb/zero/meta/Emit.h>
#include <torvan/datamodel/Api.h>

namespace torvan::datamodel {

/// Its name is a number.
class Pipe : public orb::zero::Handle<Pipe, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;
};

class Pipe::Impl : public orb::zero::ImplOf<Pipe> {
  std::uint16_t name_ = 0;

 public:
  static constexpr Table table{
      Instances::Concrete, "torvan.datamodel.Pipe", "2d6a1f0c-7b58-4b0e-9c35-6f1d0e8a4b11",
      Row{&Impl::name_, "name", 1, "95c3e7d4-1a2f-4f86-8d70-b3e94c5a6d12", Unique}};

  void setName(std::uint16_t value) { set<&Impl::name_>(value); }
};

namespace {

TEST(PrintTest, ANameThatIsNoTextIsNotShown) {
  meta::classesOf(meta::ClassList<Pipe>());
  const auto model = orb::zero::Model::create();
  const Pipe pipe = Pipe::create(model, model.newUuid());
  pipe->setName(5);
  const orb::zero::hb::WrapperInfo info(Pipe::metaClass(), {});
  const auto object = std::make_shared<const orb::zero::hb::ElementObject>(pipe);
  EXPECT_EQ(info.print(tyve::Value::object(info.getName(), object)),
            "<torvan.datamodel.Pipe " + to_string(pipe->getUuid()) + ">");
}

}  // namespace
}  // namespace torvan::datamodel
