// Tidying the ends and line breaks of text.
#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/string_iter.h>

namespace zel {

cstring &MaybeEOL(cstring &s) {
  if (!s.empty() && !NewLineCharQ(s[s.length() - 1])) s.AddNonOverlapping("\r\n", 2);
  return s;
}

cstring &MaybeSpace(cstring &s) {
  if (!s.empty() && !WhiteCharQ(s[s.length() - 1])) s.AddNonOverlapping(" ", 1);
  return s;
}

temp_cstring FixNewlines(const strptr &text) {
  cstring out;
  if (text.empty()) return temp_cstring();  // an empty result borrows the empty text
  out.Reserve(text.length());
  StringIter it(text);
  int run = 0;  // start of the characters copied as they are
  while (!it.AtEnd()) {
    const int at = it.position();
    if (!it.SkipNewLine()) {
      it.SkipNChars(1);
      continue;
    }
    out.AddNonOverlapping(text.text() + run, at - run);
    out.AddNonOverlapping("\r\n", 2);
    run = it.position();
  }
  out.AddNonOverlapping(text.text() + run, text.length() - run);
  out.Compact();
  return temp_cstring(static_cast<cstring &&>(out));
}

}  // namespace zel
