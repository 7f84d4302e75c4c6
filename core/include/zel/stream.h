// Byte streams and serialisation.
#pragma once

#include <zel/config.h>
