#include <orb/zero/ModelElement.h>  // before the guard: on the way there it may bring these classes

#ifndef ORB_ZERO_META_CLASSINFO_H
#define ORB_ZERO_META_CLASSINFO_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>

#include <orb/zero/Uuid.h>

namespace orb::zero {

class Collection;
class Referrers;
class Value;
enum class ProxyTag;
namespace meta {
class AbstractMetaPackage;
class Class;
class Property;
}  // namespace meta

ORB_ZERO_API meta::AbstractMetaPackage& packageOf(std::type_identity<ModelElement>);

}  // namespace orb::zero

/// What is known of a class at run time. The records are emitted from the table that each class
/// declares once (see Table.h and Emit.h), are constant, and live as long as the program.
///
/// The registry describes the same by elements (see MetaRegistry.h), to which the records convert.
namespace orb::zero::meta {

using Element = ModelElement::Impl;

/// Properties of a property. `NoMutator`: the scripting host offers no setter for it.
enum Flag : std::uint8_t {
  Ordered = 1,
  Unique = 2,
  ReadOnly = 4,
  Transient = 8,
  NoMutator = 16,
  NoDefault = 32,
};

/// Whether a property holds one value, several, or several under keys.
enum class ValueKind : std::uint8_t { Single = 1, Collection = 2, Keyed = 6 };

/// Is shown the elements that the slots of a property name, one by one.
class TargetVisitor {
 public:
  virtual void visit(Element& target) = 0;

 protected:
  ~TargetVisitor() = default;
};

/// The services of a property that reflection, undo, destruction, the end of a model and queries
/// use.
struct PropertyServices {
  // See `ModelElement::Impl`; the checks are made before.
  Value (*get)(const Element&, ProxyTag) = nullptr;
  void (*set)(Element&, const Value&) = nullptr;
  /// Adds a value to those of a collection; none for single properties.
  void (*insert)(Element&, const Value&) = nullptr;
  /// Copies the value into the undo record, exchanges the two, reads the record; none for
  /// collections, which log each change.
  void (*save)(const Element&, Storage&) = nullptr;
  void (*exchange)(Element&, Storage&) noexcept = nullptr;
  Value (*getOld)(const Storage&, ProxyTag) = nullptr;
  /// See `Storage::isUnchanged`.
  bool (*isUnchanged)(const Element&, const Storage&) = nullptr;
  /// Whether a value was given, an element is named, a collection is not empty.
  bool (*has)(const Element&) = nullptr;
  /// Where the value is: a primitive one, a `ModelElement`, or a collection.
  const void* (*slot)(const Element&) = nullptr;
  /// Shows every element that the property names.
  void (*targets)(const Element&, TargetVisitor&) = nullptr;
  /// Puts the element into the collection, checked; none for other properties.
  void (*add)(Element&, const ModelElement&) = nullptr;
  /// Makes the element the owner of what its owned collection lists, or of none of it, while that
  /// stays listed; none for other properties.
  void (*link)(Element&, bool links) noexcept = nullptr;
  /// Takes the target out of the property; can be undone.
  void (*release)(Element&, Element& target) = nullptr;
  /// Puts another element in the place of the target; can be undone.
  void (*replace)(Element&, Element& target, Element& other) = nullptr;
  /// Empties the property for good.
  void (*clear)(Element&) noexcept = nullptr;
  /// Empties the property without telling its targets, which are about to go as well.
  void (*forget)(Element&) noexcept = nullptr;
  /// Has the property refer to the target, or to none: a single one, which ignores the place, or
  /// the entry of a sequence, where the place after the last adds one. None for other properties.
  void (*refer)(Element&, std::size_t place, Element* target) = nullptr;
  /// The collection itself; none for single properties.
  Collection* (*collection)(Element&) = nullptr;
  /// How many values a collection has, and which one is at a place, which has to exist; none for
  /// single properties, and no places in a keyed one.
  std::size_t (*size)(const Element&) = nullptr;
  Value (*at)(const Element&, std::size_t place, ProxyTag) = nullptr;
  /// The element under a key, or an empty handle, and all keys as a sequence; of a keyed one only.
  Value (*find)(const Element&, const Value& key) = nullptr;
  Value (*keys)(const Element&) = nullptr;
  /// Stores a child under another key, of the type of the keys; of a keyed one only.
  void (*rekey)(Element&, Element& child, const void* key) = nullptr;
};

/// A name that is looked up: all short ones, and most others, are told apart by two words.
struct Name {
  constexpr Name(std::string_view name) noexcept : text(name), head(headOf(name)) {}

  friend bool operator==(const Name& a, const Name& b) noexcept {
    return a.head == b.head && a.text.size() == b.text.size() &&
           (a.text.size() <= 8 || a.text.substr(8) == b.text.substr(8));
  }

  std::string_view text;
  std::uint64_t head;

