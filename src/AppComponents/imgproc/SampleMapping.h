#pragma once

/// \file
/// Kernels that turn samples into bytes one by one: table look-ups and shifts. A count that is
/// not positive writes nothing; the destination may be the source.

#include <cstddef>

/// dst[i] = table[src[i]] with a table of 256 bytes.
void mapThroughTable8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                      unsigned char* dst);

/// The same for 16-bit samples, each of which the table must cover.
void mapThroughTable16(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst);

/// dst[i] = low 8 bits of src[i] >> shift; \p src holds 16-bit samples at any address.
void shiftTo8Bits(const void* src, std::ptrdiff_t count, int shift, unsigned char* dst);
