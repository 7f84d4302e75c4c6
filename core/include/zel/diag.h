// Diagnostics: exceptions and the error prefix, warnings, the log, counters.
#pragma once

#include <zel/diag/counters.h>
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/diag/warnings.h>
