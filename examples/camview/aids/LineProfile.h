#pragma once

#include "RawPicture.h"

#include <QLineF>

#include <vector>

/// The raw levels along \p line, from its first to its second point, one value per pixel step
/// along the longer axis. Points outside the picture are left out.
/// \param mosaic the samples lie under colour filters: each value is then the mean of the 2x2
///   cell around its point, so that the filters do not show as a zigzag
std::vector<double> lineProfile(const RawPicture& picture, const QLineF& line, bool mosaic);
