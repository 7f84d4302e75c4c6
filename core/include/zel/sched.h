// Scheduling and object lifetime: hooks and the library's start-up.
#pragma once

#include <zel/sched/hook.h>
#include <zel/sched/startup.h>
