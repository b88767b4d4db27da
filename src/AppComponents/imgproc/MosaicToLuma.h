#pragma once

#include <AppComponents/imgproc/BayerPhase.h>

/// Computes the luma (299 red + 587 green + 114 blue) / 1000 of each pixel of an 8-bit Bayer
/// mosaic, the missing colours taken from its neighbours. The four phases share the rule of the
/// interior and differ at the borders. A border rule that reaches outside the pictures, as it
/// may where they have fewer than three rows or columns, takes the pixel's own sample instead.
/// \param src,dst rows x cols bytes and one more, apart. The last pixel of the first row is
///   left as it is.
void mosaicToLuma(BayerPhase phase, const unsigned char* src, int rows, int cols,
                  unsigned char* dst);

void mosaicToLumaGBRG(const unsigned char* src, int rows, int cols, unsigned char* dst);
void mosaicToLumaBGGR(const unsigned char* src, int rows, int cols, unsigned char* dst);
void mosaicToLumaRGGB(const unsigned char* src, int rows, int cols, unsigned char* dst);
void mosaicToLumaGRBG(const unsigned char* src, int rows, int cols, unsigned char* dst);
