// Threads: the recursive lock, locked pointers, thread exit hooks.
#pragma once

#include <zel/thread/critsect.h>
#include <zel/thread/exit_hooks.h>
#include <zel/thread/mtptr.h>
