#pragma once

/// \file
/// Kernels that turn samples into bytes one by one: table look-ups and shifts. A count that is
/// not positive writes nothing; the destination may begin where the source does.

#include <cstddef>

/// dst[i] = table[src[i]] with a table of 256 bytes.
void mapThroughTable8(const unsigned char* src, std::ptrdiff_t count, const unsigned char* table,
                      unsigned char* dst);

/// dst[i] = table[src[i]] with a table of 1024 or 4096 bytes; bits of a sample that the table
/// does not cover are ignored, so that no sample reads outside it.
void mapThroughTable10(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst);
void mapThroughTable12(const unsigned short* src, std::ptrdiff_t count, const unsigned char* table,
                       unsigned char* dst);

/// dst[i] = low 8 bits of src[i] >> shift; \p src holds 16-bit samples at any address.
void shiftTo8Bits(const void* src, std::ptrdiff_t count, int shift, unsigned char* dst);
