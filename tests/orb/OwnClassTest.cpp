#include <string>

#include <torvan/datamodel/ValueTypes.h>
#include <torvan/datamodel/Variable.h>

#include <orb/zero/ImplOf.h>
#include <orb/zero/meta/AbstractMetaPackage.h>
#include <orb/zero/meta/Emit.h>
#include <orb/zero/query/Query.h>

#include "tests/orb/Diary.h"
#include "tests/orb/Failure.h"

/// A model of three classes, one of them derived from the data model, and a type of values,
/// declared as any library declares its own.
namespace library {

struct Page {
  explicit Page(int n = 0) noexcept : number(n) {}
  Page(const Page& other) noexcept : number(other.number) { ++copies; }
  Page(Page&&) noexcept = default;
  Page& operator=(Page&&) noexcept = default;
  bool operator==(const Page& other) const noexcept { return number == other.number; }

  int number;
  static inline int copies = 0;
};

}  // namespace library

template <>
struct orb::zero::ValueTraits<library::Page> {
  static constexpr std::string_view name() noexcept { return "library.Page"; }
  static std::uint64_t hash(const library::Page&) noexcept { return 0; }
};

namespace library {

namespace meta = orb::zero::meta;
namespace query = orb::zero::query;
using orb::zero::ModelElement;

class Book;
class Note;
class Shelf;
meta::AbstractMetaPackage& metaPackage();
meta::AbstractMetaPackage& packageOf(std::type_identity<Book>) { return metaPackage(); }
meta::AbstractMetaPackage& packageOf(std::type_identity<Note>) { return metaPackage(); }
meta::AbstractMetaPackage& packageOf(std::type_identity<Shelf>) { return metaPackage(); }

class Book : public orb::zero::Handle<Book, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const meta::PropertyInfo& name() { return property(1); }
  static const meta::PropertyInfo& sequel() { return property(2); }
  static const meta::PropertyInfo& pages() { return property(3); }

  class Constrainables : public Handle::Constrainables {
   public:
    using Handle::Constrainables::Constrainables;

    query::Primitive<std::string> name() const { return Book::name(); }
    query::Reference sequel() const { return Book::sequel(); }
  };
};

class Note : public orb::zero::Handle<Note, torvan::datamodel::Expression> {
 public:
  class Impl;
  using Handle::Handle;

  static const meta::PropertyInfo& about() { return property(2); }
};

class Shelf : public orb::zero::Handle<Shelf, ModelElement> {
 public:
  class Impl;
  using Handle::Handle;

  static const meta::PropertyInfo& books() { return property(1); }
  std::uint16_t count() const;
};

class Book::Impl : public orb::zero::ImplOf<Book> {
  std::string name_;
  orb::zero::Slot<Book> sequel_;
  orb::zero::PrimitiveSequence<Page> pages_{*this, &Book::pages};

 public:
  static constexpr meta::Table table{
      meta::Instances::Concrete,
      "library.Book",
      "0fd5ed53-99a2-4fd4-a0c6-08c6a1af5a01",
      meta::Row{&Impl::name_, "name", 1, "1b5d2c0e-61c8-4e8e-9f9f-0f14a1b8a702", Unique},
      meta::Row{&Impl::sequel_, "sequel", 2, "d8a4ff34-1b7e-4f5c-8a83-6b0a5c1f7d03", Unique},
      meta::Row{&Impl::pages_, "pages", 3, "5f0c8a6e-97d1-4b25-8c43-f2e9b0d17a06", Ordered}};

  static const std::string& keyOf(const ModelElement::Impl& element) {
    return static_cast<const Impl&>(element).name_;
  }
  const std::string& getName() const noexcept { return name_; }
  void setName(std::string value) { set<&Impl::name_>(std::move(value)); }
  const Book& getSequel() const noexcept { return sequel_; }
  void setSequel(const Book& value) { set<&Impl::sequel_>(value); }
  orb::zero::PrimitiveSequence<Page>& getPages() noexcept { return pages_; }
};

class Note::Impl : public orb::zero::ImplOf<Note> {
  orb::zero::Slot<torvan::datamodel::Variable> about_;

 public:
  static constexpr meta::Table table{
      meta::Instances::Concrete, "library.Note", "c2b9e7d0-64f1-4a8e-8f07-3d5b1a9c6e07",
      meta::Row{&Impl::about_, "about", 2, "e81d40f3-5a7c-4b62-9c1e-6f2a8d7b3508", Unique}};
};

class Shelf::Impl : public orb::zero::ImplOf<Shelf> {
  orb::zero::ElementMap<std::string, Book> books_{*this, &Book::Impl::keyOf, &Shelf::books};

 public:
  static constexpr meta::Table table{
      meta::Instances::Concrete, "library.Shelf", "54a0b8c7-2f3d-4a3b-bb57-4a1f8e2c9d04",
      meta::Row{&Impl::books_, "books", 1, "a3f1c6d2-8e4b-4c7a-9d5e-7b2a6f0e1c05", 0, "name"},
      meta::Op{&Shelf::count, "count", Defined}};

  orb::zero::ElementMap<std::string, Book>& getBooks() noexcept { return books_; }
};

