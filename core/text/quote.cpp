// Quoting: escaped characters, quoted strings in their short and long forms, and characters.
#include <zel/text/charset.h>
#include <zel/text/format.h>
#include <zel/text/print.h>

#include <cstdint>

namespace zel {

namespace {

// A backslash and three octal digits of the byte sign-extended to 32 bits: bytes from 0x80 get a
// first digit of 6 or 7 (0xE9 is \751; intended).
cstring &AddOctalEscape(cstring &out, char c) {
  const uint32_t bits = static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(c)));
  const char escape[4] = {'\\', static_cast<char>('0' + ((bits >> 6) & 7)),
                          static_cast<char>('0' + ((bits >> 3) & 7)),
                          static_cast<char>('0' + (bits & 7))};
  return out.AddNonOverlapping(escape, 4);
}

// The smallest N for which a double quote followed by N "]" does not occur in `text`: one more
// than the longest run of "]" after any double quote, 0 without a double quote.
int ClosingBrackets(const strptr &text) {
  int needed = 0;
  for (int i = 0; i < text.length(); ++i) {
    if (text[i] != '"') continue;
    int run = 0;
    while (i + 1 + run < text.length() && text[i + 1 + run] == ']') ++run;
    if (run + 1 > needed) needed = run + 1;
  }
  return needed;
}

// True for the characters WriteQuotedChar writes as they are.
constexpr bool StandsForItself(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x20 && byte <= 0x80 && c != '"' && c != '\\';
}

bool NeedsLongForm(const strptr &text) {
  for (char c : text)
    if (NewLineCharQ(c) || c == '"') return true;
  return false;
}

}  // namespace

cstring &WriteQuotedChar(cstring &out, char c) {
  if (StandsForItself(c)) return out << c;
  const auto byte = static_cast<unsigned char>(c);
  // Control characters, LF, TAB and CR among them, take the octal form rather than a short escape
  // such as \n (intended), and 0x80 is written as itself (intended).
  if (byte < 0x20 || byte > 0x80) return AddOctalEscape(out, c);
  return out << '\\' << c;
}

cstring &WriteQuotedCharXML(cstring &out, char c) {
  switch (c) {
    case '\t': return out << "\\t";
    case '\n': return out << "\\n";
    case '\r': return out << "\\r";
    case '"': return out << "&quot;";
    case '&': return out << "&amp;";
    case '\'': return out << "&apos;";
    case '<': return out << "&lt;";
    case '>': return out << "&gt;";
    default: break;
  }
  // Printable or white space in the "C" locale, whatever the process's locale is.
  const bool printable = c >= 0x20 && c < 0x7F;
  const bool white = c == ' ' || (c >= '\t' && c <= '\r');
  return printable || white ? out << c : AddOctalEscape(out, c);
}

cstring &operator<<(cstring &out, const PrintChar &p) {
  if (p.c == -1) return out << "EOF";
  out << '\'';
  if (p.c == '\'')
    out << "\\'";
  else
    WriteQuotedChar(out, static_cast<char>(p.c));
  return out << '\'';
}

cstring &operator<<(cstring &out, const PrintQuotedString &p) {
  const strptr text = p.text;
  if (p.long_form && NeedsLongForm(text)) {
    const int brackets = ClosingBrackets(text);
    out << '"' << PrintNTimes('[', brackets) << "\r\n" << text;
    return out << '"' << PrintNTimes(']', brackets);
  }
  out << '"';
  // Characters that stand for themselves are written a run at a time.
  int mark = 100, run = 0;
  for (int i = 0; i < text.length(); ++i) {
    const char c = text[i];
    const bool line_break =
        (c == ',' && i > mark) || (WhiteCharQ(c) && i > mark + 30) || i > mark + 60;
    if (StandsForItself(c) && !line_break) continue;
    out.AddNonOverlapping(text.text() + run, i - run);
    run = i + 1;
    WriteQuotedChar(out, c);
    if (line_break) {
      out << "\\\r\n";
      mark = i + 100;
    }
    if (NewLineCharQ(c)) mark = i + 100;
  }
  out.AddNonOverlapping(text.text() + run, text.length() - run);
  return out << '"';
}

}  // namespace zel
