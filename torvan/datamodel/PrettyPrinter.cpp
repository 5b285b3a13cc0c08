#include <torvan/datamodel/PrettyPrinter.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include <torvan/datamodel/impl/Nesting.h>
#include <torvan/datamodel/impl/Walk.h>

namespace torvan::datamodel {
namespace {

/// A text that is put together from small pieces: they gather in a block.
class Text {
 public:
  std::size_t size() const noexcept { return text_.size() + used_; }
  /// All inside of its callers, where the lengths of most pieces are known.
  template <class... Pieces>
  [[gnu::always_inline]] void add(const Pieces&... pieces) {
    if ((roomFor(pieces) + ...) > sizeof block_ - used_) [[unlikely]]
      return addBeyond(pieces...);
    char* to = block_ + used_;
    ((to = write(to, pieces)), ...);
    used_ = static_cast<std::size_t>(to - block_);
  }
  std::string take() {
    finishBlock();
    return std::move(text_);
  }

 private:
  static constexpr std::size_t mostDigits = 5;

  static std::size_t roomFor(std::string_view piece) { return piece.size(); }
  static std::size_t roomFor(char) { return 1; }
  static std::size_t roomFor(std::uint16_t) { return mostDigits; }

  [[gnu::always_inline]] static char* write(char* to, std::string_view piece) {
    std::memcpy(to, piece.data(), piece.size());
    return to + piece.size();
  }
  static char* write(char* to, char piece) {
    *to = piece;
    return to + 1;
  }
  static char* write(char* to, std::uint16_t number) {
    return std::to_chars(to, to + mostDigits, number).ptr;
  }

  template <class... Pieces>
  [[gnu::noinline]] void addBeyond(const Pieces&... pieces) {
    finishBlock();
    (append(pieces), ...);
  }
  void append(std::string_view piece) { text_ += piece; }
  void append(char piece) { text_ += piece; }
  void append(std::uint16_t number) {
    char digits[mostDigits];
    text_.append(digits, write(digits, number));
  }
  void finishBlock() {
    text_.append(block_, used_);
    used_ = 0;
  }

  std::string text_;
  std::size_t used_ = 0;
  char block_[4096];
};

}  // namespace

/// Writes the text of an element from left to right. What has been begun waits on a stack, so that
/// the depth of nesting costs no recursion.
class PrettyPrinter::Line {
 public:
  explicit Line(const PrettyPrinter& printer) : printer_(printer) {}

  /// The text of the element as an X, of whatever class it is.
  template <class X>
  std::string write(const X& element) {
    if (!element) return {};
    return writeAll(element, begin(static_cast<const typename X::Impl&>(*element.get())));
  }
  /// The text as far as it has been written when it is longer than so many bytes.
  std::string writeSome(const ModelElement& element, std::size_t most) {
    return writeRest(element.get(), most, [] {});
  }

 private:
  using Element = ModelElement::Impl;

  enum class Rest : std::uint8_t {
    Operands,
    OfStructRef,
    OfIndexRef,
    OfConditional,
    OfPrune,
    OfEquation,
    FieldOfStruct,
    ElemOfArray,
    End
  };
  /// What is still to be written of an element.
  struct Open {
    const void* at;      // the element, its next operand, or a child
    std::uint32_t left;  // of its operands; of a child the character before it
    Rest rest;
  };

  /// The text of the root, of which the beginning is written already, up to the element next.
  std::string writeAll(const ModelElement& root, Element* next) {
    Walk walk(root);
    const auto enters = [this](Element& entered) {
      return visitAt(printer_.placeFor(entered), entered, Classes(), [](auto&) {});
    };
    return writeRest(next, SIZE_MAX, [&] { walk.step(enters); });
  }
  template <class Step>
  std::string writeRest(Element* next, std::size_t most, Step step) {
    while ((next || !open_.empty()) && text_.size() <= most) {
      if (!next) {
        next = goOn(open_.back());
      } else if (next->isAlive()) {
        step();
        next = begin(*next);
      } else {
        next = nullptr;
      }
    }
    return text_.take();
  }

  // The next two are inside of the loop: a frame for each of their calls would cost more than most
  // of them do.

  /// Writes what comes before the first operand, and returns that, or null when there is none.
  [[gnu::always_inline]] Element* begin(Element& element) {
    Element* first = nullptr;
    const std::size_t place = printer_.placeFor(element);
    const auto beginKnown = [&](const auto& known) { first = begin(known); };
    if (!visitAt(place, element, Classes(), beginKnown))
      text_.add(printer_.dispatch(ModelElement(&element)));
    return first;
  }
  Element* begin(const Variable::Impl& variable) {
    text_.add(variable.getName());
    return nullptr;
  }
  Element* begin(const PowerSet::Impl& set) {
    const Bits& bits = set.bits();
    for (std::size_t bit = bits.size(); bit-- > 0;) text_.add(bits[bit] ? '1' : '0');
    return nullptr;
  }
  Element* begin(const Join::Impl& join) { return beginList("Join", join.getOperands()); }
  Element* begin(const Meet::Impl& meet) { return beginList("Meet", meet.getOperands()); }
  Element* begin(const StructRef::Impl& ref) {
    return open("StructRef(", ref, Rest::OfStructRef, ref.getExpr());
  }
  Element* begin(const IndexRef::Impl& ref) {
    return open("IndexRef(", ref, Rest::OfIndexRef, ref.getExpr());
  }
  Element* begin(const Conditional::Impl& conditional) {
    return open("Conditional(ctrlExpr: ", conditional, Rest::OfConditional,
                conditional.getCtrlExpr(), 2);
  }
  Element* begin(const Prune::Impl& prune) {
    return open("prune(", prune, Rest::OfPrune, prune.getExpr());
  }
  Element* begin(const Array::Impl& array) {
    return beginChildren("Array", array.getValues(), Rest::ElemOfArray);
  }
  Element* begin(const Struct::Impl& record) {
    return beginChildren("Struct", record.getValues(), Rest::FieldOfStruct);
  }
  Element* begin(const Equation::Impl& equation) {
    return open("", equation, Rest::OfEquation, equation.getLhs());
  }

