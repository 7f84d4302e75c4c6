// Text: strings, formatting, character sets, shared strings.
#pragma once

#include <zel/config.h>
