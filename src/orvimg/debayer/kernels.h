#pragma once

/// \file
/// The debayer methods. Each fills the rows of \p band of the picture \p rgb, which holds as many
/// pixels as the mosaic. The mosaic has at least two rows and two columns, except for
/// debayerThin(). Bands may be filled on different threads at once.

// Kernels split vectors of bytes into pairs, which the one-lane fallback target cannot. The
// emulated 128-bit one can; it is off by default on compilers that once got it wrong, so the
// tests run it.
#define HWY_BROKEN_EMU128 0

#include <orvimg/debayer/bayer_mosaic.h>
#include <orvimg/parallel.h>

namespace orvimg
{

/// Each missing colour from the neighbour right, below or diagonally below.
void debayerNearest(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// One colour per 2x2 cell: its red, the mean of its greens, its blue.
void debayerCell(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// Each missing colour as the mean of its two or four nearest samples.
void debayerBilinear(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// Malvar, He and Cutler, "High-quality linear interpolation for demosaicing of Bayer-patterned
/// color images", ICASSP 2004.
void debayerGradientCorrected(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// Green by Hamilton and Adams, US patent 5629734, 1997; red and blue as colour differences.
void debayerEdgeDirected(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// Chang, Cheung and Pang, "Color filter array recovery using a threshold-based variable number
/// of gradients", SPIE 3650, 1999.
void debayerVariableGradients(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// The best picture in real time. Green by directional linear minimum mean-square-error estimation,
/// after Zhang and Wu, "Color demosaicking via directional linear minimum mean square-error
/// estimation", IEEE Transactions on Image Processing 14, 2005; red and blue as weighted colour
/// differences.
void debayerBest(const BayerMosaic& mosaic, RowBand band, std::uint8_t* rgb);

/// Pictures of one row or one column: the other colour of the line along it, and the pixel's own
/// sample for the colour that the picture does not have.
/// \param algorithm 0 takes the next sample, 1 that of the cell, others the mean of two
void debayerThin(const BayerMosaic& mosaic, int algorithm, std::uint8_t* rgb);

} // namespace orvimg
