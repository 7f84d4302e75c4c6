// Byte streams and serialisation.
#pragma once

#include <zel/stream/bitptr.h>
#include <zel/stream/byte_stream.h>
#include <zel/stream/serialize.h>
