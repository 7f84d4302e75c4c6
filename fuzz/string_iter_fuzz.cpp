// Arbitrary bytes read by StringIter and split by the tok functions. The first byte says how many
// of the next bytes (1 to 8) pick readers; the rest is the text. The readers run in turn until
// the text ends or a whole turn moves nothing. Every view handed back must lie inside the text,
// the position must stay within it, and a decimal number read must agree with strtod.
#include <zel/text/cstring.h>
#include <zel/text/string_iter.h>
#include <zel/text/tok.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using zel::CharSet;
using zel::StringIter;
using zel::strptr;

void Check(bool ok) {
  if (!ok) std::abort();
}

// A null view (an absent result) or one inside `text`.
void CheckInside(const strptr &view, const strptr &text) {
  Check(view.length() >= 0);
  if (view.text() != nullptr) Check(view.text() >= text.text() && view.end() <= text.end());
}

const CharSet &Separators(uint8_t op) {
  static const CharSet comma = CharSet::Literal(",");
  const CharSet *sets[] = {&zel::WhiteCharQ, &zel::WordSeparatorQ, &comma, &zel::DigitCharQ};
  return *sets[(op >> 5) & 3];
}

// The consumed text as strtod reads it, when that is a normal number.
void CheckAgainstStrtod(const strptr &consumed, double value) {
  const std::string copy(consumed.text(), static_cast<size_t>(consumed.length()));
  char *end = nullptr;
  const double expected = std::strtod(copy.c_str(), &end);
  if (end != copy.c_str() + copy.size() || !std::isnormal(expected)) return;
  Check(std::fabs(value - expected) <= 1e-13 * std::fabs(expected));
}

void RunReader(StringIter &it, uint8_t op, const strptr &text) {
  const bool flag = (op & 0x80) != 0;
  const CharSet &seps = Separators(op);
  int count = 0, i = 0;
  long long i64 = 0;
  double d = 0;
  const int start = it.position();
  switch (op % 24) {
    case 0: it.SkipNewLine(); break;
    case 1: it.SkipNChars(it.Peek(), 1 + (op >> 5)); break;
    case 2: it.SkipMultiLineHeader(count); break;
    case 3: CheckInside(it.GetLine(), text); break;
    case 4: CheckInside(it.GetWindowsLine(), text); break;
    case 5: CheckInside(it.GetWord(), text); break;
    case 6: CheckInside(it.GetWord(seps, flag), text); break;
    case 7: CheckInside(it.GetUpTo(seps), text); break;
    case 8: CheckInside(it.GetToken(seps, flag), text); break;
    case 9: CheckInside(it.GetToken(","), text); break;
    case 10: CheckInside(it.GetTokenNoEOF("\r\n", flag), text); break;
    case 11: Check(!it.MaybeParseInteger(i) || it.position() > start); break;
    case 12: it.MaybeParseInteger(i, op >> 4); break;
    case 13: it.ParseInteger64(0); break;
    case 14: it.MaybeParseInteger64(i64); break;
    case 15: it.ParseIntegerWithCommas(0); break;
    case 16: Check(it.ParseDigits() >= 0); break;
    case 17: Check(it.ParseFraction() >= 0); break;
    case 18: Check(it.ParseDigitsWithCommas() >= 0); break;
    case 19: Check(!std::isnan(it.ParseDoubleWithCommas(0))); break;
    case 20:
      if (it.MaybeParseDouble(d)) {
        Check(!std::isnan(d));
        CheckAgainstStrtod(text.Mid(start, it.position() - start), d);
      }
      break;
    case 21: it.ParseHexChar(0); break;
    case 22: it.ParseHexInteger(0); break;
    default:
      if (!it.AtEnd()) it.SkipNChars(1);
  }
  Check(it.position() >= 0 && it.position() <= it.length());
}

void RunSplitters(const strptr &text) {
  const CharSet comma = CharSet::Literal(",");
  zel::TAry<strptr> views;
  zel::TAry<zel::cstring> copies;
  zel::tok::GetTokens(text, zel::WordSeparatorQ, views);
  zel::tok::GetCSVTokens(text, views);
  zel::tok::GetCSVTokens(text, copies);
  for (const strptr &v : views) CheckInside(v, text);

  strptr rest = text;
  for (int n = 0; !rest.empty(); ++n) {
    Check(n <= text.length());
    CheckInside(n % 2 ? zel::tok::GetToken(rest, ";") : zel::tok::GetToken(rest, comma, n % 4 == 0),
                text);
  }
  strptr left, right, prefix = text, suffix = text;
  zel::tok::SplitString(text, "=", left, right);
  CheckInside(left, text);
  CheckInside(right, text);
  CheckInside(zel::tok::RemovePrefix(prefix, "/"), text);
  CheckInside(zel::tok::RemoveSuffix(suffix, "/"), text);

  zel::cstring tabs(text);
  int column = 3;
  zel::tok::TabsToSpaces(tabs, text.length() % 9, &column);
  Check(tabs.view().FindFrom('\t') < 0 && column >= 0);

  const zel::cstring fixed = zel::FixNewlines(text);
  for (int i = 0; i < fixed.length(); ++i) {
    if (fixed[i] == '\r') Check(i + 1 < fixed.length() && fixed[i + 1] == '\n');
    if (fixed[i] == '\n') Check(i > 0 && fixed[i - 1] == '\r');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size == 0) return 0;
  const size_t readers = data[0] % 8 + 1;
  if (size < 1 + readers) return 0;
  const uint8_t *ops = data + 1;
  const strptr text(reinterpret_cast<const char *>(ops + readers),
                    static_cast<int>(size - 1 - readers));
  StringIter it(text);
  for (int turn = 0; turn <= text.length() && !it.AtEnd(); ++turn) {
    const int before = it.position();
    for (size_t r = 0; r < readers; ++r) RunReader(it, ops[r], text);
    if (it.position() == before) break;
  }
  RunSplitters(text);
  return 0;
}
