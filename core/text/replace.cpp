// Replacing text, optionally shaped after the letter case of what it replaces.
#include <zel/text/charset.h>
#include <zel/text/cstring.h>

namespace zel {

temp_cstring cstring::Replaced(const strptr &what, const strptr &with, bool case_sensitive,
                               bool preserve_case, int *count) const {
  const strptr text = view();
  const bool preserving = preserve_case && !case_sensitive && !with.empty();
  int hits = 0;
  cstring out;
  int from = 0;
  for (int hit; !what.empty() && (hit = text.FindFrom(what, from, case_sensitive)) >= 0;) {
    if (hits++ == 0) out.Reserve(length() + (with.length() > what.length() ? with.length() : 0));
    out.AddNonOverlapping(text.text() + from, hit - from);
    if (preserving)
      AddPreservingCase(out, text.Mid(hit, what.length()), with);
    else
      out.AddNonOverlapping(with.text(), with.length());  // `out` is new: nothing views it
    from = hit + what.length();
  }
  if (count != nullptr) *count = hits;
  if (hits == 0) return temp_cstring(cstring(*this));
  out.AddNonOverlapping(text.text() + from, text.length() - from);
  return temp_cstring(static_cast<cstring &&>(out));
}

int cstring::Replace(const strptr &what, const strptr &with, bool case_sensitive,
                     bool preserve_case) {
  int hits = 0;
  cstring replaced = Replaced(what, with, case_sensitive, preserve_case, &hits);
  if (hits > 0) Swap(replaced);
  return hits;
}

namespace {

bool Overlaps(const strptr &part, const cstring &s) {
  return !part.empty() && part.text() <= s.end() && part.end() > s.text();
}

}  // namespace

void AddPreservingCase(cstring &out, const strptr &model, const strptr &text) {
  if (Overlaps(model, out) || Overlaps(text, out)) {
    // Growing `out` may move what they view: work from copies.
    const cstring model_copy(model), text_copy(text);
    AddPreservingCase(out, model_copy, text_copy);
    return;
  }
  const int shaped = model.length() < text.length() ? model.length() : text.length();
  int upper = 0, lower = 0;
  for (int i = 0; i < shaped; ++i) {
    upper += UpperCharQ(model[i]);
    lower += LowerCharQ(model[i]);
  }
  const int letters = upper + lower;
  char *p = out.AddN(text.length()).writable_text();
  if (upper == letters) {
    // Also when the model has no letters at all: intended.
    for (int i = 0; i < text.length(); ++i) p[i] = ToUpperAscii(text[i]);
  } else if (lower == letters) {
    for (int i = 0; i < text.length(); ++i) p[i] = ToLowerAscii(text[i]);
  } else {
    for (int i = 0; i < text.length(); ++i)
      p[i] = i >= shaped            ? text[i]
             : UpperCharQ(model[i]) ? ToUpperAscii(text[i])
                                    : ToLowerAscii(text[i]);
  }
}

}  // namespace zel
