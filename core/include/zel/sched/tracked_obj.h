// Tracked objects: long-lived services that form a dependency graph with one root and shut down in
// order, from the objects that depend on others towards the objects they depend on. safeptr holds
// them across threads.
//
// An object is active (state 1) or inactive (0). Asking an active object to deactivate sets its
// target state to 0; a check, run on the object's own Scheduler, first asks everything that
// depends on it to deactivate and deactivates the object only once none of those is active. When
// an object reaches state 0, the objects it depends on check again, and an object marked for
// auto-deletion is deleted on the global Scheduler. The root is the global Scheduler (see
// scheduler.h).
#pragma once

#include <zel/mem/tary.h>
#include <zel/text/cstring.h>
#include <zel/text/shstring.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

namespace zel {

class Scheduler;
class TrackedObj;
struct KeyInfo;

// A visitor of the tracked objects below one object (see TrackedObj::TraverseTree).
class ZEL_API TrackedObjTraverse {
 public:
  virtual ~TrackedObjTraverse();
  // Called once per object reached, with its distance in dependency steps from where the walk
  // began (0 for that object). False skips the object's own dependants.
  virtual bool Visit(TrackedObj *object, int depth) = 0;
};

// The base of every long-lived service object. Objects are made with `new` (their memory comes
// from the global allocator) or live as members and statics; only the former may be held by
// safeptr or marked for auto-deletion.
//
// One process-wide lock, the tree lock, guards every object's dependency lists and states; it is
// never held while the virtual hooks run. Nothing here throws but allocation failure.
class ZEL_API TrackedObj {
 public:
  enum State { kInactive = 0, kActive = 1 };

  // An object named `name`, of kind `type`, active (state and target 1) when `active`, whose
  // checks run on `scheduler` (the global Scheduler when null). Unless it is the root (named
  // "root", exactly), it depends on `parent`, or on the root when `parent` is null.
  TrackedObj(const strptr &name, const strptr &type, TrackedObj *parent, bool active,
             Scheduler *scheduler);
  TrackedObj(const TrackedObj &) = delete;
  TrackedObj &operator=(const TrackedObj &) = delete;

  // An answer to a question about the object's other interfaces; null in the base.
  virtual void *Query(const void *what);
  // The deactivation: SetState(0) in the base.
  virtual void Deactivate();
  // A notification for derived objects; nothing in the base.
  virtual void OnNotify(intptr_t what);
  // An object this one depends on is aborting: the base sets this object's abort flag and asks it
  // to deactivate (so an abort runs down to the root; intended).
  virtual void OnDependencyAbort(TrackedObj *who);
  // Called by the check when this object's deactivation is due, before its dependants are asked
  // to deactivate; nothing in the base.
  virtual void OnDeactivateRequested();
  // Logs "Destructor for tracked object <name>" and, for each dependant still active, "Invalid
  // dependency tree: object <name> not deactivated!" (when the log has a listener), then leaves
  // the graph: the objects it depended on check again.
  virtual ~TrackedObj();
  // Makes this object depend on `x` (nothing for null or itself; once only): an inactive `x` is
  // activated first. Logs "Object <name> now depends on <x's name>" when `x` is not the root and
  // dependency logging (SetDependencyLogging) is on.
  virtual void AddDependency(TrackedObj *x);
  // Undoes AddDependency(x); `x` then checks again.
  virtual void RemoveDependency(TrackedObj *x);
  // Appends the object's status: its name, kind and state, and for a deactivating object
  // "waiting for " and the names of the active dependants it waits for.
  virtual void GetTrackedObjStatus(cstring &out);
  // A key for the object; false (not handled) in the base.
  virtual bool HandleKey(const KeyInfo &key);

  // --- Names ---

  const shstring &GetName() const { return name_; }
  const shstring &GetType() const { return type_; }
  void SetName(const strptr &name);
  void SetName(const strptr &name, const strptr &type);
  // True when the name equals `name` and, unless `type` is empty, the kind equals `type` (both
  // ignoring the case of A-Z).
  bool NameEqualQ(const strptr &name, const strptr &type) const;

  // --- State ---

  int GetState() const { return state_.load(std::memory_order_acquire); }
  int GetTargetState() const { return target_.load(std::memory_order_acquire); }
  // Asks the object to deactivate (target state 0) and checks it on its Scheduler.
  void RequestDeactivate();
  // Runs the check on the object's Scheduler as soon as possible; requests made before it runs
  // collapse into one run.
  void RequestCheckState();
  // The number of active dependants.
  int GetNumActiveChildren() const;

