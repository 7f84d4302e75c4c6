// Byte streams and serialisation.
#pragma once

#include <zel/stream/bit_set.h>
#include <zel/stream/bitptr.h>
#include <zel/stream/buffered.h>
#include <zel/stream/byte_stream.h>
#include <zel/stream/checksum.h>
#include <zel/stream/permute.h>
#include <zel/stream/serialize.h>
#include <zel/stream/signature.h>
