// Time values, time text, time intervals.
#pragma once

#include <zel/time/calendar.h>
#include <zel/time/nano_time.h>
#include <zel/time/time_interval.h>
#include <zel/time/time_text.h>
#include <zel/time/unix_time.h>
