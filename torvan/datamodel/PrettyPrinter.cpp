#include <torvan/datamodel/PrettyPrinter.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <torvan/datamodel/impl/Walk.h>

namespace torvan::datamodel {

using namespace std::string_view_literals;

namespace {

/// Writes the text of an element from left to right. What is still to be written waits on a stack,
/// so that the depth of nesting costs no recursion.
class Line : public orb::zero::Visitor<void> {
 public:
  Line() {
    addVisits<Variable, Join, Meet, StructRef, IndexRef, Conditional, Prune, PowerSet, Array,
              Struct, Equation>();
  }

  std::string write(const ModelElement& element) {
    if (!element) return {};
    Walk walk(element);
    dispatch(element);
    while (!pending_.empty())
      if (writeNext()) walk.step();
    return std::move(text_);
  }
  /// The text as far as it has been written when it is longer than so many bytes.
  std::string writeSome(const ModelElement& element, std::size_t most) {
    dispatch(element);
    while (!pending_.empty() && text_.size() <= most) writeNext();
    return std::move(text_);
  }

 private:
  /// Texts are literals, or those of elements.
  using Part = std::variant<std::string_view, ModelElement::Impl*, std::uint16_t>;

  /// Whether that was an element.
  bool writeNext() {
    const Part part = pending_.back();
    pending_.pop_back();
    const auto* const element = std::get_if<ModelElement::Impl*>(&part);
    if (element)
      dispatch(ModelElement(*element));
    else if (const auto* const text = std::get_if<std::string_view>(&part))
      text_ += *text;
    else
      text_ += std::to_string(std::get<std::uint16_t>(part));
    return element;
  }

  template <class... X>
  void addVisits() {
    (add(X::Uuid(), [this](const ModelElement& element) { visit(X{element}); }), ...);
  }

  /// Puts the parts, which `push` appends in reading order, before what is still to come.
  template <class Push>
  void append(Push push) {
    const auto first = static_cast<std::ptrdiff_t>(pending_.size());
    push();
    std::reverse(pending_.begin() + first, pending_.end());
  }
  template <class... Parts>
  void appendParts(const Parts&... parts) {
    append([&] { appendAll(parts...); });
  }
  template <class... Parts>
  void appendAll(const Parts&... parts) {
    (pending_.emplace_back(parts), ...);
  }

  /// "Name(item,item)": the last character makes way for the closing parenthesis, which is the
  /// opening one when there are no items.
  template <class Items, class PushItem>
  void list(const char* name, const Items& items, PushItem pushItem) {
    text_ += name;
    if (items.empty()) {
      text_ += ')';
      return;
    }
    append([&] {
      std::string_view before = "(";
      for (const auto& item : items) {
        pending_.emplace_back(before);
        pushItem(item);
        before = ",";
      }
      pending_.emplace_back(std::string_view(")"));
    });
  }
  template <class Operands>
  void operation(const char* name, const Operands& operands) {
    list(name, operands, [this](const auto& operand) { pending_.emplace_back(operand.get()); });
  }

  void visit(const Variable& variable) { text_ += variable->getName(); }
  void visit(const Join& join) { operation("Join", join->getOperands()); }
  void visit(const Meet& meet) { operation("Meet", meet->getOperands()); }
  void visit(const StructRef& ref) {
    appendParts("StructRef("sv, ref->getExpr().get(), ",'"sv, std::string_view(ref->getField()),
                "')"sv);
  }
  void visit(const IndexRef& ref) {
    appendParts("IndexRef("sv, ref->getExpr().get(), ","sv, ref->getStartIndex(), " : "sv,
                ref->getEndIndex(), ")"sv);
  }
  void visit(const Conditional& conditional) {
    appendParts("Conditional(ctrlExpr: "sv, conditional->getCtrlExpr().get(), ","sv,
                conditional->getOperandTrue().get(), ","sv, conditional->getOperandFalse().get(),
                ")"sv);
  }
  void visit(const Prune& prune) {
    append([&] {
      appendAll("prune("sv, prune->getExpr().get(), ",["sv);
      for (const std::string& field : prune->getField()) appendAll(std::string_view(field), " "sv);
      appendAll("])"sv);
    });
  }
  void visit(const PowerSet& set) {
    const Bits& bits = set->bits();
    for (std::size_t bit = bits.size(); bit-- > 0;) text_ += bits[bit] ? '1' : '0';
  }
  void visit(const Array& array) {
    list("Array", array->getValues(), [this](const auto& entry) {
      appendAll(entry.first, " : "sv, entry.second->getValue().get());
    });
  }
  void visit(const Struct& record) {
    list("Struct", record->getValues(), [this](const auto& entry) {
      appendAll(std::string_view(entry.first), " : "sv, entry.second->getValue().get());
    });
  }
  void visit(const Equation& equation) {
    appendParts(equation->getLhs().get(), " = "sv, equation->getRhs().get());
  }

  std::string text_;
  std::vector<Part> pending_;  // the next one last
};

}  // namespace

template <class... X>
void PrettyPrinter::addVisits() {
  (add(X::Uuid(), [this](const ModelElement& element) { return visit(X{element}); }), ...);
}

std::string PrettyPrinter::excerpt(const ModelElement& element, std::size_t most) {
  std::string text = Line().writeSome(element, most);
  if (text.size() <= most) return text;
  const auto isInside = [&] { return (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80; };
  while (most > 0 && isInside()) --most;
  return text.substr(0, most) + "...";
}

PrettyPrinter::PrettyPrinter() {
  addVisits<Variable, Join, Meet, StructRef, IndexRef, Conditional, Prune, PowerSet, Array, Struct,
            Equation>();
}

std::string PrettyPrinter::visit(const Variable& variable) const { return Line().write(variable); }
std::string PrettyPrinter::visit(const Join& join) const { return Line().write(join); }
std::string PrettyPrinter::visit(const Meet& meet) const { return Line().write(meet); }
std::string PrettyPrinter::visit(const StructRef& ref) const { return Line().write(ref); }
std::string PrettyPrinter::visit(const IndexRef& ref) const { return Line().write(ref); }
std::string PrettyPrinter::visit(const Conditional& c) const { return Line().write(c); }
std::string PrettyPrinter::visit(const Prune& prune) const { return Line().write(prune); }
std::string PrettyPrinter::visit(const PowerSet& set) const { return Line().write(set); }
std::string PrettyPrinter::visit(const Array& array) const { return Line().write(array); }
std::string PrettyPrinter::visit(const Struct& record) const { return Line().write(record); }
std::string PrettyPrinter::visit(const Equation& equation) const { return Line().write(equation); }

}  // namespace torvan::datamodel
