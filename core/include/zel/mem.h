// Memory: the global allocator.
#pragma once

#include <zel/mem/allocator.h>
