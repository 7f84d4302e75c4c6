// Hardware faults as exceptions: MinGW cannot throw a C++ exception from a structured exception.
#include "os/os.h"

namespace zel::os {

bool EnableFaultTranslation(FaultThrower) { return false; }

}  // namespace zel::os
