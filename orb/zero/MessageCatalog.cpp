#include <orb/zero/MessageCatalog.h>

#include <orb/zero/Exception.h>

#include <algorithm>
#include <iterator>

namespace orb::zero {
namespace {

struct Message {
  std::string_view catalog, identifier, text;
};

/// What stands in brackets is left out when an argument in it is empty.
constexpr Message messages[] = {
    {frameworkCatalog, "CannotCastIncompatibleTypes",
     "The object is empty, deleted or of another type: expected '{0}'."},
    {frameworkCatalog, "CannotAddIncompatibleTypes",
     "Cannot add an object of type '{0}' to a collection of '{1}'."},
    {frameworkCatalog, "UniquenessConstraint",
     "An object with the same key or UUID is already present."},
    {frameworkCatalog, "CannotCreateCrossModelAssociation",
     "Cannot associate objects that belong to different models."},
    {frameworkCatalog, "CannotModifyProxy", "Cannot modify a proxy."},
    {frameworkCatalog, "CannotSetReadOnlyProperty", "Cannot set the read-only property '{0}'."},
    {frameworkCatalog, "CannotAddSecondObject",
     "The collection already holds the object, or holds one object only."},
    {frameworkCatalog, "CannotAddNonExistentObject",
     "Cannot add an empty or deleted object to a collection."},
    {frameworkCatalog, "CannotModifyFrozenModel", "Cannot change a frozen model."},
    {frameworkCatalog, "TransactionInProgress", "Not possible while a transaction is open."},
    {frameworkCatalog, "TransactionEnded", "The transaction has ended."},
    {frameworkCatalog, "NoSuchProperty", "The class '{0}' has no property '{1}'."},
    {frameworkCatalog, "NoSuchType", "There is no type named '{0}'."},
    {frameworkCatalog, "InvalidValue", "The value[ {0}] is invalid[: {1}]."},
    {frameworkCatalog, "CyclicValue",
     "The object contains itself, or is nested too deeply or too often."},
    {frameworkCatalog, "CannotSave", "Cannot save[ the element '{0}'][, property '{1}']: {2}"},
    {frameworkCatalog, "CannotLoad",
     "Cannot load[ '{0}'][, line {1}][, element '{2}'][, property '{3}']: {4}"},
    {frameworkCatalog, "CannotParseValue", "'{0}' is no value of type '{1}'."},
    {frameworkCatalog, "CannotCreateWithoutModel", "Cannot create an object without a model."},
    {frameworkCatalog, "CannotExportValues", "Cannot export values: '{0}': {1}"},
    {frameworkCatalog, "CannotImportValues", "Cannot import values: {0}: {1}"},
};

}  // namespace

std::string MessageCatalog::text(std::string_view catalog, std::string_view identifier,
                                 const std::vector<std::string>& arguments) {
  const auto message = std::find_if(std::begin(messages), std::end(messages), [&](const auto& m) {
    return m.catalog == catalog && m.identifier == identifier;
  });
  if (message == std::end(messages)) return "Message text unavailable";

  std::string filled;
  const std::string_view text = message->text;
  std::size_t section = 0;  // where it begins in what is filled
  bool isLeftOut = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '[') {
      section = filled.size();
      isLeftOut = false;
    } else if (text[i] == ']') {
      if (isLeftOut) filled.resize(section);
    } else if (text[i] == '{') {
      const auto n = static_cast<std::size_t>(text[i + 1] - '0');
      if (n < arguments.size()) filled += arguments[n];
      isLeftOut |= n >= arguments.size() || arguments[n].empty();
      i += 2;
    } else {
      filled += text[i];
    }
  }
  return filled;
}

}  // namespace orb::zero
