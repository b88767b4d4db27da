#pragma once

#include <QImage>

/// \return an image with uninitialised pixels whose memory comes from images that are gone, or
///   is new. The pages of a large block cost more to obtain from the system than its bytes cost
///   to copy, so a stream of pictures hands the same few blocks round. Null if there is no
///   memory or the size is empty.
///
/// Safe from any thread; images may outlive everything, the end of main() included.
QImage imageFromPool(int width, int height, QImage::Format format);
