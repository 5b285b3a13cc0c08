#include <orb/zero/io/ModelFile.h>

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include <orb/zero/Exception.h>
#include <orb/zero/ModelImpl.h>
#include <orb/zero/Targets.h>
#include <orb/zero/io/impl/ClassPlan.h>
#include <orb/zero/io/impl/Output.h>

namespace orb::zero::io {
namespace {

using Element = ModelElement::Impl;
using Kind = PropertyPlan::Kind;

/// Writes elements, without recursion: what is owned is as deep as it likes.
class Saver {
 public:
  Saver(Model::Impl& model, std::ostream& out)
      : model_(model), out_(out), texts_(out_), isSaved_(model.births()) {}

  /// An element that is being written, and what of it.
  struct Frame {
    const Element* element = nullptr;
    const ClassPlan* plan = nullptr;
    int key = 0;                             // position of the property that its owner writes
    std::size_t next = 0;                    // property
    const PropertyPlan* property = nullptr;  // the present one
    std::size_t children = 0, child = 0;     // of the property, in `children_`
  };

  // First all that is to be saved, then the file.
  void include(const Element& element) {
    isSaved_[element.place()] = true;
    plans_.of(element.getMetaClass());
  }
  bool isIncluded(const Element& element) const {
    return element.isMember() && &element.model() == &model_ && isSaved_[element.place()];
  }
  void begin();
  void write(const Element& root);
  void end();
  [[noreturn]] void refuse(const Frame& frame, std::string cause) const;

 private:
  void open(const Element& element, const PropertyPlan* owning);
  void writeProperty(Frame& frame);
  void writeChild(Frame& frame);
  void closeChildren(Frame& frame);
  void writeItems(const Frame& frame);
  void writeValue(const Frame& frame, const Value& value);
  void writeText(const Frame& frame, std::string_view text);
  const meta::PropertySerializer& serializerOf(const Frame& frame) const;
  std::string_view textOf(const Frame& frame, const Value& value);
  void writeReference(const Element* target);
  void writeUuid(const uuid& id);
  void newLine(std::size_t depth);

