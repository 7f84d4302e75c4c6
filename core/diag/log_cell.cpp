// Numbered marker lines that let log clients group output.
#include <zel/diag/log.h>

namespace zel {

namespace {

std::atomic<int> g_next_cell{1};
std::atomic<int> g_next_fixed_cell{1};

void LogMarker(const char *marker, int id) {
  if (LogCategory::n_global_clients < 1) return;
  cstring line;
  line << marker << id << ": \r\n";
  PrintLog(line);
}

}  // namespace

LogCell::LogCell() : id_(g_next_cell.fetch_add(1)) { LogMarker("%I", id_); }

LogCell::LogCell(const LogCell &other) : id_(other.id_) { LogMarker("%I", id_); }

FixedLogCell::FixedLogCell() : id_(g_next_fixed_cell.fetch_add(1)) {}

FixedLogCell::~FixedLogCell() { LogMarker("%f", id_); }

}  // namespace zel
