// The high-resolution clock's call counter, for the memory statistics.
#pragma once

#include <cstdint>

namespace zel {

// How often NanoTime::Current (and the slewing routine) read the clock.
uint32_t NanoTimeCurrentCalls();

}  // namespace zel
