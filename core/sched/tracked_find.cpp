// TrackedObj: names, finding objects in the graph, walking it, and status texts.
#include <zel/diag/log.h>
#include <zel/sched/scheduler.h>
#include <zel/text/thread_local_string.h>

#include "sched/tracked_parts.h"

namespace zel {

namespace {

// The first of `objects` that NameEqualQ(name, type), or null.
TrackedObj *FindAmong(const PtrTAry<TrackedObj> &objects, const strptr &name, const strptr &type) {
  for (TrackedObj *o : objects)
    if (o->NameEqualQ(name, type)) return o;
  return nullptr;
}

TrackedObj *ActiveOrNull(TrackedObj *o) {
  return o != nullptr && o->GetState() == TrackedObj::kActive ? o : nullptr;
}

}  // namespace

void TrackedObj::SetName(const strptr &name) { name_ = shstring(name); }

void TrackedObj::SetName(const strptr &name, const strptr &type) {
  name_ = shstring(name);
  type_ = shstring(type);
}

bool TrackedObj::NameEqualQ(const strptr &name, const strptr &type) const {
  return name_.view().EqualNoCase(name) && (type.empty() || type_.view().EqualNoCase(type));
}

TrackedObj *TrackedObj::FindChild(const strptr &name, const strptr &type) const {
  CritSectLock hold(TreeLock());
  return ActiveOrNull(FindAmong(dependants_, name, type));
}

TrackedObj *TrackedObj::FindParent(const strptr &name, const strptr &type) const {
  CritSectLock hold(TreeLock());
  return ActiveOrNull(FindAmong(dependencies_, name, type));
}

bool TrackedObj::FindAndAddDependency(const strptr &name, const strptr &type,
                                      TrackedObj *dependant) {
  TrackedObj *found = FindChild(name, type);
  if (found == nullptr) return false;
  dependant->AddDependency(found);
  return true;
}

bool TrackedObj::FindAndRequestDeactivate(const strptr &name, const strptr &type) {
  TrackedObj *found = FindChild(name, type);
  if (found == nullptr) return false;
  found->RequestDeactivate();
  return true;
}

TrackedObj *FindTrackedObj(const strptr &name, const strptr &type) {
  TrackedObj *root = GetTrackedObjRoot();
  if (name.Equal("root") || root == nullptr) return root;
  TrackedObj *found;
  {
    PtrTAry<TrackedObj> dependants;
    root->GetDependants(dependants);
    found = FindAmong(dependants, name, type);
  }
  if (found == nullptr && LogCategory::n_global_clients >= 1) {
    ThreadLocalString line;
    *line << "%Ccccccc: object " << name << " not found\r\n";
    PrintLog(*line);
  }
  return ActiveOrNull(found);
}

void TrackedObj::TraverseTree(TrackedObjTraverse *visitor, int max_depth) {
  // The walk keeps its own copies of the lists: visitors may change the graph.
  struct Walk {
    static void From(TrackedObj *o, TrackedObjTraverse *visitor, int depth, int max_depth) {
      if (!visitor->Visit(o, depth) || depth >= max_depth) return;
      PtrTAry<TrackedObj> dependants;
      o->GetDependants(dependants);
      for (TrackedObj *d : dependants) From(d, visitor, depth + 1, max_depth);
    }
  };
  Walk::From(this, visitor, 0, max_depth);
}

void TrackedObj::GetTrackedObjStatus(cstring &out) {
  CritSectLock hold(TreeLock());
  out << name_ << " (" << type_ << "): ";
  if (GetState() == kInactive) {
    out << "inactive";
  } else if (GetTargetState() == kActive) {
    out << "active";
  } else {
    out << "deactivating, waiting for ";
    int waiting = 0;
    for (const TrackedObj *d : dependants_) {
      if (d->GetState() != kActive) continue;
      out << (waiting++ > 0 ? ", " : "") << d->name_;
    }
    if (waiting == 0) out << "its check";
  }
}

}  // namespace zel
