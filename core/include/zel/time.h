// Time values, time text, time intervals.
#pragma once

#include <zel/config.h>
