// Everything the library exports, one header per subsystem.
#pragma once

#include <zel/config.h>
#include <zel/diag.h>
#include <zel/file.h>
#include <zel/mem.h>
#include <zel/parse.h>
#include <zel/sched.h>
#include <zel/stream.h>
#include <zel/text.h>
#include <zel/thread.h>
#include <zel/time.h>
