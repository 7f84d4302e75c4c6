// Tidying the ends and line breaks of text.
#include <zel/text/charset.h>
#include <zel/text/cstring.h>

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
  int run = 0;  // start of the characters copied as they are
  for (int i = 0; i < text.length(); ++i) {
    char c = text[i];
    if (c != '\r' && c != '\n') continue;
    out.AddNonOverlapping(text.text() + run, i - run);
    out.AddNonOverlapping("\r\n", 2);
    if (c == '\r' && i + 1 < text.length() && text[i + 1] == '\n') ++i;  // CR LF is one line end
    run = i + 1;
  }
  out.AddNonOverlapping(text.text() + run, text.length() - run);
  out.Compact();
  return temp_cstring(static_cast<cstring &&>(out));
}

}  // namespace zel
