// Runs of a character, indentation and module names.
#include <zel/text/print.h>

#include "os/os.h"

#include <cstring>

namespace zel {

namespace {

// Appends `count` times `c`, in pieces of at most `Chunk` from a stack buffer.
template <int Chunk>
void AddRun(cstring &out, char c, int count) {
  char run[Chunk];
  std::memset(run, c, sizeof run);
  for (; count > 0; count -= Chunk) out.AddNonOverlapping(run, count < Chunk ? count : Chunk);
}

}  // namespace

cstring &operator<<(cstring &out, const PrintNTimes &p) {
  AddRun<20>(out, p.c, p.count);
  return out;
}

cstring &operator<<(cstring &out, const Indenter &p) {
  AddRun<256>(out, ' ', 2 * p.level);
  return out;
}

cstring &operator<<(cstring &out, const PrintDllName &p) {
  char path[4096];
  const int length = os::ModuleFileName(p.module, path, sizeof path);
  int name = length;
  while (name > 0 && path[name - 1] != '\\' && path[name - 1] != '/') --name;
  return out.AddNonOverlapping(path + name, length - name);
}

}  // namespace zel
