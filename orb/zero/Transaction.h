#pragma once

#include <cstdint>

#include <orb/zero/Model.h>

namespace orb::zero {

/// A unit of change. It is rolled back when it leaves its scope without `commit`. Inside an open
/// transaction it is a savepoint: its rollback undoes what happened since it was opened, and a
/// rollback of the outer one undoes it as well, committed or not.
class ORB_ZERO_API Transaction {
 public:
  explicit Transaction(const Model& model);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction() {
    if (era_ != 0) rollback();
  }

  /// Makes the changes final, or leaves them to the outer transaction. Has no effect on a
  /// transaction that has ended.
  void commit();
  void rollback() noexcept;

 private:
  Model model_;
  std::uint64_t era_;  // 0 when it has ended
};

}  // namespace orb::zero
