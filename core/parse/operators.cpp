// The >> operators of ParserBase: numbers, expected literals and lists of strings.
#include <zel/parse/parser_base.h>

namespace zel {

ParserBase &operator>>(ParserBase &p, int &value) {
  p.SkipWs();
  value = p.ParseInteger();
  return p;
}

ParserBase &operator>>(ParserBase &p, unsigned &value) {
  p.SkipWs();
  value = p.ParseUnsignedInteger();
  return p;
}

ParserBase &operator>>(ParserBase &p, double &value) {
  p.SkipWs();
  value = p.ParseNumber().ToDouble();
  return p;
}

ParserBase &operator>>(ParserBase &p, float &value) {
  double wide;
  p >> wide;
  value = static_cast<float>(wide);
  return p;
}

ParserBase &operator>>(ParserBase &p, const strptr &literal) {
  p.SkipWs();
  if (!p.SkipStr(literal)) p.ErrorExpected(literal);
  return p;
}

ParserBase &operator>>(ParserBase &p, ParseStringArray &strings) {
  strings.Flush();
  p >> "{";
  for (;;) {
    p.SkipWs();
    if (p.SkipStr("}")) return p;
    p.ParseString(strings.Add());
    p.SkipWs();
    p.SkipStr(",");
  }
}

}  // namespace zel
