#include <orb/zero/io/ModelFile.h>

#include <algorithm>
#include <sstream>
#include <streambuf>

#include <boost/algorithm/string/replace.hpp>

#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/impl/Elements.h>
#include "tests/datamodel/SessionTest.h"
#include "tests/orb/Diary.h"
#include "tests/orb/ModelSnapshot.h"
#include "tests/orb/Subject.h"
#include "tests/support/Golden.h"

namespace torvan::datamodel {
namespace {

namespace io = orb::zero::io;
using orb::zero::uuid;

template <class What>
std::string saved(const What& what) {
  std::ostringstream out;
  io::save(what, out);
  return out.str();
}
void load(const Model& model, const std::string& text) {
  std::istringstream in(text);
  io::load(model, in, "f");
}
Model loaded(const std::string& text) {
  const Model model = Model::create();
  load(model, text);
  return model;
}
std::string refusalOf(const std::string& text) {
  const Model model = Model::create();
  const std::string refusal = failureOf([&] { load(model, text); });
  EXPECT_EQ(model.size(), 0U);
  return refusal;
}

/// What is observed of a model, whatever the order of its elements.
std::vector<std::string> contentOf(const Model& model) {
  std::vector<std::string> lines;
  for (const ModelElement element : model.elements()) lines.push_back(describe(element));
  std::ranges::sort(lines);
  return lines;
}

/// The UUIDs of the golden file.
uuid id(std::uint8_t n) { return {{0, 0, 0, 0, 0, 0, 0x40, 0, 0x80, 0, 0, 0, 0, 0, 0, n}}; }
std::string idText(std::uint8_t n) { return to_string(id(n)); }

class SaveTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { metaPackage().ensureInitialized(); }
  static std::string golden() { return tests::golden("model-1.json"); }
};

TEST_F(SaveTest, EveryClassWithAllItsPropertiesComesBack) {
  for (const ClassInfo* type : modelClasses()) {
    for (const std::uint16_t n :
         {std::uint16_t{0}, std::uint16_t{3}}) {  // 0 and "" are given like any other value
      if (type->isAbstract()) continue;
      const Model model = Model::create();
      const ModelElement bare = type->makeBuilder(model)->create();
      const ModelElement element = type->makeBuilder(model)->create();
      for (const Property* property : type->all)
        if (!(property->flags & meta::ReadOnly) && property->typeName() != "BitSet")
          element->setPropertyValue(*property, fit(model, *property, n));
      const std::string text = saved(model);
      const Model copy = loaded(text);
      EXPECT_EQ(contentOf(copy), contentOf(model)) << text;
      EXPECT_EQ(saved(copy), text);
      expectConsistent(copy);
    }
  }
}

TEST_F(SaveTest, WhatIsTransientStaysBehind) {
  const Model model = Model::create();
  const PowerSet set = PowerSet::create(model, id(1));
  set->setValue(BitSet(8, 3));
  EXPECT_FALSE(PowerSet(loaded(saved(model)).find(id(1)))->hasValue());
}

TEST_F(SaveTest, TheFirstVersionIsReadAndWritten) {
  const Model model = loaded(golden());
  EXPECT_EQ(saved(model), golden());
  EXPECT_EQ(model.size(), 13U);
  const Join join(model.find(id(6)));
  const auto& operands = join->getOperands();
  ASSERT_EQ(operands.size(), 5U);
  EXPECT_TRUE(operands[0] == model.find(id(5)) && !operands[1].get() && operands[3] == join);
  EXPECT_TRUE(operands[2] == model.find(id(7)) && operands[4] == Join::createProxy(model, id(20)));
  const Variable unnamed(model.find(id(7)));
  EXPECT_TRUE(unnamed->hasName() && unnamed->getType()->isProxy());
  const auto& equations = System(model.find(id(1)))->getEquations();
  EXPECT_TRUE(equations[0]->getRhs() == join && equations[2] == model.find(id(4)));
  EXPECT_TRUE(equations[1]->isProxy() && equations[1]->getUuid() == id(3));
  const Array array(model.find(id(12)));
  EXPECT_TRUE(array->getValues()[3]->isProxy() && array->getValues()[10]);
  EXPECT_TRUE(array->getValues()[2]->getValue() == model.find(id(9)));
}

TEST_F(SaveTest, NothingIsLeftOut) {
  const Model model = Model::create();
  const Equation equation = Equation::create(model, id(1));
  const ModelElement proxy = Equation::create(model, id(2))->convertToProxy();
  const Equation present = Equation::create(model, id(2));
  System::create(model, id(3))->getEquations().add(proxy);
  const System::Builder builder(model);
  builder->getEquations().add(equation);  // owned by one in the making

  const Model copy = loaded(saved(model));
  EXPECT_EQ(copy.size(), 3U);
  EXPECT_TRUE(copy.find(id(1)) && !copy.find(id(2))->isProxy());
  EXPECT_EQ(System(copy.find(id(3)))->getEquations()[0], Equation::createProxy(copy, id(2)));
}

TEST_F(SaveTest, APartRefersToTheRestByProxies) {
  Session session;
  const auto type = session.typeFactory()->createPowerSetType("t", {"a", "b"});
  const auto x = session.expressionFactory()->createVariable(type, "x");
  const auto system = session.createSystemBuilder();
  const auto first = system->addEquation(x, type->getTop()), second = system->addEquation(x, x);
  const ModelElement owner = first->getContainer();

  const std::string part = saved(Elements{x, second, owner, x});
  EXPECT_EQ(saved(Elements{owner, x}), part);  // each once, whatever the order
  const Model copy = loaded(part);
  EXPECT_EQ(copy.size(), 4U);
  const Equation equation(copy.find(first->getUuid()));
  EXPECT_TRUE(equation->getRhs()->isProxy() && equation->getLhs() == copy.find(x->getUuid()));
  EXPECT_EQ(saved(copy), part);

  const Model rest = loaded(saved(Elements{type, type->getTop(), type->getBottom()}));
  load(rest, part);  // what the model has needs no proxy
  EXPECT_TRUE(Variable(rest.find(x->getUuid()))->getType() == rest.find(type->getUuid()));
  EXPECT_EQ(contentOf(rest).size(), session.model().size());

  EXPECT_EQ(loaded(saved(Elements{second})).find(second->getUuid())->getContainer(),
            ModelElement());
  EXPECT_EQ(loaded(saved(Elements())).size(), 0U);
  const auto proxy = Variable::createProxy(copy, id(1));
  EXPECT_RAISES(saved(Elements{proxy}),
                "CannotSave(" + idText(1) + ",,A proxy has nothing to save.)");
  EXPECT_RAISES(saved(Elements{x, equation}), "CannotCreateCrossModelAssociation");
  EXPECT_RAISES(saved(Elements{{}}), castFailure<ModelElement>());
}

TEST_F(SaveTest, DepthAndNumbersOfAllKindsAreKept) {
  using meta::Package, meta::TypedElement;
  const Model model = Model::create();
  Package outer = Package::create(model, id(1));
  for (int depth = 0; depth < 10'000; ++depth) {
    Package inner = Package::create(model, model.newUuid());
    inner->setName(u"p\u00e9\U0001d11e");
    inner->setParentPackage(outer);
    outer = inner;
  }
  meta::Property property = meta::Property::create(model, id(2));
  property->setIsUnique(true);
  property->setPosition(65535);
  property->setUpper(TypedElement::unbounded);
  const std::string text = saved(model);
  EXPECT_LT(text.size(), 10'000 * 160U);  // indented no further than a screen is wide
  const Model copy = loaded(text);
  EXPECT_EQ(saved(copy), text);
  const meta::Property again(copy.find(id(2)));
  EXPECT_TRUE(again->isUnique() && again->getPosition() == 65535);
  EXPECT_EQ(again->getUpper(), property->getUpper());
  EXPECT_EQ(Package(copy.find(outer->getUuid()))->getName(), u"p\u00e9\U0001d11e");
}

TEST_F(SaveTest, LoadingIsOneTransaction) {
  const Model model = Model::create();
  const auto x = Variable::create(model, id(30));
  const auto diary = std::make_shared<Diary>();
  model.addListener(diary);
  model.setHistoryLimit(9);
  x->setName("x");
  const std::string before = snapshot(model);
  diary->news();

  std::string text = golden();
  text.replace(text.rfind(idText(20)), 36, idText(99));  // known to be missing at the end only
  const std::string refusal =
      "CannotLoad(f,8," + idText(6) + ",operands,Nothing has the UUID '" + idText(20) + "'.)";
  EXPECT_RAISES(load(model, text), refusal);
  EXPECT_EQ(snapshot(model), before);
  EXPECT_TRUE(diary->news().empty() && model.undoSteps() == 1 && !model.find(id(1)));

  load(model, golden());
  EXPECT_EQ(diary->news().size(), 1U);
  const auto content = contentOf(model);
  EXPECT_TRUE(model.undo());
  EXPECT_EQ(snapshot(model), before);
  EXPECT_TRUE(model.redo());
  EXPECT_EQ(contentOf(model), content);
  EXPECT_RAISES(load(model, golden()),
                "CannotLoad(f,2,,,An object with the same key or UUID is already present.)");
  EXPECT_EQ(contentOf(model), content);
  orb::zero::Model::Freezer::freeze(model);
  EXPECT_RAISES(load(model, golden()), "CannotModifyFrozenModel");
}

TEST_F(SaveTest, OtherTextsAreRefused) {
  const struct {
    std::string from, to, refusal;  // line, element, property, cause; #4 is a UUID
  } cases[] = {
      {R"("orb.zero.model")", R"("orb.zero.modem")", "1,,,The file is no model."},
      {R"(n":1)", R"(n":2)", "1,,,The version of the file is unknown."},
      {R"("version":1,)", "", "1,,,The member 'version' is expected."},
      {"model/r1", "model/r2",
       "1,,,The meta-model 'http://torvan.org/orb0/torvan_datamodel/r2' is not registered."},
      {"],\"proxies\":[", "],\"proxies\":[],\"more\":[", "20,,,The file has no further members."},
      {R"("torvan.datamodel.System")", R"("torvan.datamodel.Nothing")",
       "2,,,There is no type named 'torvan.datamodel.Nothing'."},
      {R"("torvan.datamodel.System")", R"("torvan.datamodel.Term")", "2,,,The class is abstract."},
      {R"({"uuid":"#4"})", "{}", "5,#1,equations,An element begins with its class and UUID."},
      {"#4", "x", "5,#1,equations,'x' is no UUID."},
      {"#4", "#2", "5,#1,equations,An object with the same key or UUID is already present."},
      {R"("uuid":"#4)", R"("torvan.datamodel.Variable":"#4)",
       "5,#1,equations,Cannot add an object of type 'torvan.datamodel.Variable' to a collection "
       "of 'torvan.datamodel.Equation'."},
      {R"("lhs":"#5)", R"("lhs":"#6)",
       "3,#2,lhs,The object is empty, deleted or of another type: expected "
       "'torvan.datamodel.LExpression'."},
      {R"(,"rhs")", R"(,"lhs")", "3,#2,lhs,The property is given twice."},
      {R"(,"rhs")", R"(,"rhs ")",
       "3,#2,,The class 'torvan.datamodel.Equation' has no property 'rhs '."},
      {R"("name":"x")", R"("name":7)", "7,#5,name,A value of another kind is expected."},
      {R"("numElems":2)", R"("numElems":65536)",
       "10,#8,numElems,'65536' is no value of type 'UInteger16'."},
      {R"("uuid":"#10")", R"("uuid":"#10","name":"")", "12,#10,name,The property is transient."},
      {R"("3":{)", R"("x":{)", "17,#12,values,'x' is no value of type 'UInteger16'."},
      {"#21\"}\n", "#20\"}\n", "22,,,The proxy is listed twice."},
      {"#21\"}\n", "#21\",\"name\":\"\"}\n", "22,,,A proxy has no properties."},
      {"#21\"}\n", "#21\"}\n,", "23,,,Invalid value."},
      {"\"}\n]}\n", "\"}\n", "23,,,Missing a comma or ']' after an array element."},
      {"\xc3\xa9", "\xc3", "10,#8,name,Invalid encoding in string."},
  };
  const auto withIds = [](std::string text) {
    for (std::uint8_t n = 21; n > 0; --n)
      boost::replace_all(text, "#" + std::to_string(n), idText(n));
    return text;
  };
  for (const auto& [from, to, refusal] : cases) {
    std::string text = golden();
    const std::size_t place = text.find(withIds(from));
    ASSERT_NE(place, std::string::npos) << from;
    text.replace(place, withIds(from).size(), withIds(to));
    EXPECT_EQ(refusalOf(text), "CannotLoad(f," + withIds(refusal) + ')') << from << " -> " << to;
  }
  EXPECT_EQ(refusalOf(golden() + "{}"),
            "CannotLoad(f,24,,,The document root must not be followed by other values.)");
  EXPECT_EQ(refusalOf(golden() + std::string("\0{}", 3)),
            "CannotLoad(f,24,,,The text goes on after the end of the model.)");
  EXPECT_EQ(refusalOf(""), "CannotLoad(f,1,,,The document is empty.)");
  const std::string head = golden().substr(0, golden().find('\n'));
  EXPECT_EQ(refusalOf(head + std::string(10'000, '[')),
            "CannotLoad(f,1,,,A value of another kind is expected.)");
}

/// A changed byte is noticed, or makes another model that can be saved.
TEST_F(SaveTest, MutilatedTextsDoNoHarm) {
  const std::string whole = golden();
  const auto check = [](const std::string& text) {
    const Model model = Model::create();
    try {
      load(model, text);
      EXPECT_EQ(contentOf(loaded(saved(model))), contentOf(model));
    } catch (const orb::zero::Exception& exception) {
      EXPECT_EQ(exception.getIdentifier(), "CannotLoad");
      EXPECT_EQ(model.size(), 0U);
      EXPECT_FALSE(model.find(id(1)));
    }
  };
  for (std::size_t place = 0; place < whole.size(); ++place) {
    std::string text = whole;
    for (const char c : {'\0', '"', '{', '\x80'}) {
      text[place] = c;
      check(text);
    }
    text[place] = static_cast<char>(whole[place] ^ 1);
    check(text);
    check(whole.substr(0, place));
  }
}

TEST_F(SaveTest, StreamsAndTextsThatFailAreReported) {
  struct Broken : std::streambuf {
    int_type underflow() override { throw std::ios_base::failure("gone"); }
  } broken;
  std::ostream out(&broken);
  std::istream in(&broken);
  const Model model = Model::create();
  const auto x = Variable::create(model, id(1));
  for (const auto thrown : {std::ios::goodbit, std::ios::badbit}) {
    out.clear();
    out.exceptions(thrown);
    EXPECT_RAISES(io::save(model, out), "CannotSave(The stream cannot be written.)");
  }
  EXPECT_RAISES(io::load(model, in, "f"), "CannotLoad(f,1,,,The stream cannot be read.)");
  for (const char* text : {"\xff", "a\xc3", "\xf0\x9d\x84", "\xed\xa0\x80"}) {
    x->setName(text);
    EXPECT_RAISES(saved(model), "CannotSave(" + idText(1) + ",name,The text is no UTF-8.)");
  }
}

}  // namespace
}  // namespace torvan::datamodel
