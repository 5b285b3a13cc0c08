#include <orb/zero/WorkQueue.h>

#include <deque>
#include <utility>

namespace orb::zero {
namespace {

/// Work that posts more is finished first, so that everybody learns of all changes in their order.
class InlineWorkQueue final : public WorkQueue {
 public:
  void post(std::function<void()> work) override {
    waiting_.push_back(std::move(work));
    if (isRunning_) return;
    struct Running {
      explicit Running(bool& running) : isRunning(running) { isRunning = true; }
      ~Running() { isRunning = false; }
      bool& isRunning;
    } const running(isRunning_);
    while (!waiting_.empty()) {
      const std::function<void()> next = std::move(waiting_.front());
      waiting_.pop_front();
      next();
    }
  }

 private:
  std::deque<std::function<void()>> waiting_;
  bool isRunning_ = false;
};

}  // namespace

WorkQueue::~WorkQueue() = default;

std::shared_ptr<WorkQueue> DefaultWorkQueueFactory::operator()(TransactionCoordinator*) const {
  return std::make_shared<InlineWorkQueue>();
}

}  // namespace orb::zero
