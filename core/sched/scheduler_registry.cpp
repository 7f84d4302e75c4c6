// Making Schedulers, the threads' Schedulers, and the global Scheduler made as the library loads.
#include <zel/sched/scheduler.h>
#include <zel/thread/exit_hooks.h>

#include "os/os.h"
#include "sched/scheduler_parts.h"

#include <new>

namespace zel {

safeptr<Scheduler> CreateScheduler(const strptr &name, TrackedObj *owner, bool active,
                                   SchedulerHost *host) {
  return safeptr<Scheduler>(new (std::nothrow) Scheduler(name, owner, active, host));
}

// --- The threads' Schedulers ---

namespace {

uint32_t SchedulerSlot() {
  static const uint32_t slot = os::TlsAlloc();
  return slot;
}

// The heap cell that holds a thread's Scheduler, freed when the thread ends.
struct SchedulerCell {
  Scheduler *scheduler;
};

void FreeCell(void *cell) {
  os::TlsSet(SchedulerSlot(), nullptr);
  FreeX(cell);
}

}  // namespace

void SetThreadLocalScheduler(Scheduler *scheduler) {
  scheduler->AttachToThread(os::CurrentThreadId());
  auto *cell = static_cast<SchedulerCell *>(os::TlsGet(SchedulerSlot()));
  if (cell == nullptr) {
    cell = new (MallocX(sizeof(SchedulerCell))) SchedulerCell{scheduler};
    os::TlsSet(SchedulerSlot(), cell);
    AddThreadExitHook(Hook0V(FreeCell, cell));
  }
  cell->scheduler = scheduler;
}

Scheduler *GetThreadLocalScheduler() {
  const auto *cell = static_cast<const SchedulerCell *>(os::TlsGet(SchedulerSlot()));
  return cell != nullptr ? cell->scheduler : nullptr;
}

void ForgetThreadLocalScheduler(Scheduler *scheduler) {
  auto *cell = static_cast<SchedulerCell *>(os::TlsGet(SchedulerSlot()));
  if (cell != nullptr && cell->scheduler == scheduler) cell->scheduler = nullptr;
}

// --- The global Scheduler ---

namespace {

Scheduler *g_global = nullptr;

// The loading thread's Scheduler, the root of the tracked objects; never destroyed, so that it
// outlives every tracked object.
struct GlobalSchedulerMaker {
  GlobalSchedulerMaker() {
    g_global = SchedulerAccess::MakeRoot();
    SetThreadLocalScheduler(g_global);
  }
} g_global_scheduler_maker;

}  // namespace

Scheduler *GetGlobalScheduler() { return g_global; }

TrackedObj *GetTrackedObjRoot() { return g_global; }

}  // namespace zel
