// The allocator's log lines. Logging is not there yet: the line is dropped.
#include "mem/report.h"

namespace zel {

void ReportNoDedicatedArena(uint32_t) {}

}  // namespace zel
