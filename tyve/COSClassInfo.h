#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <tyve/Member.h>
#include <tyve/NameTable.h>

namespace tyve {

/// Describes a class of the host. Who offers a class makes one, usually of a class derived from
/// this one, adds what the class has, and gives it to a `Package`; from then on it never changes
/// and all threads read it without a lock.
///
/// Members are listed in the order in which they were added. A second member of a name raises
/// "DuplicateMember"; a class may redeclare those of its superclasses.
class TYVE_API COSClassInfo {
 public:
  struct EnumerationMember {
    Name name;
    std::int32_t value;
  };
  template <class T>
  using Members = std::vector<std::unique_ptr<const T>>;

  explicit COSClassInfo(Name name, std::string documentation = {});
  virtual ~COSClassInfo();
  COSClassInfo(const COSClassInfo&) = delete;
  COSClassInfo& operator=(const COSClassInfo&) = delete;

  /// The superclass may be registered later: its name is looked up when the class is first used.
  void addSuperclass(Name name);
  /// Makes the class concrete; the constructor has the last part of its name.
  void addConstructor(Signature signature, Function function, std::string documentation = {});
  /// Without a setter the property is read-only. See `Property` for the two words.
  void addProperty(Name name, Getter getter, Setter setter = {}, Name type = {},
                   std::string documentation = {}, Name result = {});
  void addMethod(Name name, Signature signature, Function function, std::string documentation = {});
  void addStaticMethod(Name name, Signature signature, Function function,
                       std::string documentation = {});
  /// Makes the class an enumeration, the superclass of which is "int32".
  void addEnumerationMember(Name name, std::int32_t value);

  Name getName() const noexcept { return name_; }
  const std::string& getDocumentation() const noexcept { return documentation_; }
  Name getSuperclassName() const noexcept { return superclassName_; }
  /// Null without one, and for an enumeration. Raises "UnknownClass" when there is none registered
  /// of the name.
  const COSClassInfo* getSuperclass() const;
  /// Whether it is this class or derived from it.
  bool isSubclassOf(Name name) const;

  bool isAbstract() const noexcept { return !constructor_; }
  bool isEnumeration() const noexcept { return !enumerationMembers_.empty(); }

  /// What the class itself declares.
  const Method* getConstructor() const noexcept { return constructor_.get(); }
  const Members<Property>& getProperties() const noexcept { return properties_.items(); }
  const Members<Method>& getMethods() const noexcept { return methods_.items(); }
  std::span<const EnumerationMember> getEnumerationMembers() const noexcept {
    return enumerationMembers_;
  }

  /// What it or the nearest superclass declares; null when none does.
  const Property* findProperty(Name name) const;
  const Method* findMethod(Name name) const;
  /// The same; raises "UnknownMember" when none does.
  const Property& getProperty(Name name) const;
  const Method& getMethod(Name name) const;

  /// How the host shows an object of the class, or an empty one. Raises no errors.
  virtual std::string print(const Value& object) const;

  /// Calls the constructor. Raises "AbstractClass" when there is none.
  Value construct(std::span<const Value> arguments) const;
  /// The members with these int32 values, in an array of the same size; the empty object of the
  /// class for no values. Raises "UnknownMember" with the first value that no member has.
  Value makeEnumeration(const Value& values) const;
  /// The one with this value; raises the same.
  Value makeEnumeration(std::int32_t value) const;
  /// The member of this name or value; null when there is none.
  const EnumerationMember* findEnumerationMember(std::string_view name) const noexcept;
  const EnumerationMember* findEnumerationMember(std::int32_t value) const noexcept;

 private:
  template <class T>
  const T* find(NameTable<const T> COSClassInfo::*table, Name name) const;
  template <class T>
  const T& get(NameTable<const T> COSClassInfo::*table, Name name) const;
  template <class T>
  void add(NameTable<const T>& table, std::unique_ptr<const T> member);

  Name name_;
  std::string documentation_;
  Name superclassName_;
  mutable std::atomic<const COSClassInfo*> superclass_ = nullptr;
  std::unique_ptr<const Method> constructor_;
  NameTable<const Property> properties_;
  NameTable<const Method> methods_;
  std::vector<EnumerationMember> enumerationMembers_;
};

}  // namespace tyve
