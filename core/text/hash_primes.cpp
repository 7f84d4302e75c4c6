// The prime sequence of hash-table sizes.
#include <zel/text/hash_primes.h>

namespace zel {

namespace {

constexpr int kPrimes[] = {7,         17,        31,        61,         127,       251,
                           509,       1021,      2039,      4093,       8191,      16381,
                           32749,     65521,     131071,    262139,     524287,    1048573,
                           2097143,   4194301,   8388593,   16777213,   33554393,  67108859,
                           134217689, 268435399, 536870909, 1073741789, 2147483647};
static_assert(sizeof kPrimes / sizeof kPrimes[0] == 29);

// When no prime of the sequence qualifies; intended.
constexpr int kFallback = 31;

}  // namespace

int FindHashPrime(int n) {
  for (int p : kPrimes)
    if (p >= n) return p;
  return kFallback;
}

int FindNextHashPrime(int n) {
  for (int p : kPrimes)
    if (p > n) return p;
  return kFallback;
}

}  // namespace zel
