// The prime sequence that sizes the library's hash tables.
#pragma once

#include <zel/config.h>

namespace zel {

// The sequence is 7, 17, 31, 61, 127, ... 2147483647: 29 primes, each just below a power of two
// from 2^3 to 2^31.

// The first prime of the sequence >= n (7 for n <= 7).
ZEL_API int FindHashPrime(int n);
// The first prime of the sequence > n; 31 when there is none (only for 2147483647; intended).
ZEL_API int FindNextHashPrime(int n);

}  // namespace zel
