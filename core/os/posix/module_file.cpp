// The path of a loaded module: the loader's name for it, from a dlopen handle or a base address.
#include "os/os.h"

#include <dlfcn.h>
#include <link.h>

#include <cstring>

namespace zel::os {

namespace {

// The loader's record of `module`: ThisModule gives a base address, which dladdr1 resolves to the
// object mapped there; anything else is taken as a dlopen handle.
link_map *LinkMapOf(void *module) {
  Dl_info info;
  link_map *map = nullptr;
  if (dladdr1(module, &info, reinterpret_cast<void **>(&map), RTLD_DL_LINKMAP) != 0 &&
      info.dli_fbase == module)
    return map;
  return dlinfo(module, RTLD_DI_LINKMAP, &map) == 0 ? map : nullptr;
}

}  // namespace

int ModuleFileName(void *module, char *buf, int cap) {
  const char *name = "";
  if (module != nullptr) {
    const link_map *map = LinkMapOf(module);
    if (map == nullptr) return 0;
    name = map->l_name;
  }
  // The main program's record has an empty name.
  if (name[0] == 0) {
    int length = ExecutablePath(buf, cap);
    return length < cap ? length : 0;
  }
  int length = static_cast<int>(std::strlen(name));
  if (length >= cap) return 0;
  std::memcpy(buf, name, static_cast<size_t>(length) + 1);
  return length;
}

}  // namespace zel::os
