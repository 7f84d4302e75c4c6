// The growable arrays and their growth rule.
#include <zel/mem/tary.h>
#include <zel/text/cstring.h>

#include "support/strings.h"

#include <string>

namespace zel {
namespace {

TEST(GrowCapacity, FollowsTheThreeBandsAndNeverGivesLessThanNeeded) {
  struct Case {
    int capacity, element_size, needed, expected;
  } cases[] = {
      {0, 4, 1, 8},                  // small: by 8 elements
      {8, 4, 9, 16},                 //
      {9, 4, 10, 18},                // then doubling
      {0x80000, 4, 1, 0xC0000},      // 2 MiB of elements of 4 bytes: by half from here
      {0x80000 - 1, 4, 1, 0xFFFFE},  // just below: doubles
      {0x1FFFFF, 1, 1, 0x3FFFFE},    //
      {0x200000, 1, 1, 0x300000},    //
      {0x31FFFFF, 1, 1, 0x4AFFFFE},  //
      {0x3200000, 1, 1, 0x3E80000},  // 50 MiB: by a quarter
      {8, 1, 100, 100},              // a bigger request wins
  };
  for (const Case &c : cases)
    EXPECT_EQ(GrowCapacity(c.capacity, c.element_size, c.needed), c.expected)
        << c.capacity << " x " << c.element_size;
}

TEST(TAry, KeepsOrderThroughEditsAndGrowthAndPtrTAryFindsItsPointers) {
  TAry<cstring> words;
  for (int i = 0; i < 20; ++i) words.Add(static_cast<cstring &&>(cstring("w") << i));
  words.Insert(0, "first");
  words.Insert(5, "fifth");
  words.RemoveAt(1);
  ASSERT_EQ(words.Count(), 21);
  EXPECT_EQ(test::Str(words[0]), "first");
  EXPECT_EQ(test::Str(words[1]), "w1");
  EXPECT_EQ(test::Str(words[4]), "fifth");
  EXPECT_EQ(test::Str(words.Last()), "w19");

  // Adding an element of the array itself while the array has to move.
  TAry<cstring> copies;
  copies.Add("one");
  while (copies.Count() < copies.Capacity()) copies.Add("filler");
  copies.Add(copies[0]);
  EXPECT_EQ(test::Str(copies.Last()), "one");

  words.Flush();
  EXPECT_TRUE(words.empty());
  EXPECT_GE(words.Capacity(), 21);

  int a = 0, b = 0, c = 0;
  PtrTAry<int> pointers;
  for (int *p : {&a, &b}) pointers.Add(p);
  EXPECT_EQ(pointers.Find(&b), 1);
  EXPECT_EQ(pointers.Find(&c), -1);
}

}  // namespace
}  // namespace zel
