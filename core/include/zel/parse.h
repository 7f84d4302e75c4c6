// Parsing and command lines: the parser base, its errors and line numbers.
#pragma once

#include <zel/config.h>
#include <zel/parse/line_numbers.h>
#include <zel/parse/parser_base.h>
#include <zel/parse/parser_error.h>
