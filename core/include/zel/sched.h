// Scheduling and object lifetime: the library's start-up and the threads it hears of.
#pragma once

#include <zel/sched/startup.h>