  Element* open(std::string_view text, const Element& element, Rest rest, const Term& first,
                std::uint32_t left = 0) {
    text_.add(text);
    open_.push_back({&element, left, rest});
    return first.get();
  }
  Element* beginList(std::string_view name, const orb::zero::ReferenceSequence<Term>& operands) {
    if (operands.empty()) return endEmpty(name);
    const auto* const first = operands.slots().data();
    text_.add(name, '(');
    open_.push_back({first + 1, static_cast<std::uint32_t>(operands.size() - 1), Rest::Operands});
    return first->get();
  }
  template <class Children>
  Element* beginChildren(std::string_view name, const Children& children, Rest child) {
    if (children.empty()) return endEmpty(name);
    text_.add(name);
    open_.push_back({nullptr, 0, Rest::End});
    const auto first = static_cast<std::ptrdiff_t>(open_.size());
    for (const auto& entry : children) open_.push_back({entry.second.get(), ',', child});
    std::reverse(open_.begin() + first, open_.end());
    open_.back().left = '(';
    return nullptr;
  }
  /// The closing parenthesis of a list without items takes the place of the opening one.
  Element* endEmpty(std::string_view name) {
    text_.add(name, ')');
    return nullptr;
  }

  /// Writes what comes before the next operand, and returns that; or writes the end.
  [[gnu::always_inline]] Element* goOn(Open& last) {
    switch (last.rest) {
      case Rest::Operands: {
        if (last.left == 0) return end(")");
        const auto* const next = static_cast<const orb::zero::Slot<Term>*>(last.at);
        last.at = next + 1;
        --last.left;
        text_.add(',');
        return next->get();
      }
      case Rest::OfStructRef:
        return end(",'", elementOf<StructRef>(last).getField(), "')");
      case Rest::OfIndexRef: {
        const IndexRef::Impl& ref = elementOf<IndexRef>(last);
        return end(',', ref.getStartIndex(), " : ", ref.getEndIndex(), ')');
      }
      case Rest::OfConditional: {
        if (last.left == 0) return end(')');
        const Conditional::Impl& conditional = elementOf<Conditional>(last);
        text_.add(',');
        return (last.left-- == 2 ? conditional.getOperandTrue() : conditional.getOperandFalse())
            .get();
      }
      case Rest::OfPrune:
        text_.add(",[");
        for (const std::string& field : elementOf<Prune>(last).getField()) text_.add(field, ' ');
        return end("])");
      case Rest::OfEquation: {
        const Equation::Impl& equation = elementOf<Equation>(last);
        end(" = ");
        return equation.getRhs().get();
      }
      case Rest::FieldOfStruct:
        return beginChild(elementOf<FieldElem>(last).getName(), elementOf<FieldElem>(last));
      case Rest::ElemOfArray:
        return beginChild(elementOf<ArrayElem>(last).getIndex(), elementOf<ArrayElem>(last));
      case Rest::End:
        return end(')');
    }
    __builtin_unreachable();
  }
  template <class Key, class Child>
  Element* beginChild(const Key& key, const Child& child) {
    text_.add(static_cast<char>(open_.back().left), key, " : ");
    open_.pop_back();
    return child.getValue().get();
  }
  template <class... Pieces>
  Element* end(const Pieces&... pieces) {
    text_.add(pieces...);
    open_.pop_back();
    return nullptr;
  }
  template <class X>
  static const typename X::Impl& elementOf(const Open& open) {
    return static_cast<const typename X::Impl&>(*static_cast<const Element*>(open.at));
  }

  const PrettyPrinter& printer_;
  Text text_;
  std::vector<Open> open_;
};

PrettyPrinter::PrettyPrinter() { addVisits(*this, Classes()); }

std::string PrettyPrinter::excerpt(const ModelElement& element, std::size_t most) {
  const PrettyPrinter printer;
  std::string text = Line(printer).writeSome(element, most);
  if (text.size() <= most) return text;
  const auto isInside = [&] { return (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80; };
  while (most > 0 && isInside()) --most;
  return text.substr(0, most) + "...";
}

std::string PrettyPrinter::dispatch(const ModelElement& element) const {
  const Nesting nesting;
  return Visitor::dispatch(element);
}

std::string PrettyPrinter::visit(const Variable& variable) const {
  return Line(*this).write(variable);
}
std::string PrettyPrinter::visit(const Join& join) const { return Line(*this).write(join); }
std::string PrettyPrinter::visit(const Meet& meet) const { return Line(*this).write(meet); }
std::string PrettyPrinter::visit(const StructRef& ref) const { return Line(*this).write(ref); }
std::string PrettyPrinter::visit(const IndexRef& ref) const { return Line(*this).write(ref); }
std::string PrettyPrinter::visit(const Conditional& conditional) const {
  return Line(*this).write(conditional);
}
std::string PrettyPrinter::visit(const Prune& prune) const { return Line(*this).write(prune); }
std::string PrettyPrinter::visit(const PowerSet& set) const { return Line(*this).write(set); }
std::string PrettyPrinter::visit(const Array& array) const { return Line(*this).write(array); }
std::string PrettyPrinter::visit(const Struct& record) const { return Line(*this).write(record); }
std::string PrettyPrinter::visit(const Equation& equation) const {
  return Line(*this).write(equation);
}

}  // namespace torvan::datamodel
