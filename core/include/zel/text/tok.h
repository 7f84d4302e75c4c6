// tok: splitting text in place, without a cursor.
#pragma once

#include <zel/mem/tary.h>
#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/strptr.h>

namespace zel::tok {

// The functions that take `text` by reference shorten it to what is left. Every search is case
// significant, and every returned view points into the given text.

// The text before the first `sep`; `text` becomes what follows `sep`. Without `sep` (or with an
// empty one): the whole text, and `text` becomes empty.
ZEL_API strptr GetToken(strptr &text, const strptr &sep);
// The text before the first separator; `text` becomes what follows it, after skipping that one
// separator (`one` set) or the whole run of separators. Without a separator: the whole text, and
// `text` becomes empty.
ZEL_API strptr GetToken(strptr &text, const CharSet &seps, bool one);

// Appends every non-empty stretch of `text` between separators, in order (adjacent separators
// make no empty tokens); returns how many were appended.
ZEL_API int GetTokens(strptr text, const CharSet &seps, TAry<strptr> &out);
ZEL_API int GetTokens(strptr text, const CharSet &seps, TAry<cstring> &out);

// Splits `text` at the first `sep` into what stands before and after it, and returns true.
// Without `sep`: false, `left` the whole text and `right` empty. `left` and `right` may be
// `text` itself.
ZEL_API bool SplitString(const strptr &text, const strptr &sep, strptr &left, strptr &right);

// Finds the first `sep`: returns what stands before it and leaves `text` as what follows it.
// Without `sep`: an empty, null view, and `text` unchanged.
ZEL_API strptr RemovePrefix(strptr &text, const strptr &sep);
// Finds the first `sep`: returns what follows it and leaves `text` as what stands before it.
// Without `sep`: an empty, null view, and `text` unchanged.
ZEL_API strptr RemoveSuffix(strptr &text, const strptr &sep);

// Replaces every TAB by one to `tab_width` blanks, up to the next multiple of `tab_width` columns
// (a width below 1 counts as 1). Columns count from 0 and every character other than TAB, CR and
// LF takes one; CR and LF start a new line at column 0. `column`, when not null, is in and out:
// the column at which the text begins (it continues a line already written), and on return the
// column after its last character, so that pieces of one line can be expanded one after another.
ZEL_API void TabsToSpaces(cstring &s, int tab_width, int *column = nullptr);

// Splits one line of comma-separated values (without its line end) into its fields; returns how
// many were appended. Fields are separated by commas and kept as written, blanks included; an
// empty line has no field, and "a," has two, the second empty. A field that begins with a double
// quote is quoted: it runs to the matching quote, commas inside are part of it, and a doubled
// quote inside stands for one quote; whatever follows the closing quote up to the next comma is
// ignored, and a quote that is never closed runs to the end of the line.
//
// This form gives views of the fields without the surrounding quotes: a doubled quote inside
// appears as both its characters, for the caller to unescape.
ZEL_API int GetCSVTokens(const strptr &line, TAry<strptr> &out);
// The same with the fields' values: every doubled quote inside a quoted field becomes one.
ZEL_API int GetCSVTokens(const strptr &line, TAry<cstring> &out);

}  // namespace zel::tok
