// What the allocator tells the log.
#pragma once

#include <cstdint>

namespace zel {

// Reports that thread `thread_id` asked for a dedicated arena when all were taken:
// "Thread <id> can't use a dedicated allocator (all gone)".
void ReportNoDedicatedArena(uint32_t thread_id);

}  // namespace zel
