#pragma once

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/Value.h>
#include <orb/zero/meta/Table.h>

/// Turns the operations in the table of a class into `OperationInfo`s.
namespace orb::zero::meta {

template <class T>
constexpr ParameterInfo emitParameter(std::string_view name) {
  return {name, &valueName<T>, ValueForm<T>::multiplicity == Multiplicity::Sequence};
}

/// The I-th operation of X: what its method takes and returns, and how to call it with values.
template <class X, std::size_t I,
          class Method = decltype(std::get<I>(X::Impl::table.operations).method)>
struct Operated;
template <class X, std::size_t I, class H, class Result, class... Arguments>
struct Operated<X, I, Result (H::*)(Arguments...) const> {
  static constexpr const auto& op = std::get<I>(X::Impl::table.operations);
  static_assert(sizeof...(Arguments) == std::tuple_size_v<decltype(op.arguments)>,
                "every argument has a name");
  using Indices = std::index_sequence_for<Arguments...>;

  static Value invoke(const ModelElement& receiver, std::span<const Value> arguments) {
    if (arguments.size() != sizeof...(Arguments)) raise("InvalidValue");
    return [&]<std::size_t... n>(std::index_sequence<n...>) {
      return Value((H(receiver).*op.method)(
          arguments[n].template getValue<std::remove_cvref_t<Arguments>>()...));
    }
    (Indices());
  }
  static constexpr auto arguments = []<std::size_t... n>(std::index_sequence<n...>) {
    return std::array<ParameterInfo, sizeof...(n)>{
        emitParameter<std::remove_cvref_t<Arguments>>(op.arguments[n])...};
  }
  (Indices());
  static constexpr OperationInfo info{op.name, op.body == Body::Abstract, emitParameter<Result>({}),
                                      arguments, &invoke};
};

template <class X>
inline constexpr auto ownOperations = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array<OperationInfo, sizeof...(I)>{Operated<X, I>::info...};
}
(std::make_index_sequence<std::tuple_size_v<decltype(X::Impl::table.operations)>>());

}  // namespace orb::zero::meta
