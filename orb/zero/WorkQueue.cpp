#include <orb/zero/WorkQueue.h>

namespace orb::zero {
namespace {

class InlineWorkQueue final : public WorkQueue {
 public:
  void post(std::function<void()> work) override { work(); }
};

}  // namespace

WorkQueue::~WorkQueue() = default;

std::shared_ptr<WorkQueue> DefaultWorkQueueFactory::operator()(TransactionCoordinator*) const {
  return std::make_shared<InlineWorkQueue>();
}

}  // namespace orb::zero
