#include "platform/batches/helper_thread.h"

#include <utility>

namespace qmx {

HelperThread::HelperThread(SteadyClock& clock, std::mutex& mutex, std::condition_variable& changed, Work work)
    : clock_(clock), mutex_(mutex), changed_(changed), work_(std::move(work)) {}

void HelperThread::Wake() {
  if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
  if (std::exchange(sleeps_, false)) changed_.notify_all();
}

void HelperThread::Stop() {
  {
    const SteadyClock::Lock lock(mutex_);
    stops_ = true;
    changed_.notify_all();
  }
  if (thread_.joinable()) thread_.join();
}

void HelperThread::Run() {
  SteadyClock::Lock lock(mutex_);
  while (!stops_) {
    const std::optional<SteadyClock::TimePoint> due = work_(lock);
    if (stops_) return;
    if (!due) {
      sleeps_ = true;
      clock_.Wait(changed_, lock);
    } else if (clock_.Now() < *due) {
      clock_.WaitUntil(*due, changed_, lock);
    }
  }
}

}  // namespace qmx
