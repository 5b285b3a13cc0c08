#include <orb/zero/io/impl/Loader.h>

#include <algorithm>
#include <utility>

#include <orb/zero/Exception.h>
#include <orb/zero/Value.h>
#include <orb/zero/meta/MetaRegistry.h>

namespace orb::zero::io {
namespace {

using Kind = PropertyPlan::Kind;

constexpr std::string_view members[] = {"format", "version", "metamodels", "elements", "proxies"};
constexpr std::string_view ownClass = "uuid", proxyOf = "proxy ";

[[noreturn]] void refuse(std::string cause) { throw Refusal{std::move(cause)}; }
[[noreturn]] void refuseValue() { refuse("A value of another kind is expected."); }

uuid uuidIn(std::string_view text) {
  const std::optional<uuid> id = parseUuid(text);
  if (!id) refuse("'" + std::string(text) + "' is no UUID.");
  return *id;
}

}  // namespace

Loader::Frame& Loader::top() {
  if (frames_.empty()) refuseValue();
  return frames_.back();
}

/// What is inside of an element's property belongs to that element.
void Loader::push(Context context) {
  Frame frame{context};
  if (!frames_.empty() && top().context == Context::Element) {
    frame.element = top().element;
    frame.property = top().property;
  }
  frames_.push_back(frame);
}

void Loader::beginObject() {
  if (frames_.empty()) return push(Context::File);
  switch (top().context) {
    case Context::Elements:
    case Context::Proxies:
    case Context::Owned:
    case Context::Keyed:
      return push(Context::Start);
    case Context::Element:
      if (top().property->kind == Kind::Keyed) return push(Context::Keyed);
      [[fallthrough]];
    default:
      refuseValue();
  }
}

void Loader::beginArray() {
  Frame& frame = top();
  if (frame.context == Context::File) {
    if (frame.place == 3) return push(Context::Packages);
    if (frame.place == 4) return push(Context::Elements);
    if (frame.place == 5) return push(Context::Proxies);
  } else if (frame.context == Context::Element) {
    if (frame.property->kind == Kind::Owned) return push(Context::Owned);
    if (frame.property->kind == Kind::Values) return push(Context::Values);
    if (frame.property->kind == Kind::References) return push(Context::References);
  }
  refuseValue();
}

void Loader::endArray() { frames_.pop_back(); }
void Loader::endObject() {
  if (top().context == Context::Start) refuse("An element begins with its class and UUID.");
  if (top().context == Context::File && top().place < std::size(members)) member({});
  frames_.pop_back();
}

void Loader::key(std::string_view name) {
  switch (top().context) {
    case Context::File:
      return member(name);
    case Context::Start:
      return identify(name);
    case Context::Element:
      return property(name);
    case Context::Keyed:
      key_ = name;
      return;
    default:
      refuse("A proxy has no properties.");
  }
}

/// The file has all members, and in this order.
void Loader::member(std::string_view name) {
  std::size_t& place = top().place;
  if (place == std::size(members)) refuse("The file has no further members.");
  if (name != members[place])
    refuse("The member '" + std::string(members[place]) + "' is expected.");
  ++place;
}

void Loader::identify(std::string_view text) {
  Frame& frame = top();
  const PropertyPlan* const owning = frames_[frames_.size() - 2].property;
  if (owning && text == ownClass) {
    frame.plan = &plans_.of(owning->info->type());
  } else {
    frame.isProxy = owning && text.starts_with(proxyOf);
    if (frame.isProxy) text.remove_prefix(proxyOf.size());
    frame.plan = plans_.find(text);
  }
  if (!frame.plan) raise("NoSuchType", {std::string(text)});
  if (frame.plan->type.isAbstract()) refuse("The class is abstract.");
}

/// Properties come in the order of their positions, as a rule.
void Loader::property(std::string_view name) {
  Frame& frame = top();
  const auto& all = frame.plan->properties;
  const auto next = frame.property ? all.begin() + frame.property->info->position : all.begin();
  const meta::Name wanted(name);
  const auto isWanted = [&](const PropertyPlan& plan) { return plan.info->lookup == wanted; };
  frame.property = nullptr;
  auto found = std::find_if(next, all.end(), isWanted);
  if (found == all.end()) found = std::find_if(all.begin(), next, isWanted);
  if (found == all.end() || !isWanted(*found))
    raise("NoSuchProperty", {std::string(frame.plan->type.name), std::string(name)});
  frame.property = &*found;
  if (found->kind == Kind::Transient) refuse("The property is transient.");
  const std::uint32_t bit = 1u << found->info->position;
  if (frame.given & bit) refuse("The property is given twice.");
  frame.given |= bit;
}

void Loader::value(Form form, std::string_view text) {
  Frame& frame = top();
  const PropertyPlan* const property = frame.property;
  switch (frame.context) {
    case Context::File:
      return fileValue(form, text);
    case Context::Packages:
      if (form != Form::Text) refuseValue();
      if (!meta::MetaRegistry::getInstance().hasPackage(text))
        refuse("The meta-model '" + std::string(text) + "' is not registered.");
      return;
    case Context::Start:
      if (form != Form::Text) refuseValue();
      return make(text);
    case Context::Element:
      if (property->kind == Kind::Value)
        return property->info->services.set(*frame.element, parsed(form, text));
      if (property->kind != Kind::Reference || form != Form::Text) refuseValue();
      return refer(text);
    case Context::Values:
      return property->info->services.insert(*frame.element, parsed(form, text));
    case Context::References:
      if (form != Form::Text) refuseValue();
      return refer(text);
    default:
      refuseValue();
  }
}

void Loader::null() {
  Frame& frame = top();
  if (frame.context != Context::References) refuseValue();
  frame.property->info->services.refer(*frame.element, frame.place++, nullptr);
}

void Loader::fileValue(Form form, std::string_view text) {
  const std::size_t place = top().place;
  if (place == 1 && (form != Form::Text || text != "orb.zero.model"))
    refuse("The file is no model.");
  if (place == 2 && (form != Form::Number || text != "1"))
    refuse("The version of the file is unknown.");
  if (place > 2) refuseValue();
}

Value Loader::parsed(Form form, std::string_view text) {
  const auto& serializer = top().property->serializer;
  if (!serializer) refuse("The type of the values has no serializer.");
  if (form != serializer->form()) refuseValue();
  return serializer->parseValue(text);
}

void Loader::make(std::string_view text) {
  const uuid id = uuidIn(text);
  const Frame& outer = frames_[frames_.size() - 2];
  Frame& frame = top();
  if (frame.isProxy && model_.createProxy(frame.plan->type, id)->getContainer())
    refuse("The proxy has an owner already.");
  if (outer.context == Context::Proxies) return makeProxy(id);

  Model::Impl::Staged staged = model_->stage(frame.plan->type);
  if (outer.context == Context::Keyed) {
    const PropertyPlan& owning = *outer.property;
    if (!owning.serializer) refuse("The type of the keys has no serializer.");
    if (!frame.plan->type.has(*owning.key)) refuseValue();
    owning.key->services.set(*staged, owning.serializer->parseValue(key_));
    frame.given = 1u << owning.key->position;
  }
  if (!frame.isProxy) model_->checkUnique(id);
  const ModelElement made = model_->adopt(std::move(staged), id);
  if (outer.property) outer.property->info->services.add(*outer.element, made);
  if (frame.isProxy) {
    made->convertToProxy();  // in its place and under its key
    frame.context = Context::Proxy;
  } else {
    frame.element = made.get();
    frame.context = Context::Element;
  }
}

/// What the model has needs no proxy.
void Loader::makeProxy(const uuid& id) {
  Frame& frame = top();
  frame.context = Context::Proxy;
  const auto [listed, isNew] = proxies_.try_emplace(id, model_->find(id));
  if (!isNew) refuse("The proxy is listed twice.");
  if (!listed->second) listed->second = model_.createProxy(frame.plan->type, id).get();
}

void Loader::refer(std::string_view text) {
  Frame& frame = top();
  const meta::PropertyInfo& property = *frame.property->info;
  const uuid id = uuidIn(text);
  Element* const target = model_->find(id);
  if (target || frame.context == Context::References)
    property.services.refer(*frame.element, frame.place, target);
  if (!target) {
    if (frame.place >= longest) refuse("The sequence is too long.");
    pending_.push_back({targetOf(id), frame.element->place(),
                        static_cast<std::uint32_t>(input_.line()),
                        static_cast<std::uint32_t>(property.position) & 31,
                        static_cast<std::uint32_t>(frame.place) & (longest - 1)});
  }
  if (frame.context == Context::References) ++frame.place;
}

std::uint32_t Loader::targetOf(const uuid& id) {
  recent_.resize(1 << 14);
  std::uint32_t& recent = recent_[UuidHash()(id) & (recent_.size() - 1)];
  if (recent >= targets_.size() || targets_[recent] != id) {
    recent = static_cast<std::uint32_t>(targets_.size());
    targets_.push_back(id);
  }
  return recent;
}

void Loader::finish() {
  for (const Pending& pending : pending_) {
    settled_ = &pending;
    const uuid& id = targets_[pending.target];
    Element* target = model_->find(id);
    if (!target) {
      const auto proxy = proxies_.find(id);
      if (proxy == proxies_.end()) refuse("Nothing has the UUID '" + toString(id) + "'.");
      target = proxy->second;
    }
    Element& element = *model_->born(pending.element);
    element.getPropertyByIndex(pending.position)->services.refer(element, pending.place, target);
  }
}

void Loader::raiseAt(std::string_view file, std::string cause) {
  std::string element, property;
  if (settled_) {
    const Element& referrer = *model_->born(settled_->element);
    element = toString(referrer.getUuid());
    property = referrer.getPropertyByIndex(settled_->position)->name;
  } else {
    const auto made = std::find_if(frames_.rbegin(), frames_.rend(),
                                   [](const Frame& frame) { return frame.element; });
    if (made != frames_.rend()) element = toString(made->element->getUuid());
    if (made != frames_.rend() && made->property) property = made->property->info->name;
  }
  const std::uint64_t line = settled_ ? settled_->line : input_.line();
  raise("CannotLoad", {std::string(file), std::to_string(line), std::move(element),
                       std::move(property), std::move(cause)});
}

}  // namespace orb::zero::io
