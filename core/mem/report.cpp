// The allocator's log lines.
#include "mem/report.h"

#include <zel/diag/log.h>
#include <zel/text/thread_local_string.h>

namespace zel {

void ReportNoDedicatedArena(uint32_t thread_id) {
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  *line << "Thread " << thread_id << " can't use a dedicated allocator (all gone)\r\n";
  PrintLog(*line);
}

}  // namespace zel
