#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include <orb/zero/Model.h>
#include <torvan/datamodel/LatticeValue.h>

/// Lattice values as text, apart from the file of their model, which has no bits of power sets. A
/// solver keeps its fixed point with `exportValues` and `importValues`; what a saved model lacks
/// comes back with `powerSetsOf` and `restoreValues`.
///
/// The text is JSON with a line per type and per value, in a stable order: of the names as they are
/// given, of fields and indices as they are stored.
///
///     {"format":"torvan.values","version":1,"types":{
///     "colours":{"name":"colours","size":3,"universe":["red","green","blue"]},
///     "pair":{"name":"pair","fields":{"a":"colours","b":"colours"}}
///     },"values":{
///     "x":{"type":"pair","fields":{
///      "a":{"id":1,"type":"colours","size":3,"bits":"5"},
///      "b":1}},
///     "y":{"type":"colours","size":3,"bits":"0"}
///     }}
///
/// Bits are a hexadecimal number with all its digits, the first element of the universe being its
/// lowest bit. A value that stands in several places is written once, with an `id`, which stands
/// for it in the others; an empty place is `null`. A type has the label by which values refer to
/// it: its name, with a number where that is empty or taken.
namespace torvan::datamodel {

/// A value, perhaps none, under the name that it has in the text.
struct NamedValue {
  std::string name;
  LatticeValue value;
};

/// Writes the values with all that they are made of: lengths and bits of sets, whatever the size of
/// their type, the stored fields and indices, and their types, if they have any. Of a type it
/// writes all but top and bottom, and the size of a record type, which is that of `TypeFactory`.
/// Raises "CannotExportValues" with the name of the value and the problem: a name that comes twice,
/// a text that is no UTF-8, an array with an index 0, a value of another kind than its type, a
/// value or a type that contains itself, a proxy, and a stream that does not take the text.
TORVAN_DATAMODEL_API void exportValues(std::span<const NamedValue> values, std::ostream& out);

/// Makes the values of a text anew, in one transaction, and returns them in their order. Types are
/// new as well, with the tops and bottoms of `TypeFactory`; the caller's handles and slots keep the
/// values from `Model::reclaim`. Raises "CannotImportValues" with the place, as its line and the
/// names that lead to it ("line 7, /values/x/fields/a"), and the problem; nothing of the attempt
/// stays in the model then.
TORVAN_DATAMODEL_API std::vector<NamedValue> importValues(std::istream& in,
                                                          const orb::zero::Model& model);

/// Gives the values, all of one model, the bits that a text has for them, in one transaction; no
/// element of the model is made. The values have the names of the text, in any order, and the
/// structure that it tells: kinds, the names, sizes and universes of types, fields and indices, and
/// what is one value in several places. Only their bits may be others, of other lengths even.
/// Raises "CannotImportValues", without a line for another structure; the values stay as they are
/// then.
TORVAN_DATAMODEL_API void restoreValues(std::istream& in, std::span<const NamedValue> values);

/// The power sets of a model, each with its UUID as its name: all that a file of the model lacks.
TORVAN_DATAMODEL_API std::vector<NamedValue> powerSetsOf(const orb::zero::Model& model);

}  // namespace torvan::datamodel
