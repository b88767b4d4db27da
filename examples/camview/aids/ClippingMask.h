#pragma once

#include "RawPicture.h"

#include <QImage>

/// Makes a transparent picture with the saturated samples in red and the black ones in blue.
/// \param reuse the mask of an earlier picture, whose memory is used again when nobody shares it
///   and the size is the same; otherwise replaced
void clippingMask(const RawPicture& picture, QImage& reuse);
