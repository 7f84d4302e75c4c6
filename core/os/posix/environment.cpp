// The process's environment.
#include "os/os.h"

#include <stdlib.h>

namespace zel::os {

bool SetEnvironment(const char *name, const char *value) {
  // An empty value removes the variable, as the Windows runtime does.
  return (value != nullptr && *value != 0 ? setenv(name, value, 1) : unsetenv(name)) == 0;
}

}  // namespace zel::os
