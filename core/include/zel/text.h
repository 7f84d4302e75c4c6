// Text: views, owned and shared strings, string tables, character sets, string iteration and
// splitting, formatting, scratch strings, numbers with units.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/format.h>
#include <zel/text/hash_primes.h>
#include <zel/text/print.h>
#include <zel/text/shstring.h>
#include <zel/text/str_map.h>
#include <zel/text/string_iter.h>
#include <zel/text/string_table.h>
#include <zel/text/strptr.h>
#include <zel/text/thread_local_string.h>
#include <zel/text/tok.h>
#include <zel/text/units.h>
#include <zel/text/vaprintf.h>
