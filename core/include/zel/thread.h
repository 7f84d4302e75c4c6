// Threads: the recursive and non-recursive locks, locked pointers, handles and events, threads,
// thread exit hooks, threads that run a Scheduler.
#pragma once

#include <zel/thread/critsect.h>
#include <zel/thread/exit_hooks.h>
#include <zel/thread/mtptr.h>
#include <zel/thread/nr_critsect.h>
#include <zel/thread/sync.h>
#include <zel/thread/thread.h>
#include <zel/thread/work_thread.h>
