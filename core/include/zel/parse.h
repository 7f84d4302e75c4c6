// Parsing and command lines: the parser base, its errors and line numbers, typed variables, and
// the text and binary command lines.
#pragma once

#include <zel/config.h>
#include <zel/parse/bcmdline.h>
#include <zel/parse/cmdline.h>
#include <zel/parse/line_numbers.h>
#include <zel/parse/parser_base.h>
#include <zel/parse/parser_error.h>
#include <zel/parse/types.h>
