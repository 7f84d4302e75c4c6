// Memory: the global allocator.
#pragma once

#include <zel/config.h>
