// Giving a thread a dedicated arena.
#include <zel/mem/allocator.h>

#include "mem/allocator_state.h"
#include "mem/report.h"
#include "mem/thread_records.h"

namespace zel {

bool MemoryAllocator::Dedicate() {
  mem::ThreadRecord *r = mem::CurrentRecord();
  if (r == nullptr && (r = mem::NewThreadRecord()) == nullptr) return false;
  if (r->dedicated) return true;
  mem::AllocatorState &state = mem::State();
  mem::Arena *mine = nullptr;
  // An arena may still name this thread id: left by an earlier thread of the same id that ended
  // without giving it up. It is taken over as it is.
  for (mem::Arena &a : state.dedicated)
    if (a.owner() == r->thread_id) mine = &a;
  for (mem::Arena &a : state.dedicated)
    if (mine == nullptr && a.Claim(r->thread_id)) mine = &a;
  if (mine == nullptr) {
    ReportNoDedicatedArena(r->thread_id);
    return false;
  }
  r->arena = mine;
  r->dedicated = true;
  return true;
}

}  // namespace zel
