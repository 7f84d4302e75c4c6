// Scheduling and object lifetime: the Scheduler and its clients, tracked objects, hooks and the
// library's start-up.
#pragma once

#include <zel/sched/delay_client.h>
#include <zel/sched/hook.h>
#include <zel/sched/module_exit_hooks.h>
#include <zel/sched/scheduler.h>
#include <zel/sched/startup.h>
#include <zel/sched/tracked_obj.h>
#include <zel/sched/ui_thread.h>
