#pragma once

/// \file
/// Kernels that rearrange the bytes of a packed picture in place.

#include <cstddef>

/// Mirrors \p width x \p height pixels of \p bytesPerPixel bytes each, rows packed: left to
/// right with \p flipH, top to bottom with \p flipV.
void flipPicture(unsigned char* picture, int width, int height, int bytesPerPixel, bool flipH,
                 bool flipV);

/// Moves the first byte of each of \p pixels three-byte pixels to the front of \p picture.
void keepFirstOfThree(unsigned char* picture, std::size_t pixels);
