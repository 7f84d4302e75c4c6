// Reordering of fixed-size elements in place.
#pragma once

#include <zel/config.h>

namespace zel {

// Gathers: element i of the result is element perm[i] of `data`, which holds `count` elements of
// `elem_size` bytes; `perm` holds `count` indices below `count`. Works through a temporary block
// of count * elem_size bytes from the global allocator.
ZEL_API void PermuteBytes(unsigned char *data, const int *perm, int count, int elem_size);

// Scatters, the inverse of PermuteBytes: element perm[i] of the result is element i of `data`.
ZEL_API void UnpermuteBytes(unsigned char *data, const int *perm, int count, int elem_size);

}  // namespace zel
