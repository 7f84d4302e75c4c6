// Replacing text, with and without the letter case of what it replaces.
#include <zel/text/cstring.h>

#include "support/strings.h"

#include <string>
#include <string_view>
#include <tuple>

namespace zel {
namespace {

TEST(Replace, ReplacesEveryMatchWithoutOverlapping) {
  const std::tuple<const char *, const char *, const char *, bool, bool, const char *, int>
      cases[] = {{"Cat CAT cat", "cat", "dog", false, true, "Dog DOG dog", 3},
                 {"Cat CAT cat", "cat", "dog", false, false, "dog dog dog", 3},
                 {"Cat CAT cat", "Cat", "dog", true, true, "dog CAT cat", 1},  // no shaping
                 {"Cat CAT cat", "cat", "", false, true, "  ", 3},
                 {"aaaa", "aa", "b", true, false, "bb", 2},
                 {"%1 and %2", "%1", "one", true, false, "one and %2", 1},
                 {"abc", "x", "y", true, false, "abc", 0},
                 {"abc", "", "y", true, false, "abc", 0}};
  for (const auto &[text, what, with, case_sensitive, preserve_case, expected, matches] : cases) {
    const cstring s(text);
    int count = 99;
    cstring replaced = s.Replaced(what, with, case_sensitive, preserve_case, &count);
    EXPECT_EQ(test::Str(replaced), expected) << text << " / " << what;
    EXPECT_EQ(count, matches) << text << " / " << what;

    cstring in_place(text);
    EXPECT_EQ(in_place.Replace(what, with, case_sensitive, preserve_case), matches);
    EXPECT_EQ(test::Str(in_place), expected) << text << " / " << what;
  }
  cstring s("abcabc");  // search and replacement inside the string
  EXPECT_EQ(s.Replace(s.view().Mid(0, 1), s.view().Mid(1, 2)), 2);
  EXPECT_EQ(test::Str(s), "bcbcbcbc");
}

TEST(Replace, AddPreservingCaseShapesTheTextAfterTheModel) {
  const std::tuple<const char *, const char *, const char *> cases[] = {
      {"123", "abc", "ABC"},  // no letters in the model: upper case (intended)
      {"", "abc", "ABC"},    {"cat", "DoG", "dog"}, {"aB", "xyZw", "xYZw"}, {"A1b", "cde", "Cde"},
      {"xYz", "ab", "aB"},   {"ABcd", "xy", "XY"}};  // only the first min(model, text) characters
                                                     // count
  for (const auto &[model, text, expected] : cases) {
    cstring out("<");
    AddPreservingCase(out, model, text);
    EXPECT_EQ(test::Str(out), std::string("<") + expected) << model << " / " << text;
  }
  cstring self("Ab");  // model and text inside the output, whose buffer moves
  AddPreservingCase(self, self, self.view().Right(1));
  AddPreservingCase(self, self.view().Left(2), self);
  EXPECT_EQ(test::Str(self), "AbBAbB");
}

}  // namespace
}  // namespace zel
