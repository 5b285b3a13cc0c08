#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <orb/zero/Transaction.h>
#include <torvan/datamodel/Session.h>
#include <tyve/Value.h>

/// What stands behind the objects of the host package "torvan.session".
namespace torvan::datamodel::hb {

class TransactionObject;

/// A session as the host has it.
struct HostSession {
  Session session;
  const void* const domain = session.model().operator->();
  std::vector<const TransactionObject*> open;  // the innermost one last
};

/// A session or one of its factories: keeps the session, and is equal to another one of its kind
/// and session.
class SessionPart : public tyve::NativeObject {
 public:
  explicit SessionPart(std::shared_ptr<HostSession> host) : host_(std::move(host)) {}

  const std::shared_ptr<HostSession>& host() const noexcept { return host_; }
  const Session* operator->() const noexcept { return &host_->session; }

  bool isValid() const noexcept final { return true; }
  bool isEqual(const NativeObject& other) const noexcept final;
  std::size_t hash() const noexcept final;
  const void* domain() const noexcept final { return host_->domain; }

 private:
  std::shared_ptr<HostSession> host_;
};

/// A session, or what it makes with: one class for each name.
template <const std::string_view& name>
struct NamedPart final : SessionPart {
  static constexpr std::string_view hostClass = name;
  using SessionPart::SessionPart;
};
inline constexpr std::string_view sessionName = "torvan.session.Session";
inline constexpr std::string_view typeFactoryName = "torvan.session.TypeFactory";
inline constexpr std::string_view valueFactoryName = "torvan.session.ValueFactory";
inline constexpr std::string_view expressionFactoryName = "torvan.session.ExpressionFactory";
using SessionObject = NamedPart<sessionName>;
using TypeFactoryObject = NamedPart<typeFactoryName>;
using ValueFactoryObject = NamedPart<valueFactoryName>;
using ExpressionFactoryObject = NamedPart<expressionFactoryName>;

/// An object that is equal to itself only.
class SingleObject : public tyve::NativeObject {
 public:
  bool isValid() const noexcept final { return true; }
  bool isEqual(const NativeObject& other) const noexcept final { return &other == this; }
  std::size_t hash() const noexcept final;
};

/// A builder of a system; it may outlive the session.
class SystemBuilderObject final : public SingleObject {
 public:
  static constexpr std::string_view hostClass = "torvan.session.SystemBuilder";

  explicit SystemBuilderObject(const HostSession& host)
      : builder_(host.session.model()), domain_(host.domain) {}

  SystemBuilder* operator->() const noexcept { return &builder_; }
  const void* domain() const noexcept override { return domain_; }

 private:
  mutable SystemBuilder builder_;
  const void* domain_;
};

/// A transaction. The last one who lets go of it while it is open rolls it back, with the inner
/// ones that still are open.
class TransactionObject final : public SingleObject {
 public:
  static constexpr std::string_view hostClass = "torvan.session.Transaction";

  explicit TransactionObject(std::shared_ptr<HostSession> host);
  ~TransactionObject() override;

  bool isOpen() const noexcept { return transaction_.has_value(); }
  /// Raises "TransactionEnded" when it is not open, and "TransactionInProgress" while an inner one
  /// is.
  void commit() const;
  /// Also rolls back the inner ones. Raises "TransactionEnded" when it is not open.
  void rollback() const;
  const void* domain() const noexcept override { return host_->domain; }

 private:
  void checkOpen() const;
  void end() const noexcept;

  std::shared_ptr<HostSession> host_;
  mutable std::optional<orb::zero::Transaction> transaction_;
};

}  // namespace torvan::datamodel::hb
