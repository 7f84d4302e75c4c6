// Formatting into a cstring beyond the plain `<<` forms of cstring.h.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>
#include <type_traits>

namespace zel {

// Appends `value` in hexadecimal: "0x" ("0X" with `upper_case`) when `prefix` is set, then the
// digits without leading zeros but at least min(`min_digits`, 8) of them and at least one. The
// 64-bit form prints every digit a wider value needs.
ZEL_API cstring &FmtHex(cstring &out, uint32_t value, int min_digits = 0, bool prefix = false,
                        bool upper_case = false);
ZEL_API cstring &FmtHex(cstring &out, uint64_t value, int min_digits = 0, bool prefix = false,
                        bool upper_case = false);
// Any other integer: its bit pattern, as the 32- or 64-bit form by its size.
template <typename T>
requires std::is_integral_v<T> &&(!std::is_same_v<T, uint32_t>)&&(!std::is_same_v<T, uint64_t>)
    cstring &FmtHex(cstring &out, T value, int min_digits = 0, bool prefix = false,
                    bool upper_case = false) {
  if constexpr (sizeof(T) <= 4)
    return FmtHex(out, static_cast<uint32_t>(static_cast<std::make_unsigned_t<T>>(value)),
                  min_digits, prefix, upper_case);
  else
    return FmtHex(out, static_cast<uint64_t>(value), min_digits, prefix, upper_case);
}

}  // namespace zel
