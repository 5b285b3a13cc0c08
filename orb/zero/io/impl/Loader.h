#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <orb/zero/ElementRange.h>
#include <orb/zero/ModelImpl.h>
#include <orb/zero/io/impl/ClassPlan.h>
#include <orb/zero/io/impl/Input.h>

namespace orb::zero::io {

/// Why a file cannot be loaded.
struct Refusal {
  std::string cause;
};

/// Makes elements of what a reader of JSON meets, one token after the other. Whatever does not fit
/// throws a `Refusal`, or what setters and collections raise.
class Loader {
 public:
  using Form = meta::PropertySerializer::Form;

  Loader(const Model& model, Input& input)
      : model_(model), order_(model.elements()), input_(input) {}

  void beginObject();
  void key(std::string_view name);
  void endObject();
  void beginArray();
  void endArray();
  void value(Form form, std::string_view text);
  void null();

  /// Sets what was referred to before it came.
  void finish();
  /// Raises "CannotLoad" with this cause, the name of the file, and where the loader is.
  [[noreturn]] void raiseAt(std::string_view file, std::string cause);

 private:
  using Element = ModelElement::Impl;

  /// What is open, from the file to what is being read.
  enum class Context : std::uint8_t {
    File,
    Packages,
    Elements,
    Proxies,
    Start,  // of an element, until it is made
    Element,
    Proxy,
    Owned,
    Keyed,
    Values,
    References
  };
  struct Frame {
    Context context;
    bool isProxy = false;
    std::uint32_t given = 0;  // properties, by position
    std::size_t place = 0;    // in a sequence, or of a member of the file
    const ClassPlan* plan = nullptr;
    Element* element = nullptr;  // that is made, or that has the collection
    const PropertyPlan* property = nullptr;
  };
  /// A reference to what has not come yet.
  struct Pending {
    std::uint32_t target;   // in `targets_`
    std::uint32_t element;  // place in the creation order
    std::uint32_t line;
    std::uint32_t position : 5;  // of the property
    std::uint32_t place : 27;    // in a sequence
  };
  static constexpr std::uint32_t longest = 1u << 27;

  Frame& top();
  void push(Context context);
  void member(std::string_view name);
  void identify(std::string_view text);
  void property(std::string_view name);
  void make(std::string_view id);
  void makeProxy(const uuid& id);
  void fileValue(Form form, std::string_view text);
  Value parsed(Form form, std::string_view text);
  void refer(std::string_view text);
  std::uint32_t targetOf(const uuid& id);

  Model model_;
  const ElementRange order_;  // as long as it is there, places stay
  Input& input_;
  ClassPlans plans_;
  std::vector<Frame> frames_;
  std::string key_;  // of the element to come
  std::deque<Pending> pending_;
  std::deque<uuid> targets_;
  std::vector<std::uint32_t> recent_;  // targets, by hash: most are referred to more than once
  const Pending* settled_ = nullptr;   // the one that is being set
  std::unordered_map<uuid, Element*, UuidHash> proxies_;  // listed by the file
};

}  // namespace orb::zero::io