  Scheduler *GetTrackedObjScheduler() const;
  void SetTrackedObjScheduler(Scheduler *scheduler);
  // An auto-deactivating object deactivates when its last active dependant goes.
  void SetAutoDeactivate(bool on);
  // An auto-deleting object is deleted on the global Scheduler once it reaches state 0 (or, while
  // safeptrs hold it, when the last of them goes).
  void SetAutoDeleteFlag(bool on);
  bool GetAutoDeleteFlag() const;
  void SetAbortFlag();
  bool GetAbortFlag() const;

  // --- Finding ---

  // The active dependant / dependency of this object that NameEqualQ(name, type); null when
  // none is found, or the one found is inactive.
  TrackedObj *FindChild(const strptr &name, const strptr &type) const;
  TrackedObj *FindParent(const strptr &name, const strptr &type) const;
  // Makes `dependant` depend on the child found; false when none is found.
  bool FindAndAddDependency(const strptr &name, const strptr &type, TrackedObj *dependant);
  // Asks the child found to deactivate; false when none is found.
  bool FindAndRequestDeactivate(const strptr &name, const strptr &type);
  // Calls `visitor` on this object and, depth first, on everything that depends on it, up to
  // `max_depth` steps down (an object reached twice is visited twice).
  void TraverseTree(TrackedObjTraverse *visitor, int max_depth);
  // Copies of the dependant and dependency lists, taken under the tree lock.
  void GetDependants(PtrTAry<TrackedObj> &out) const;
  void GetDependencies(PtrTAry<TrackedObj> &out) const;

  // Memory from the global allocator; the nothrow form gives null when it runs out.
  static void *operator new(size_t size);
  static void *operator new(size_t size, const std::nothrow_t &) noexcept;
  static void operator delete(void *block) noexcept;

 protected:
  // Deactivation due: the check. See the class comment; logs "<name>::CheckState, active, ready
  // to deactivate" or "..., not ready to deactivate" (when the log has a listener).
  void CheckState();
  // Sets the target state and, when allowed, the state: refused (the state unchanged) while s is
  // 0 and a dependant is active. Reaching 0 makes the dependencies check again (with the abort
  // flag set, tells them OnDependencyAbort first), takes the object's checks out of their
  // Scheduler, and queues an auto-deleting object for deletion on the global Scheduler.
  void SetState(int s);
  // Removes this object from the dependants of everything it depends on.
  void RemoveParentDependencies();

 private:
  template <typename T>
  friend class safeptr;
  friend struct TrackedRecord;

  void AddRef() { refs_.fetch_add(1, std::memory_order_relaxed); }
  // Drops a reference; deletes the object when it was the last.
  void Release();
  // The deletion of an auto-deleting object, on the global Scheduler.
  void RunDeletion();

  struct TrackedRecord *record_;
  shstring type_;
  shstring name_;
  std::atomic<int32_t> state_;
  std::atomic<int32_t> target_;
  std::atomic<int32_t> refs_{0};
  PtrTAry<TrackedObj> dependants_;    // tree lock
  PtrTAry<TrackedObj> dependencies_;  // tree lock; the first is the parent
};

// A counted reference to a tracked object made with `new`: copies share the object, and when the
// last safeptr goes the object is deleted. Any thread may copy and drop safeptrs to one object at
// once (one safeptr object is used by one thread at a time).
template <typename T>
class safeptr {
 public:
  safeptr() = default;
  explicit safeptr(T *object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  safeptr(const safeptr &other) : safeptr(other.object_) {}
  safeptr(safeptr &&other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  template <typename U>
  safeptr(const safeptr<U> &other) : safeptr(static_cast<T *>(other.get())) {}
  safeptr &operator=(safeptr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~safeptr() {
    if (object_ != nullptr) object_->Release();
  }

  T *get() const { return object_; }
  T *operator->() const { return object_; }
  T &operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  void reset() { safeptr().swap(*this); }
  void swap(safeptr &other) noexcept { std::swap(object_, other.object_); }

 private:
  T *object_ = nullptr;
};

// The root of the tracked objects: the global Scheduler.
ZEL_API TrackedObj *GetTrackedObjRoot();
// "root" gives the root. Otherwise the root's dependant that NameEqualQ(name, type), when it is
// active; null when it is inactive, or when there is none, which logs "%Ccccccc: object <name>
// not found" (when the log has a listener).
ZEL_API TrackedObj *FindTrackedObj(const strptr &name, const strptr &type);
// Dependency logging: whether AddDependency logs the links it makes. Off at start.
ZEL_API void SetDependencyLogging(bool on);

}  // namespace zel
