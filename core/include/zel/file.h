// Files and the data directory.
#pragma once

#include <zel/config.h>
