// Threads and channels: the recursive lock.
#pragma once

#include <zel/thread/critsect.h>
