// Hardware faults thrown as ErrorSE. This file is compiled with -fnon-call-exceptions, so that
// the faulting instructions below may throw.
#include <zel/diag/error.h>

#include "support/test_thread.h"

namespace zel {
namespace {

// Kept out of the optimiser's and the sanitizers' sight: the faults must really happen.
volatile int g_zero = 0;
volatile int g_quotient = 0;
int *volatile g_null = nullptr;

#define ZEL_NO_SANITIZE __attribute__((noinline, no_sanitize("address", "undefined")))

ZEL_NO_SANITIZE void Divide(int a) { g_quotient = a / g_zero; }
ZEL_NO_SANITIZE void WriteThroughNull() { *g_null = 1; }

uint32_t CodeOfFault(void (*fault)()) {
  try {
    fault();
  } catch (const ErrorSE &e) {
    return e.Code();
  }
  return 0;
}

TEST(Faults, BecomeErrorSEOnThreadsWithTheTranslator) {
#if defined(__clang__)
  GTEST_SKIP() << "clang cannot throw from a faulting instruction (no -fnon-call-exceptions)";
#endif
  if (!InstallSETranslator()) GTEST_SKIP() << "no structured-exception translation here";
  EXPECT_EQ(CodeOfFault([] { Divide(7); }), 0xC0000094u);
  EXPECT_EQ(CodeOfFault(WriteThroughNull), 0xC0000005u);
  // Again: the signal is not left blocked by the first.
  EXPECT_EQ(CodeOfFault(WriteThroughNull), 0xC0000005u);

  uint32_t on_thread = 0;
  ASSERT_TRUE(test::RunOnThread([&] {
    InstallSETranslator();
    on_thread = CodeOfFault([] { Divide(1); });
  }));
  EXPECT_EQ(on_thread, 0xC0000094u);
}

}  // namespace
}  // namespace zel
