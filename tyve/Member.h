#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include <tyve/Value.h>

namespace tyve {

namespace factory {
class TypeWord;
}

/// What a callable takes and returns, in type words; see `factory::TypeRepository`.
struct Signature {
  std::string argumentNames;    ///< by blanks, that of the receiver first; may be empty
  Name result;                  ///< for the reader; what is returned is not checked
  std::vector<Name> arguments;  ///< of an instance method the receiver first
  std::size_t optional = 0;     ///< how many arguments at the end may be left out
  bool isLong = false;          ///< may run so long that a host lets other threads work meanwhile
  bool takesGone = false;       ///< an instance method of objects that are gone, too
  bool isArray = false;         ///< what is returned is an array, be it of one value
};

using Function = std::function<Value(std::span<const Value> arguments)>;
using Getter = std::function<Value(const Value& object)>;
using Setter = std::function<void(const Value& object, const Value& value)>;

/// What methods and properties of a class have in common.
class TYVE_API Member {
 public:
  Name getName() const noexcept { return name_; }
  /// The class that declares it.
  Name getClass() const noexcept { return class_; }
  const std::string& getDocumentation() const noexcept { return documentation_; }

 protected:
  Member(Name className, Name name, std::string documentation);

  /// Raises "WrongArgument" unless the value is an object of the class, and "InvalidHandle" unless
  /// it is one that is valid, or may be gone.
  void checkReceiver(const Value& object, bool mayBeGone = false) const;
  /// Raises "WrongArgument" for an argument, given by its name or number.
  [[noreturn]] void raiseWrong(std::string argument, Name expected, const Value& value) const;

 private:
  Name class_;
  const factory::TypeWord& classWord_;
  Name name_;
  std::string documentation_;
};

/// A method of instances, a static method, or a constructor.
class TYVE_API Method : public Member {
 public:
  enum class Receiver { Instance, None };

  Method(Name className, Name name, Receiver receiver, Signature signature, Function function,
         std::string documentation);

  const Signature& getSignature() const noexcept { return signature_; }
  bool isStatic() const noexcept { return receiver_ == Receiver::None; }
  /// See `Signature`.
  bool isLong() const noexcept { return signature_.isLong; }

  /// Calls it. The receiver is checked before all else: "InvalidHandle" when it is gone. Then
  /// "WrongArgumentCount" and, once per argument, "WrongArgument" are raised when the arguments do
  /// not fit the signature; the function is given them in the form that the type words promise.
  Value call(std::span<const Value> arguments) const;

 private:
  std::string argumentName(std::size_t position) const;

  Receiver receiver_;
  Signature signature_;
  std::vector<const factory::TypeWord*> words_;  // of the arguments
  Function function_;
};

/// A property of instances.
class TYVE_API Property : public Member {
 public:
  Property(Name className, Name name, Getter getter, Setter setter, Name type,
           std::string documentation, Name result);

  /// The type word that values to be set must fit; none when the setter sees to that itself.
  Name getType() const noexcept { return type_; }
  /// The type word of what `get` returns, for the reader; none when nothing is said of it.
  Name getResult() const noexcept { return result_; }
  bool isReadOnly() const noexcept { return !setter_; }

  /// Both check the receiver first, as a method does.
  Value get(const Value& object) const;
  /// Raises "ReadOnlyProperty" without a setter.
  void set(const Value& object, const Value& value) const;

 private:
  Getter getter_;
  Setter setter_;
  Name type_;
  const factory::TypeWord* word_;  // null without a type
  Name result_;
};

}  // namespace tyve
