// The user's decimal and thousands separators, read once.
#include <zel/text/format.h>

#include "os/os.h"

namespace zel {

namespace {

struct Separators {
  cstring decimal;
  cstring thousands;
};

// Both are filled on the first call of either; the static's guard is the "loaded" flag.
const Separators &Loaded() {
  static const Separators separators = [] {
    Separators s;
    os::LocaleSeparators(s.decimal, s.thousands);
    return s;
  }();
  return separators;
}

}  // namespace

const char *GetDecimalSeparator() { return Loaded().decimal.text(); }

const char *GetThousandsSeparator() { return Loaded().thousands.text(); }

}  // namespace zel
