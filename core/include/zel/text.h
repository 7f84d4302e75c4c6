// Text: views and owned strings, character sets, formatting, scratch strings.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/format.h>
#include <zel/text/hash_primes.h>
#include <zel/text/shstring.h>
#include <zel/text/str_map.h>
#include <zel/text/string_table.h>
#include <zel/text/strptr.h>
#include <zel/text/thread_local_string.h>
