// tok: splitting text in place.
#include <zel/text/string_iter.h>
#include <zel/text/tok.h>

namespace zel::tok {
namespace {

template <typename T>
int AddTokens(strptr text, const CharSet &seps, TAry<T> &out) {
  StringIter it(text);
  int added = 0;
  for (strptr word; !(word = it.GetWord(seps, false)).empty(); ++added) out.Add(word);
  return added;
}

// Calls `take(field, quoted)` for every field of a line of comma-separated values; returns how
// many there were.
template <typename Take>
int ForEachCSVField(const strptr &line, Take &&take) {
  const int length = line.length();
  if (length == 0) return 0;
  int fields = 0;
  for (int p = 0;; ++p) {  // p: the start of a field
    const bool quoted = p < length && line[p] == '"';
    int end = p;  // the end of the field's text
    if (quoted) {
      end = line.FindFrom('"', p + 1);
      while (end >= 0 && end + 1 < length && line[end + 1] == '"')
        end = line.FindFrom('"', end + 2);
      if (end < 0) end = length;
    }
    int comma = line.FindFrom(',', end);
    if (comma < 0) comma = length;
    if (quoted)
      take(line.Mid(p + 1, end - p - 1), true);
    else
      take(line.Mid(p, comma - p), false);
    ++fields;
    p = comma;
    if (p >= length) return fields;
  }
}

}  // namespace

strptr GetToken(strptr &text, const strptr &sep) {
  strptr before, after;
  SplitString(text, sep, before, after);
  text = after;
  return before;
}

strptr GetToken(strptr &text, const CharSet &seps, bool one) {
  StringIter it(text);
  const strptr token = it.GetToken(seps, one);
  text = it.Rest();
  return token;
}

int GetTokens(strptr text, const CharSet &seps, TAry<strptr> &out) {
  return AddTokens(text, seps, out);
}

int GetTokens(strptr text, const CharSet &seps, TAry<cstring> &out) {
  return AddTokens(text, seps, out);
}

bool SplitString(const strptr &text, const strptr &sep, strptr &left, strptr &right) {
  const strptr whole = text;  // `text` may be `left` or `right`
  const int hit = whole.FindFrom(sep);
  left = hit < 0 ? whole : whole.Left(hit);
  right = hit < 0 ? whole.Mid(whole.length()) : whole.Mid(hit + sep.length());
  return hit >= 0;
}

strptr RemovePrefix(strptr &text, const strptr &sep) {
  strptr before, after;
  if (!SplitString(text, sep, before, after)) return strptr();
  text = after;
  return before;
}

strptr RemoveSuffix(strptr &text, const strptr &sep) {
  strptr before, after;
  if (!SplitString(text, sep, before, after)) return strptr();
  text = before;
  return after;
}

void TabsToSpaces(cstring &s, int tab_width, int *column) {
  const int width = tab_width < 1 ? 1 : tab_width;
  int col = column != nullptr && *column > 0 ? *column : 0;
  const strptr text = s;
  cstring out;  // written only once a TAB is met
  int copied = 0;
  for (int i = 0; i < text.length(); ++i) {
    const char c = text[i];
    if (c == '\n' || c == '\r') {
      col = 0;
    } else if (c != '\t') {
      ++col;
    } else {
      if (copied == 0) out.Reserve(text.length() + width);
      out.AddNonOverlapping(text.text() + copied, i - copied);
      const int blanks = width - col % width;
      out.AddN(blanks, ' ');
      col += blanks;
      copied = i + 1;
    }
  }
  if (copied > 0) {
    out.AddNonOverlapping(text.text() + copied, text.length() - copied);
    s.Swap(out);
  }
  if (column != nullptr) *column = col;
}

int GetCSVTokens(const strptr &line, TAry<strptr> &out) {
  return ForEachCSVField(line, [&](const strptr &field, bool) { out.Add(field); });
}

int GetCSVTokens(const strptr &line, TAry<cstring> &out) {
  return ForEachCSVField(line, [&](const strptr &field, bool quoted) {
    cstring &value = out.Add(field);
    if (quoted) value.Replace("\"\"", "\"");
  });
}

}  // namespace zel::tok
