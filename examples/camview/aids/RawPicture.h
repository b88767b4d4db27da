#pragma once

#include <AppComponents/frames/FrameEx2.h>

#include <QRect>

/// The raw samples behind a shown picture, addressed by the pixels of that picture: pixel (x, y)
/// of what the user sees is sample (x, y) here, also when the display mirrors the picture.
///
/// A view on a frame, which must outlive it. The samples are only read.
class RawPicture
{
public:
    /// \param mirroredH,mirroredV whether the picture is shown mirrored against \p raw
    explicit RawPicture(const FrameEx2& raw, bool mirroredH = false, bool mirroredV = false);

    int width() const { return frame.imgWidth; }
    int height() const { return frame.imgHeight; }
    QRect rect() const { return {0, 0, width(), height()}; }

    /// The highest level that a sample can have: 255, 1023 or 4095.
    int fullScale() const { return (1 << frame.rawBitDepth) - 1; }

    /// The sample behind pixel (x, y), which must lie inside rect().
    int sample(int x, int y) const;

    /// The part of the frame, in its own rows and columns, that is shown in \p area of the
    /// picture. Whoever walks over many samples walks over the frame's memory.
    QRect inFrame(const QRect& area) const;

    bool flippedH() const { return flipH; }
    bool flippedV() const { return flipV; }
    const FrameEx2& record() const { return frame; }

private:
    const FrameEx2& frame;
    const bool flipH;
    const bool flipV;
};
