#pragma once

#include <cstddef>

/// What the colours of one row of a mosaic are.
struct MosaicRow {
    bool red;         // the row holds red beside green, else blue beside green
    bool greenIsEven; // green stands in the even columns
};

/// The interior rule of mosaicToLuma() for the columns 1 ... cols - 2 of one row: at a red or
/// blue site the opposite colour is the mean of the samples up-left and down-right and green
/// that of left and right; at a green site the row's colour is the mean of left and right, the
/// other one that of above and below. All means are truncated.
/// \param row a row of the mosaic that has another one above and below, \p cols bytes each.
void lumaRow(MosaicRow kind, const unsigned char* row, std::ptrdiff_t cols, unsigned char* dst);
