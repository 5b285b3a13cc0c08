#pragma once

#include <cstdint>

#include <orb/zero/UndoRecord.h>

namespace orb::zero {

/// The single values of one element before a transaction changed them. The typed slots are laid out
/// per class (see `StorageOf` in meta/Emit.h); bit n of the masks stands for position n.
class ORB_ZERO_API Storage : public UndoRecord {
 public:
  explicit Storage(ModelElement::Impl& element) noexcept;
  ~Storage() override;

  void undo() noexcept override;
  void settle() noexcept override;

  bool isChanged(int position) const noexcept { return (changed_ >> position) & 1; }
  std::uint64_t era() const noexcept { return era_; }
  /// Keeps the present value of the property, once.
  void keep(const meta::PropertyInfo& property);

 private:
  Storage* previous_;  // of the same element, made in an outer savepoint
  std::uint64_t era_;
  std::uint32_t changed_ = 0;
  std::uint32_t given_ = 0;
};

}  // namespace orb::zero
