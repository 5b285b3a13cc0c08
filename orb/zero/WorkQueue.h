#pragma once

#include <functional>
#include <memory>

#include <orb/zero/Api.h>

namespace orb::zero {

class TransactionCoordinator;

/// Runs the work that follows a model's transactions, such as telling listeners.
class ORB_ZERO_API WorkQueue {
 public:
  virtual ~WorkQueue();
  /// Takes the work; it runs now or later, once.
  virtual void post(std::function<void()> work) = 0;
};

/// Makes the work queue of a model; the coordinator is that of the model and outlives the queue.
using WorkQueueFactory = std::function<std::shared_ptr<WorkQueue>(TransactionCoordinator*)>;

/// Makes queues that run each piece of work at once, in the thread that posts it.
struct ORB_ZERO_API DefaultWorkQueueFactory {
  std::shared_ptr<WorkQueue> operator()(TransactionCoordinator* coordinator) const;
};

}  // namespace orb::zero
