// DelayClient and CallbackClient: what a Scheduler calls.
#include <zel/sched/scheduler.h>

namespace zel {

DelayClient::~DelayClient() { Deschedule(); }

bool DelayClient::Callback() { return false; }

void DelayClient::Notify() {}

void DelayClient::Schedule(Scheduler *scheduler) {
  if (scheduler != nullptr) scheduler->Schedule(this);
}

void DelayClient::Schedule(Scheduler *scheduler, float delay) {
  if (scheduler != nullptr) scheduler->Schedule(this, delay);
}

void DelayClient::Deschedule() {
  // The owner may change meanwhile: each Scheduler only takes out what belongs to it.
  while (Scheduler *owner = scheduler_.load(std::memory_order_acquire)) {
    owner->Deschedule(this);
    if (scheduler_.load(std::memory_order_acquire) == owner) break;
  }
}

void CallbackClient::Schedule(float delay) {
  if (home_ != nullptr) home_->Schedule(this, delay);
}

}  // namespace zel