 private:
  static constexpr std::uint64_t word(const char* bytes) noexcept {
    const auto at = [=](int i) { return std::uint64_t{static_cast<unsigned char>(bytes[i])}; };
    return at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24;
  }
  /// The first eight bytes, or all of fewer, of which some may come twice.
  static constexpr std::uint64_t headOf(std::string_view name) noexcept {
    const char* const bytes = name.data();
    const std::size_t size = name.size();
    if (size >= 8) return word(bytes) | word(bytes + 4) << 32;
    if (size >= 4) return word(bytes) | word(bytes + size - 4) << 32;
    std::uint64_t head = 0;
    for (const char c : name) head = head << 8 | static_cast<unsigned char>(c);
    return head;
  }
};

/// One property of a class.
struct PropertyInfo {
  std::string_view name;
  uuid id;
  int position;  ///< 1-based, inherited properties included
  ValueKind kind;
  bool isOwning;               ///< the values are owned by, and go with, the element
  std::uint8_t flags;          ///< of `Flag`
  std::string_view key;        ///< of a keyed collection: the property of its elements
  std::string_view className;  ///< dotted name of the class that declares it
  const ClassInfo& (*type)();  ///< class of the values, null for primitive ones
  PropertyServices services;
  const std::type_info* primitive = nullptr;    ///< type of the values, null for elements
  bool isLink = false;                          ///< the values are elements
  Name lookup{name};                            ///< the name, to be compared
  std::string_view (*typeName)() = nullptr;     ///< of the values, see `valueName`
  AbstractMetaPackage& (*package)() = nullptr;  ///< the one of its class

  /// "torvan.datamodel.ArrayElem.index"
  std::string getQualifiedName() const { return std::string(className) + '.' + std::string(name); }
  friend bool operator==(const PropertyInfo& a, const PropertyInfo& b) { return a.id == b.id; }

  /// The element that describes the property in the registry, see `ClassInfo`.
  ORB_ZERO_API operator Property() const;
};

/// The result of an operation, or an argument.
struct ParameterInfo {
  std::string_view name;           ///< empty for a result
  std::string_view (*typeName)();  ///< see `valueName`
  bool isMany;                     ///< any number of values instead of one
};

/// Calls an operation. Raises "InvalidValue" for a wrong number of arguments, and
/// "CannotCastIncompatibleTypes" for an argument of another type and for a receiver that is empty
/// or of another class.
using Invoker = Value (*)(const ModelElement& receiver, std::span<const Value> arguments);

/// One operation of a class.
struct OperationInfo {
  std::string_view name;
  bool isAbstract;  ///< left to the classes derived from this one
  ParameterInfo result;
  std::span<const ParameterInfo> arguments;
  Invoker invoke;
};

/// One class.
struct ClassInfo {
  using Properties = std::span<const PropertyInfo* const>;

  std::string_view name;  ///< dotted
  uuid id;
  const ClassInfo* superclass;        ///< null for the root
  std::span<const PropertyInfo> own;  ///< in order of their positions
  Properties all;                     ///< inherited ones first: position n is all[n - 1]
  // Those whose values are elements: all, the ones that own these, and the others.
  Properties links, owning, referring;
  std::size_t size;                                   ///< of an element, in bytes
  Element* (*construct)(void* memory);                ///< null for an abstract class
  std::unique_ptr<Storage> (*makeStorage)(Element&);  ///< an empty undo record
  std::span<const OperationInfo> operations;          ///< own ones
  /// Makes an empty builder; null for an abstract class.
  std::unique_ptr<ModelElement::Builder> (*makeBuilder)(const Model&);
  AbstractMetaPackage& (*package)();  ///< registers the class
  /// Tells what the element refers to without owning it.
  void (*note)(const Element&, Referrers&) noexcept;

  bool isAbstract() const { return construct == nullptr; }
  /// True for the class itself and those derived from it.
  bool isKindOf(const ClassInfo& other) const noexcept {
    const ClassInfo* level = this;
    while (level && level != &other) level = level->superclass;
    return level != nullptr;
  }
  /// Whether it is a property of the class, its own or an inherited one.
  bool has(const PropertyInfo& property) const noexcept {
    const auto place = static_cast<std::size_t>(property.position) - 1;
    return place < all.size() && (all[place] == &property || *all[place] == property);
  }
  /// The property of this name, its own or an inherited one; null when there is none.
  const PropertyInfo* find(const Name& wanted) const noexcept {
    for (const PropertyInfo* property : all)
      if (property->lookup == wanted) return property;
    return nullptr;
  }
  friend bool operator==(const ClassInfo& a, const ClassInfo& b) { return a.id == b.id; }

  /// The element that describes the class in the registry. The first use initialises the package
  /// of the class; if that raises, the next use tries again.
  ORB_ZERO_API operator Class() const;
};

/// The classes that elements are of have numbers, which elements hold to tell their class.
inline constexpr std::size_t classLimit = 4096;
ORB_ZERO_API extern const ClassInfo* classTable[classLimit];
inline const ClassInfo& classAt(std::uint32_t number) noexcept { return *classTable[number]; }
/// The number of a class; ends the process when there are too many.
ORB_ZERO_API std::uint32_t enlist(const ClassInfo& type) noexcept;

}  // namespace orb::zero::meta

#endif  // ORB_ZERO_META_CLASSINFO_H
