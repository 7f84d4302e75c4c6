// Gathering and scattering fixed-size elements through a temporary block.
#include <zel/mem/allocator.h>
#include <zel/stream/permute.h>

#include <cstddef>
#include <cstring>

namespace zel {

namespace {

// Builds the reordered elements in a temporary block and copies them back over `data`: element
// to[i] of the result is element from[i] of the input, with one of the two the identity.
template <typename To, typename From>
void Reorder(unsigned char *data, int count, int elem_size, To to, From from) {
  if (count <= 0 || elem_size <= 0) return;
  const auto size = static_cast<size_t>(elem_size);
  auto *result = static_cast<unsigned char *>(MallocX(count * elem_size));
  for (int i = 0; i < count; ++i)
    std::memcpy(result + static_cast<size_t>(to(i)) * size,
                data + static_cast<size_t>(from(i)) * size, size);
  std::memcpy(data, result, static_cast<size_t>(count) * size);
  FreeX(result);
}

}  // namespace

void PermuteBytes(unsigned char *data, const int *perm, int count, int elem_size) {
  Reorder(
      data, count, elem_size, [](int i) { return i; }, [perm](int i) { return perm[i]; });
}

void UnpermuteBytes(unsigned char *data, const int *perm, int count, int elem_size) {
  Reorder(
      data, count, elem_size, [perm](int i) { return perm[i]; }, [](int i) { return i; });
}

}  // namespace zel
