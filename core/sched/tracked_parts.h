// What the tracked objects' source files share.
#pragma once

#include <zel/thread/critsect.h>

namespace zel {

// The process-wide tree lock: it guards every tracked object's dependency lists and states, and
// is taken before any Scheduler's lock.
CritSect &TreeLock();

}  // namespace zel
