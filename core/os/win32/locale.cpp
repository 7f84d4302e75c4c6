// The number separators of the user's locale.
#include <zel/text/cstring.h>

#include "os/os.h"
#include "os/win32/win.h"

namespace zel::os {

namespace {

void ReadLocaleText(LCTYPE item, cstring &out) {
  out.Flush();
  int size = GetLocaleInfoA(LOCALE_USER_DEFAULT, item, nullptr, 0);
  if (size <= 0) return;
  // The size comes from the user's locale and the text from the system's (intended).
  int read = GetLocaleInfoA(LOCALE_SYSTEM_DEFAULT, item, out.GetBuffer(size), size);
  out.ReleaseBuffer(read > 0 ? read - 1 : 0);
}

}  // namespace

void LocaleSeparators(cstring &decimal, cstring &thousands) {
  ReadLocaleText(LOCALE_SDECIMAL, decimal);
  ReadLocaleText(LOCALE_STHOUSAND, thousands);
}

}  // namespace zel::os