  const Model::Impl& model_;
  Output out_;
  JsonWriter<Output> texts_;
  ClassPlans plans_;
  std::vector<bool> isSaved_;  // by place
  std::vector<Frame> frames_;  // from the root to the element that is being written
  Targets children_;           // of these that are not written yet
  std::vector<std::pair<uuid, const meta::ClassInfo*>> proxies_;
  std::unordered_set<uuid, UuidHash> listed_;
  std::string text_;
  bool isFirst_ = true;
};

void Saver::begin() {
  out_.append(R"({"format":"orb.zero.model","version":1,"metamodels":[)");
  bool isFirst = true;
  for (const std::string& uri : plans_.uris()) {
    if (!std::exchange(isFirst, false)) out_.Put(',');
    writeText({}, uri);
  }
  out_.append("],\"elements\":[");
}

void Saver::end() {
  out_.append("\n],\"proxies\":[");
  bool isFirst = true;
  for (const auto& [id, type] : proxies_) {
    out_.append(std::exchange(isFirst, false) ? "\n" : ",\n");
    out_.append(plans_.of(*type).opening);
    writeUuid(id);
    out_.Put('}');
  }
  out_.append("\n]}\n");
  if (!out_.finish()) refuse({}, "The stream cannot be written.");
}

void Saver::write(const Element& root) {
  out_.append(std::exchange(isFirst_, false) ? "\n" : ",\n");
  open(root, nullptr);
  while (!frames_.empty()) {
    Frame& frame = frames_.back();
    if (frame.child < children_.found.size()) {
      writeChild(frame);
    } else if (frame.child != frame.children) {
      closeChildren(frame);
    } else if (frame.next < frame.plan->properties.size()) {
      writeProperty(frame);
    } else {
      out_.Put('}');
      frames_.pop_back();
    }
  }
}

void Saver::open(const Element& element, const PropertyPlan* owning) {
  const ClassPlan& plan = plans_.of(element.getMetaClass());
  const bool isDeclared = owning && &plan.type == &owning->info->type();
  if (element.isProxy()) {
    out_.append("{\"proxy ");
    out_.append(std::string_view(plan.opening).substr(2));
  } else {
    out_.append(isDeclared ? "{\"uuid\":\"" : std::string_view(plan.opening));
  }
  writeUuid(element.getUuid());
  if (element.isProxy()) return out_.Put('}');
  const int key = owning && owning->key ? owning->key->position : 0;
  frames_.push_back(
      {&element, &plan, key, 0, nullptr, children_.found.size(), children_.found.size()});
}

void Saver::writeProperty(Frame& frame) {
  const PropertyPlan& property = frame.plan->properties[frame.next++];
  const Element& element = *frame.element;
  frame.property = &property;
  if (property.kind == Kind::Transient || property.info->position == frame.key) return;
  const meta::PropertyServices& services = property.info->services;
  if (!services.has(element)) return;
  out_.append(property.opening);
  switch (property.kind) {
    case Kind::Transient:
      break;
    case Kind::Value:
      return writeValue(frame, services.get(element, ProxyTag::Keep));
    case Kind::Reference:
      return writeReference(static_cast<const ModelElement*>(services.slot(element))->get());
    case Kind::Values:
    case Kind::References:
      return writeItems(frame);
    case Kind::Owned:
    case Kind::Keyed:
      out_.Put(property.kind == Kind::Keyed ? '{' : '[');
      services.targets(element, children_);
  }
}

void Saver::writeItems(const Frame& frame) {
  const meta::PropertyServices& services = frame.property->info->services;
  const std::size_t count = services.size(*frame.element);
  for (std::size_t place = 0; place < count; ++place) {
    out_.Put(place == 0 ? '[' : ',');
    const Value value = services.at(*frame.element, place, ProxyTag::Keep);
    if (frame.property->kind == Kind::Values)
      writeValue(frame, value);
    else
      writeReference(value.getValue<ModelElement>().get());
  }
  out_.Put(']');
}

void Saver::writeChild(Frame& frame) {
  const PropertyPlan& property = *frame.property;
  const Element& child = *children_.found[frame.child];
  if (frame.child != frame.children) out_.Put(',');
  ++frame.child;
  newLine(frames_.size());
  if (property.key) {
    Value key = property.key->services.get(child, ProxyTag::Keep);
    if (key.isEmpty()) key = serializerOf(frame).createDefaultValue();
    writeText(frame, textOf(frame, key));
    out_.Put(':');
  }
  open(child, &property);
}

void Saver::closeChildren(Frame& frame) {
  newLine(frames_.size() - 1);
  out_.Put(frame.property->kind == Kind::Keyed ? '}' : ']');
  children_.found.resize(frame.children);
  frame.child = frame.children;
}

void Saver::newLine(std::size_t depth) {
  static constexpr std::string_view indented = "\n                                ";
  out_.append(indented.substr(0, 1 + depth));
}

const meta::PropertySerializer& Saver::serializerOf(const Frame& frame) const {
  if (!frame.property->serializer) refuse(frame, "The type of the values has no serializer.");
  return *frame.property->serializer;
}

std::string_view Saver::textOf(const Frame& frame, const Value& value) {
  const meta::PropertySerializer& serializer = serializerOf(frame);
  text_.clear();
  try {
    serializer.append(value, text_);
  } catch (const Exception& exception) {
    refuse(frame, exception.getText());
  }
  const std::size_t size = text_.size();
  text_.append(4, '\0');  // which end a character that is cut off
  return std::string_view(text_).substr(0, size);
}

void Saver::writeValue(const Frame& frame, const Value& value) {
  const std::string_view text = textOf(frame, value);
  if (frame.property->serializer->form() == meta::PropertySerializer::Form::Text)
    writeText(frame, text);
  else
    out_.append(text);
}

void Saver::writeText(const Frame& frame, std::string_view text) {
  texts_.Reset(out_);
  if (!texts_.String(text.data(), static_cast<rapidjson::SizeType>(text.size())))
    refuse(frame, "The text is no UTF-8.");
}

void Saver::writeReference(const Element* target) {
  if (!target || !target->isAlive()) return out_.append("null");
  if (!isIncluded(*target) && listed_.insert(target->getUuid()).second)
    proxies_.emplace_back(target->getUuid(), &target->getMetaClass());
  out_.Put('"');
  writeUuid(target->getUuid());
}

void Saver::writeUuid(const uuid& id) {
  const UuidText text = toText(id);
  out_.append({text.data(), text.size()});
  out_.Put('"');
}

void Saver::refuse(const Frame& frame, std::string cause) const {
  std::string element, property;
  if (frame.element) element = toString(frame.element->getUuid());
  if (frame.property) property = frame.property->info->name;
  raise("CannotSave", {std::move(element), std::move(property), std::move(cause)});
}

}  // namespace

void save(const Model& model, std::ostream& out) {
  Saver saver(*model.operator->(), out);
  const auto forAll = [&](auto visit) {
    for (std::uint32_t place = 0; place < model->births(); ++place)
      if (const Element* const element = model->born(place); element && element->isMember())
        visit(*element);
  };
  forAll([&](const Element& element) { saver.include(element); });
  saver.begin();
  forAll([&](const Element& element) {
    const Element* const owner = element.container();
    if (!owner || !owner->isMember()) saver.write(element);  // or it is one in the making
  });
  saver.end();
}

void save(std::span<const ModelElement> roots, std::ostream& out) {
  if (roots.empty()) return save(Model::create(), out);
  Saver saver(roots.front()->model(), out);
  Targets part;
  for (const ModelElement& root : roots) {
    if (root->isProxy()) saver.refuse({root.get()}, "A proxy has nothing to save.");
    root->checkCompatibleModel(roots.front().get());
    part.found.push_back(root.get());
  }
  auto tops = part.found;
  for (std::size_t i = 0; i < part.found.size(); ++i) {  // grows while it runs
    const Element& element = *part.found[i];
    if (!element.isMember() || saver.isIncluded(element)) continue;
    saver.include(element);
    visitOwned(element, part);
  }
  std::ranges::sort(tops, {}, &Element::place);
  tops.erase(std::unique(tops.begin(), tops.end()), tops.end());
  saver.begin();
  for (const Element* top : tops)
    if (!top->container() || !saver.isIncluded(*top->container())) saver.write(*top);
  saver.end();
}

}  // namespace orb::zero::io
