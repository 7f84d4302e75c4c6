// The statistics report and the counter registry's view of the allocator. Neither the string
// type nor the counter registry exists yet: both do nothing for now.
#include <zel/mem/allocator.h>

namespace zel {

void MemoryAllocator::PrintStats(cstring &) {}

void EnableMemCounters() {}

}  // namespace zel
