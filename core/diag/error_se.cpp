// ErrorSE: hardware faults as exceptions, and their descriptions.
#include <zel/diag/error.h>
#include <zel/text/format.h>

#include "os/os.h"

namespace zel {

namespace {

struct Description {
  uint32_t code;
  const char *text;
};

// The texts, trailing blanks included, are the library's own wording.
constexpr Description kDescriptions[] = {
    {0x80000002, "Misaligned access. "},
    {0x80000003, "Breakpoint. "},
    {0x80000004, "Trace trap."},
    {0xC0000005, "Memory access violation."},
    {0xC0000006, "Paging error. "},
    {0xC000001D, "Invalid instruction. "},
    {0xC0000025, "Cannot continue execution -- the exception is fatal. "},
    {0xC0000026, "Invalid exception handler. "},
    {0xC000008C, "Array element out of bounds."},
    {0xC000008D,
     "One of the operands in a floating-point operation is denormal. A denormal value is one that "
     "is too small to represent as a standard floating-point value. "},
    {0xC000008E,
     "The thread tried to divide a floating-point value by a floating-point divisor of zero. "},
    {0xC000008F,
     "The result of a floating-point operation cannot be represented exactly as a decimal "
     "fraction. "},
    {0xC0000090,
     "This exception represents any floating-point exception not included in this list. "},
    {0xC0000091,
     "The exponent of a floating-point operation is greater than the magnitude allowed by the "
     "corresponding type. "},
    {0xC0000092,
     "The stack overflowed or underflowed as the result of a floating-point operation. "},
    {0xC0000093,
     "The exponent of a floating-point operation is less than the magnitude allowed by the "
     "corresponding type. "},
    {0xC0000094, "Divide by zero. "},
    {0xC0000095, "Overflow. "},
    {0xC0000096, "Privileged instruction. "},
    {0xC00000FD, "Out of stack space. "},
};

// The misspelling is part of the text: intended.
constexpr const char *kUnknown = "Unknown stuctured exception code";

void ThrowErrorSE(uint32_t code) { throw ErrorSE(code); }

// The loading thread translates faults from the start.
[[maybe_unused]] const bool g_loading_thread_translates = InstallSETranslator();

}  // namespace

const char *ErrorSE::GetDescription() const {
  for (const Description &d : kDescriptions)
    if (d.code == code_) return d.text;
  return kUnknown;
}

void ErrorSE::Print(cstring &out) const {
  FmtHex(out, code_, 0, true, false);
  out << " : " << GetDescription();
}

bool InstallSETranslator() { return os::EnableFaultTranslation(ThrowErrorSE); }

}  // namespace zel
