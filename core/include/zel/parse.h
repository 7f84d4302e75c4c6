// Parsing and command lines.
#pragma once

#include <zel/config.h>
