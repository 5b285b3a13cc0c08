#include <torvan/datamodel/PrettyPrinter.h>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include <boost/dynamic_bitset/dynamic_bitset.hpp>

#include <torvan/datamodel/impl/Walk.h>

namespace torvan::datamodel {
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
    for (dispatch(element); !pending_.empty(); walk.step()) writeNext();
    return std::move(text_);
  }
  /// The text as far as it has been written when it is longer than so many bytes.
  std::string writeSome(const ModelElement& element, std::size_t most) {
    dispatch(element);
    while (!pending_.empty() && text_.size() <= most) writeNext();
    return std::move(text_);
  }

 private:
  using Part = std::variant<const char*, ModelElement::Impl*, std::string>;

  void writeNext() {
    const Part part = std::move(pending_.back());
    pending_.pop_back();
    if (const auto* const literal = std::get_if<const char*>(&part))
      text_ += *literal;
    else if (const auto* const text = std::get_if<std::string>(&part))
      text_ += *text;
    else
      dispatch(ModelElement(std::get<ModelElement::Impl*>(part)));
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
  void appendParts(Parts&&... parts) {
    append([&] { (pending_.emplace_back(std::forward<Parts>(parts)), ...); });
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
      const char* before = "(";
      for (const auto& item : items) {
        pending_.emplace_back(before);
        pushItem(item);
        before = ",";
      }
      pending_.emplace_back(")");
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
    appendParts("StructRef(", ref->getExpr().get(), ",'" + ref->getField() + "')");
  }
  void visit(const IndexRef& ref) {
    appendParts("IndexRef(", ref->getExpr().get(),
                "," + std::to_string(ref->getStartIndex()) + " : " +
                    std::to_string(ref->getEndIndex()) + ")");
  }
  void visit(const Conditional& conditional) {
    appendParts("Conditional(ctrlExpr: ", conditional->getCtrlExpr().get(), ",",
                conditional->getOperandTrue().get(), ",", conditional->getOperandFalse().get(),
                ")");
  }
  void visit(const Prune& prune) {
    std::string path = ",[";
    for (const std::string& field : prune->getField()) path += field + ' ';
    appendParts("prune(", prune->getExpr().get(), path + "])");
  }
  void visit(const PowerSet& set) {
    const Bits& bits = set->bits();
    for (std::size_t bit = bits.size(); bit-- > 0;) text_ += bits[bit] ? '1' : '0';
  }
  void visit(const Array& array) {
    list("Array", array->getValues(), [this](const auto& entry) {
      pending_.emplace_back(std::to_string(entry.first) + " : ");
      pending_.emplace_back(entry.second->getValue().get());
    });
  }
  void visit(const Struct& record) {
    list("Struct", record->getValues(), [this](const auto& entry) {
      pending_.emplace_back(entry.first + " : ");
      pending_.emplace_back(entry.second->getValue().get());
    });
  }
  void visit(const Equation& equation) {
    appendParts(equation->getLhs().get(), " = ", equation->getRhs().get());
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
