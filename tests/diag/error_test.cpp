// Exceptions, the error prefix and the texts of error codes.
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/text/charset.h>

#include "os/os.h"
#include "support/log_capture.h"
#include "support/strings.h"

#include <string>

namespace zel {
namespace {

using test::Str;

std::string Printed(const ExceptionBase &e) {
  cstring out;
  e.Print(out);
  return Str(out);
}

TEST(ErrorX, MessageGetsThePrefixOnlyWhenAskedForAndNestedPrefixesAccumulateAndUnwind) {
  SetErrorPrefix("While loading: ");
  EXPECT_EQ(Str(ErrorX("file missing").Message()), "While loading: file missing");
  EXPECT_EQ(Str(ErrorX("file missing", false).Message()), "file missing");
  SetErrorPrefix("");
  EXPECT_EQ(Str(ErrorX("file missing").Message()), "file missing");
  {
    TempErrorPrefix outer("Loading a: ");
    {
      TempErrorPrefix inner("reading b: ");
      EXPECT_EQ(Str(GetErrorPrefix()), "Loading a: reading b: ");
      EXPECT_EQ(test::FailureOf([] { ThrowErrorX("disk full"); }),
                "Loading a: reading b: disk full");
    }
    EXPECT_EQ(Str(GetErrorPrefix()), "Loading a: ");
  }
  EXPECT_EQ(Str(GetErrorPrefix()), "");

  EXPECT_EQ(Printed(ErrorX()), "Unknown Error");
  cstring out;
  out << ErrorX("x", false);
  EXPECT_EQ(Str(out), "x");
}

TEST(ErrorX, IsLoggedAsAWarningWhenTheExceptionsCategoryIsOn) {
  test::LogCapture log;
  ErrorX("quiet");
  EnableLogCategory("EXCEPTIONS");
  ErrorX("loud");
  ErrorX("");  // an empty message is not logged
  DisableLogCategory("exceptions");
  ErrorX("quiet again");
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"%W: loud\r\n"});
}

TEST(ErrorSE, PrintsItsCodeAndDescription) {
  struct Case {
    uint32_t code;
    const char *printed;
  } cases[] = {
      {0xC0000005, "0xc0000005 : Memory access violation."},
      {0xC0000094, "0xc0000094 : Divide by zero. "},
      {0x80000004, "0x80000004 : Trace trap."},
      {0x12345, "0x12345 : Unknown stuctured exception code"},  // misspelt (intended)
  };
  for (const Case &c : cases) EXPECT_EQ(Printed(ErrorSE(c.code)), c.printed);
}

TEST(ErrorTexts, RegisteredCodesCountDownAndTheOldestHalfGoesPast10000) {
  // The registry is process-wide; this is the only test that adds to it.
  EXPECT_EQ(AddComErr("first"), static_cast<int>(0xFFFF0000));
  EXPECT_EQ(AddComErr("second"), static_cast<int>(0xFFFEFFFF));
  EXPECT_EQ(Str(LookupComErr(static_cast<int>(0xFFFF0000))), "first");
  EXPECT_EQ(Str(errstr(static_cast<int>(0xFFFEFFFF))), "second");
  EXPECT_EQ(Str(LookupComErr(12345)), "");

  for (int i = 2; i <= 10000; ++i) AddComErr("more");
  // 10,001 texts: the next one discards the 5,000 oldest and reuses the last code discarded.
  EXPECT_EQ(AddComErr("newest"), static_cast<int>(0xFFFF0000) - 4999);
  EXPECT_EQ(Str(LookupComErr(static_cast<int>(0xFFFF0000))), "");
  EXPECT_EQ(Str(LookupComErr(static_cast<int>(0xFFFF0000) - 4999)), "newest");
  EXPECT_EQ(Str(LookupComErr(static_cast<int>(0xFFFF0000) - 5000)), "more");
  EXPECT_EQ(AddComErr("reused"), static_cast<int>(0xFFFF0000) - 4998);
}

TEST(ErrorTexts, SystemTextsKeepTheLastErrorAndApiBoolCheckLogsOnlyAFailureWithAnError) {
  os::SetLastError(33);
  cstring text = errstr(2);
  EXPECT_EQ(os::LastError(), 33u);
  EXPECT_FALSE(text.empty());
  EXPECT_FALSE(WhiteCharQ(text[text.length() - 1]));
#if !defined(_WIN32)
  EXPECT_EQ(Str(text), "No such file or directory");
#endif

  test::LogCapture log;
  os::SetLastError(2);
  ApiBoolCheck(1, "CreateThing");
  os::SetLastError(0);
  ApiBoolCheck(0, "CreateThing");
  os::SetLastError(2);
  ApiBoolCheck(0, "OpenThing");
  // A code the system has no text for reads as "", on every platform.
  EXPECT_EQ(Str(errstr(99999)), "");
  os::SetLastError(99999);
  ApiBoolCheck(0, "OddThing");
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{"OpenThing: Error: " + Str(text) + "\r\n",
                                                   "OddThing: Error: \r\n"}));
}

}  // namespace
}  // namespace zel
