#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <orb/zero/hb/NativeClass.h>
#include <orb/zero/io/WholeFile.h>
#include <torvan/bindings/session/impl/HostQuery.h>
#include <torvan/bindings/session/impl/SessionClasses.h>
#include <torvan/bindings/session/impl/SessionObjects.h>
#include <torvan/datamodel/SessionFile.h>
#include <torvan/datamodel/ValueArchive.h>

namespace torvan::datamodel::hb {
namespace {

using tyve::Value;

template <class Part>
std::shared_ptr<Part> partOf(const SessionObject& session) {
  return std::make_shared<Part>(session.host());
}

/// A path that the system would not cut at a NUL character.
const std::string& checked(const std::string& path) {
  if (path.find('\0') != std::string::npos)
    orb::zero::raise("InvalidValue", {"", "a path has no NUL characters"});
  return path;
}

std::shared_ptr<SessionObject> loadSession(const std::string& path) {
  auto host = std::make_shared<HostSession>();
  loadWithBits(host->session.model(), checked(path));
  return std::make_shared<SessionObject>(std::move(host));
}

void exportTo(const std::string& path, const Value& values) {
  if (!values.is(tyve::Kind::Struct))
    orb::zero::raise("InvalidValue", {values.describe(), "a struct of values by name is needed"});
  const auto fields = fieldsOf<LatticeValue>(values, {});
  std::vector<NamedValue> named;
  for (std::size_t i = 0; i < fields.keys.size(); ++i)
    named.push_back({fields.keys[i], fields.values[i]});
  orb::zero::io::writeWhole(checked(path), [&](std::ostream& out) { exportValues(named, out); });
}

Value importFrom(const std::string& path, const orb::zero::Model& model) {
  std::ifstream in(checked(path), std::ios::binary);
  if (!in) orb::zero::raise("CannotImportValues", {path, "cannot open the file"});
  std::vector<std::string> names;
  std::vector<Value> values;
  for (NamedValue& named : importValues(in, model)) {
    names.push_back(std::move(named.name));
    values.push_back(orb::zero::hb::Passing<LatticeValue>::toHost(std::move(named.value)));
  }
  return Value::structure(std::move(names), std::move(values));
}

void setHistoryLimit(const SessionObject& session, std::int32_t steps) {
  if (steps < 0) orb::zero::raise("InvalidValue", {std::to_string(steps)});
  session->model().setHistoryLimit(static_cast<std::size_t>(steps));
}

}  // namespace

ClassPointer makeSessionClass() {
  constexpr orb::zero::hb::CallTraits lasting{.isLong = true};
  auto info = std::make_unique<orb::zero::hb::NativeClass<SessionObject>>(
      "A model of its own with the factories that fill it. Elements live on after it while they "
      "are held.");
  info->constructor("Makes a session with an empty model.", [] {
    return std::make_shared<SessionObject>(std::make_shared<HostSession>());
  });
  info->property("model", "The model, which contains all elements.",
                 [](const SessionObject& session) { return session->model(); });
  info->property("type_factory", "Makes lattice types.", partOf<TypeFactoryObject>);
  info->property("value_factory", "Makes lattice values.", partOf<ValueFactoryObject>);
  info->property("expression_factory", "Makes expressions.", partOf<ExpressionFactoryObject>);
  info->property(
      "history_limit",
      "How many transactions are kept for undo and redo, single changes counted; 0 for none.",
      [](const SessionObject& session) {
        return static_cast<std::int32_t>(session->model().historyLimit());
      },
      setHistoryLimit);
  info->method("create_system_builder", "", "A builder of a new system of equations.",
               [](const SessionObject& session) {
                 return std::make_shared<SystemBuilderObject>(*session.host());
               });
  info->method("begin", "", "Opens a transaction; inside of an open one it is a savepoint.",
               [](const SessionObject& session) {
                 return std::make_shared<TransactionObject>(session.host());
               });
  info->method(
      "undo", "", "Takes the latest kept transaction back; false when there is none.",
      [](const SessionObject& session) { return session->model().undo(); }, lasting);
  info->method(
      "redo", "", "Makes again what was undone last; false when there is none.",
      [](const SessionObject& session) { return session->model().redo(); }, lasting);
  info->method(
      "reclaim", "", "Frees the values that nothing holds any more; returns how many elements.",
      [](const SessionObject& session) {
        return static_cast<std::int32_t>(session->model().reclaim());
      },
      lasting);
  info->method(
      "find", "type opt_filter",
      "The elements of a class, given by its full name or its description, whose properties have "
      "the values of a struct, in the order of their creation.",
      [](const SessionObject& session, const Value& type, const Value& filter) {
        return findElements(session->model(), type, filter);
      },
      {.optional = 1});
  info->method(
      "save", "path", "Writes the model to a file, and the bits of its sets to PATH.values.",
      [](const SessionObject& session, const std::string& path) {
        saveWithBits(session->model(), checked(path));
      },
      lasting);
  info->staticMethod("load", "path", "A session with what `save` wrote.", loadSession, lasting);
  info->method("export_values", "values path",
               "Writes a struct of values, with their bits and types, to a file.",
               [](const SessionObject&, const Value& values, const std::string& path) {
                 exportTo(path, values);
               });
  info->method(
      "import_values", "path", "The values of such a file, made anew, as a struct.",
      [](const SessionObject& session, const std::string& path) {
        return importFrom(path, session->model());
      },
      lasting);
  return info;
}

ClassPointer makeTransactionClass() {
  auto info = std::make_unique<orb::zero::hb::NativeClass<TransactionObject>>(
      "A unit of change. Whoever lets go of it before it is committed rolls it back.");
  info->property("is_open", "Whether it was neither committed nor rolled back.",
                 [](const TransactionObject& transaction) { return transaction.isOpen(); });
  info->method("commit", "", "Makes the changes final, or leaves them to the outer transaction.",
               [](const TransactionObject& transaction) { transaction.commit(); });
  info->method("rollback", "", "Undoes what happened since it was opened, inner ones included.",
               [](const TransactionObject& transaction) { transaction.rollback(); },
               {.isLong = true});
  return info;
}

}  // namespace torvan::datamodel::hb
