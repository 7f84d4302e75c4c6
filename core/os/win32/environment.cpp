// The process's environment, through the C runtime, which keeps the system's copy in step.
#include "os/os.h"

#include <stdlib.h>

namespace zel::os {

bool SetEnvironment(const char *name, const char *value) {
  // The runtime removes a variable set to "".
  return _putenv_s(name, value != nullptr ? value : "") == 0;
}

}  // namespace zel::os
