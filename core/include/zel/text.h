// Text: views and owned strings, character sets, string iteration and splitting, formatting,
// scratch strings.
#pragma once

#include <zel/text/charset.h>
#include <zel/text/cstring.h>
#include <zel/text/format.h>
#include <zel/text/hash_primes.h>
#include <zel/text/print.h>
#include <zel/text/string_iter.h>
#include <zel/text/strptr.h>
#include <zel/text/thread_local_string.h>
#include <zel/text/tok.h>
#include <zel/text/vaprintf.h>