std::uint16_t Shelf::count() const {
  return static_cast<std::uint16_t>((*this)->getBooks().size());
}

using Classes = meta::ClassList<Book, Note, Shelf>;

class LibraryPackage final : public meta::AbstractMetaPackage {
 public:
  static LibraryPackage& getInstance() {
    static auto& package = *new LibraryPackage;  // lives as long as the registry
    return package;
  }

 private:
  LibraryPackage() : AbstractMetaPackage(u"http://example.org/library") {}
  void instantiate(meta::MetaRegistry&) override {
    torvan::datamodel::metaPackage().ensureInitialized();
    createPrimitiveType("library.Page");
    instantiateClasses(classesOf(Classes()));
  }
  void weave(meta::MetaRegistry&, meta::PropertySerializerRegistry&) override {
    weaveClasses(packageAt(u"http://example.org/library"), classesOf(Classes()));
  }
};

meta::AbstractMetaPackage& metaPackage() { return LibraryPackage::getInstance(); }

namespace {

using orb::zero::failureOf;
using orb::zero::Value;

class OwnClassTest : public testing::Test {
 protected:
  Book book(const std::string& name, const Book& sequel = {}) {
    Book::Builder builder(model);
    builder->setName(name);
    builder->setSequel(sequel);
    return builder.create();
  }

  orb::zero::Model model = orb::zero::Model::create();
  Shelf shelf = Shelf::create(model, model.newUuid());
  Book second = book("b"), first = book("a", second);
};

TEST_F(OwnClassTest, IsCreatedChangedAndUndone) {
  const auto diary = std::make_shared<torvan::datamodel::Diary>();
  model.addListener(diary);
  model.setHistoryLimit(9);
  shelf->getBooks().insert(first);
  EXPECT_RAISES(shelf->getBooks().insert(book("a")), "UniquenessConstraint");
  EXPECT_TRUE(shelf->getBooks()["a"] == first && first->getContainer() == shelf);
  second->destroy();
  EXPECT_FALSE(first->getSequel());
  EXPECT_EQ(diary->news(),
            (std::vector<std::string>{"Shelf.books:[]>[a]", "+a", "-Book a.sequel:gone>none"}));
  EXPECT_TRUE(model.undo() && first->getSequel() == second);
  {
    const orb::zero::Transaction transaction(model);
    shelf->destroy();
    EXPECT_FALSE(first);
  }
  EXPECT_TRUE(first->getContainer() == shelf);
}

TEST_F(OwnClassTest, HistoryLooksAtNothingBesideTheChange) {
  auto& pages = first->getPages();
  for (int number = 0; number < 100; ++number) pages.add(Page(number));
  model.setHistoryLimit(9);
  const int copies = Page::copies;
  pages.add(Page());
  pages.set(5, Page());
  pages.erase(50);
  {
    orb::zero::Transaction transaction(model);
    pages.add(Page());
    pages.add(Page());
    transaction.commit();
  }
  EXPECT_EQ(Page::copies, copies);
  EXPECT_EQ(model.undoSteps(), 4U);
}

TEST_F(OwnClassTest, IsReadByNameAndFound) {
  first->setPropertyValue(*first->getPropertyByName("name"), Value(std::string("z")));
  EXPECT_TRUE(first->getPropertyValue("name") == Value(std::string("z")));
  EXPECT_RAISES(shelf->getPropertyValue("name"), "NoSuchProperty(library.Shelf,name)");
  query::Query<Book> search(model);
  Book::Constrainables wanted(search, Book::metaClass(),
                              query::SearchClassMatchMode::ThisClassOnly);
  search.where(wanted.name() == "z" && wanted.sequel().isPresent());
  EXPECT_EQ(search.execute(), std::vector{first});
}

TEST_F(OwnClassTest, IsRegistered) {
  const meta::Class described = Shelf::metaClass();
  const auto& registry = meta::MetaRegistry::getInstance();
  EXPECT_EQ(described, meta::Class(registry.findType("library::Shelf")));
  EXPECT_TRUE(described->getProperties()[0]->getQualifiedBy() == meta::Property(Book::name()));
  EXPECT_TRUE(Book(registry.createElement(model, "library.Book")));
  shelf->getBooks().insert(first);
  const Value count = described->getOperations()[0]->getInvoker()(shelf, {});
  EXPECT_EQ(count.getValue<std::uint16_t>(), 1U);
}

TEST_F(OwnClassTest, StaysWholeWhenWhatItRefersToIsDescribedAgain) {
  const meta::Class note = Note::metaClass();
  const meta::Property about = Note::about(), name = Book::name();
  for (auto* again : {&torvan::datamodel::metaPackage(), &meta::metaPackage()}) {
    again->initialize();
    EXPECT_TRUE(note && note->getPropertyByIndex(1)->getName() == u"type");
    EXPECT_EQ(note->getSuperclass()->getSuperclass()->getSuperclass()->getName(), u"ModelElement");
    EXPECT_EQ(about->getType()->getName(), u"Variable");
    EXPECT_EQ(name->getType()->getName(), u"StdString");
  }
}

}  // namespace
}  // namespace library
