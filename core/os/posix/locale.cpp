// The number separators of the current numeric locale.
#include <zel/text/cstring.h>

#include "os/os.h"

#include <langinfo.h>

namespace zel::os {

void LocaleSeparators(cstring &decimal, cstring &thousands) {
  decimal = nl_langinfo(RADIXCHAR);
  thousands = nl_langinfo(THOUSEP);
}

}  // namespace zel::os
