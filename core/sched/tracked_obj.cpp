// TrackedObj: the dependency graph, the check that deactivates objects in order, and deletion.
#include <zel/diag/log.h>
#include <zel/mem/allocator.h>
#include <zel/sched/scheduler.h>
#include <zel/text/thread_local_string.h>

#include "sched/tracked_parts.h"

#include <new>

namespace zel {

// The companion record of every object but the root: its checks and its deletion, as clients of
// its Scheduler and of the global Scheduler. The object's command proxy joins them here.
struct TrackedRecord {
  // Runs CheckState on the object's Scheduler.
  struct CheckClient final : DelayClient {
    explicit CheckClient(TrackedObj *o) : owner(o) {}
    bool Callback() override {
      owner->CheckState();
      return false;
    }
    TrackedObj *owner;
  };
  // Deletes the object on the global Scheduler. Nothing touches the client after the deletion.
  struct DeleteClient final : DelayClient {
    explicit DeleteClient(TrackedObj *o) : owner(o) {}
    bool Callback() override {
      owner->RunDeletion();
      return false;
    }
    TrackedObj *owner;
  };

  TrackedRecord(TrackedObj *owner, Scheduler *s) : scheduler(s), check(owner), deleter(owner) {}

  CritSect lock;         // the scheduling fields: the Scheduler and the clients' scheduling
  Scheduler *scheduler;  // null: the global Scheduler
  CheckClient check;     // "TrackedObj.check_state"
  DeleteClient deleter;  // "TrackedObj.delete"
  std::atomic<bool> auto_deactivate{false};
  std::atomic<bool> auto_delete{false};
  std::atomic<bool> abort{false};
};

namespace {

std::atomic<bool> g_dependency_logging{false};

// Logs name + text + "\r\n".
void LogAbout(const shstring &name, const char *text) {
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  *line << name << text << "\r\n";
  PrintLog(*line);
}

int CountActive(const PtrTAry<TrackedObj> &objects) {
  int active = 0;
  for (const TrackedObj *o : objects) active += o->GetState() == TrackedObj::kActive ? 1 : 0;
  return active;
}

void RemoveFrom(PtrTAry<TrackedObj> &list, const TrackedObj *o) {
  const int at = list.Find(o);
  if (at >= 0) list.RemoveAt(at);
}

}  // namespace

TrackedObjTraverse::~TrackedObjTraverse() = default;

void SetDependencyLogging(bool on) { g_dependency_logging.store(on); }

// --- Life ---

TrackedObj::TrackedObj(const strptr &name, const strptr &type, TrackedObj *parent, bool active,
                       Scheduler *scheduler)
    : record_(nullptr), type_(type), name_(name), state_(active ? 1 : 0), target_(active ? 1 : 0) {
  const bool root = name.Equal("root");
  if (!root) {
    record_ = new (MallocX(sizeof(TrackedRecord))) TrackedRecord(this, scheduler);
    if (parent == nullptr) parent = GetTrackedObjRoot();
  }
  TrackedObj::AddDependency(parent);
}

CritSect &TreeLock() {
  // Never destroyed: objects may leave the graph in static destructors.
  static CritSect *const lock = new (MallocX(sizeof(CritSect))) CritSect();
  return *lock;
}

TrackedObj::~TrackedObj() {
  if (LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "Destructor for tracked object " << name_ << "\r\n";
    PrintLog(*line);
  }
  {
    CritSectLock hold(TreeLock());
    for (TrackedObj *d : dependants_) {
      if (d->GetState() == kActive && LogCategory::n_global_clients >= 1) {
        ThreadLocalString line;
        *line << "Invalid dependency tree: object " << d->name_ << " not deactivated!\r\n";
        PrintLog(*line);
      }
      RemoveFrom(d->dependencies_, this);
    }
    for (TrackedObj *d : dependencies_) {
      RemoveFrom(d->dependants_, this);
      d->RequestCheckState();
    }
    state_.store(kInactive);
  }
  if (record_ != nullptr) {
    // A check may still be finishing on another thread: descheduling waits for a queued one to
    // return, and the record's lock for one that took itself out of its queue.
    record_->check.Deschedule();
    record_->deleter.Deschedule();
    { CritSectLock finished(record_->lock); }
    record_->~TrackedRecord();
    FreeX(record_);
  }
}

void *TrackedObj::operator new(size_t size) { return MallocX(static_cast<int>(size)); }

void *TrackedObj::operator new(size_t size, const std::nothrow_t &) noexcept {
  return GAlloc(static_cast<int>(size));
}

void TrackedObj::operator delete(void *block) noexcept { FreeX(block); }

void TrackedObj::Release() {
  if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void TrackedObj::RunDeletion() {
  SetState(kInactive);
  RemoveParentDependencies();
  Release();  // the hold taken when the deletion was queued
}

// --- The base's hooks ---

void *TrackedObj::Query(const void *) { return nullptr; }
void TrackedObj::Deactivate() { SetState(kInactive); }
void TrackedObj::OnNotify(intptr_t) {}
void TrackedObj::OnDeactivateRequested() {}
bool TrackedObj::HandleKey(const KeyInfo &) { return false; }

void TrackedObj::OnDependencyAbort(TrackedObj *) {
  SetAbortFlag();
  RequestDeactivate();
}

// --- Dependencies ---

void TrackedObj::AddDependency(TrackedObj *x) {
  if (x == nullptr || x == this) return;
  if (x->GetState() == kInactive) x->SetState(kActive);
  {
    CritSectLock hold(TreeLock());
    if (dependencies_.Find(x) >= 0) return;
    dependencies_.Add(x);
    x->dependants_.Add(this);
  }
  if (x != GetTrackedObjRoot() && g_dependency_logging.load() &&
      LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "Object " << name_ << " now depends on " << x->name_ << "\r\n";
    PrintLog(*line);
  }
}

void TrackedObj::RemoveDependency(TrackedObj *x) {
  {
    CritSectLock hold(TreeLock());
    const int at = dependencies_.Find(x);
    if (at < 0) return;
    dependencies_.RemoveAt(at);
    RemoveFrom(x->dependants_, this);
  }
  x->RequestCheckState();
}

void TrackedObj::RemoveParentDependencies() {
  PtrTAry<TrackedObj> parents;
  GetDependencies(parents);
  for (TrackedObj *p : parents) RemoveDependency(p);
}

int TrackedObj::GetNumActiveChildren() const {
  CritSectLock hold(TreeLock());
  return CountActive(dependants_);
}

void TrackedObj::GetDependants(PtrTAry<TrackedObj> &out) const {
  CritSectLock hold(TreeLock());
  out.Flush();
  for (TrackedObj *d : dependants_) out.Add(d);
}

void TrackedObj::GetDependencies(PtrTAry<TrackedObj> &out) const {
  CritSectLock hold(TreeLock());
  out.Flush();
  for (TrackedObj *d : dependencies_) out.Add(d);
}

// --- State ---

void TrackedObj::RequestDeactivate() {
  if (GetState() != kInactive) target_.store(kInactive);
  RequestCheckState();
}

void TrackedObj::RequestCheckState() {
  if (record_ == nullptr) return;
  Scheduler *s = GetTrackedObjScheduler();
  // Repeated requests before the check runs find it queued already and collapse into one run.
  record_->check.Schedule(s);
}

void TrackedObj::CheckState() {
  TreeLock().Enter();
  const int active = CountActive(dependants_);
  if (record_ != nullptr && record_->auto_deactivate && GetTargetState() == kActive) {
    if (GetState() == kActive && active == 0) {
      target_.store(kInactive);
      RequestCheckState();
    }
    TreeLock().Leave();
    return;
  }
  if (GetState() != kActive || GetTargetState() != kInactive) {
    TreeLock().Leave();
    return;
  }
  TreeLock().Leave();
  OnDeactivateRequested();
  TreeLock().Enter();
  // Deactivation spreads to everything that depends on this object, dependants first.
  bool ready = true;
  for (int i = dependants_.Count() - 1; i >= 0; --i) {
    TrackedObj *d = dependants_[i];
    if (d->GetState() != kActive) continue;
    d->target_.store(kInactive);
    d->RequestCheckState();
    ready = false;
  }
  LogAbout(name_, ready ? "::CheckState, active, ready to deactivate"
                        : "::CheckState, active, deactivating, not ready to deactivate");
  TreeLock().Leave();
  if (ready) Deactivate();
}

void TrackedObj::SetState(int s) {
  target_.store(s);
  if (GetState() == s) return;
  {
    CritSectLock hold(TreeLock());
    // Refused while anything that depends on this object is still active.
    if (s == kInactive && CountActive(dependants_) > 0) return;
    state_.store(s);
    if (s != kInactive) return;
    const bool abort = GetAbortFlag();
    for (TrackedObj *d : dependencies_) {
      if (abort) d->OnDependencyAbort(this);
      d->RequestCheckState();
    }
  }
  if (record_ == nullptr) return;
  bool auto_delete;
  {
    CritSectLock hold(record_->lock);
    record_->check.Deschedule();
    record_->deleter.Deschedule();
    auto_delete = record_->auto_delete;
  }
  if (auto_delete) {
    AddRef();  // held until the deletion runs
    record_->deleter.Schedule(GetGlobalScheduler());
  }
}

// --- The companion record's fields ---

Scheduler *TrackedObj::GetTrackedObjScheduler() const {
  if (record_ == nullptr) return GetGlobalScheduler();
  CritSectLock hold(record_->lock);
  return record_->scheduler != nullptr ? record_->scheduler : GetGlobalScheduler();
}

void TrackedObj::SetTrackedObjScheduler(Scheduler *scheduler) {
  if (record_ == nullptr) return;
  CritSectLock hold(record_->lock);
  record_->scheduler = scheduler;
}

void TrackedObj::SetAutoDeactivate(bool on) {
  if (record_ != nullptr) record_->auto_deactivate = on;
}

void TrackedObj::SetAutoDeleteFlag(bool on) {
  if (record_ != nullptr) record_->auto_delete = on;
}

bool TrackedObj::GetAutoDeleteFlag() const { return record_ != nullptr && record_->auto_delete; }

void TrackedObj::SetAbortFlag() {
  if (record_ != nullptr) record_->abort = true;
}

bool TrackedObj::GetAbortFlag() const { return record_ != nullptr && record_->abort; }

}  // namespace zel
