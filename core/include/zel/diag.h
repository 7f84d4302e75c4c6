// Diagnostics: exceptions, warnings, logging.
#pragma once

#include <zel/config.h>
