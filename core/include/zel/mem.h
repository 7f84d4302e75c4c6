// Memory: the global allocator and the growable arrays on it.
#pragma once

#include <zel/mem/allocator.h>
#include <zel/mem/mem_usage.h>
#include <zel/mem/tary.h>
