#include "LiveFeed.h"

#include "aids/ClippingMask.h"

namespace
{

/// The picture as an image. FrameEx2::getImage copies packed rows as one block, which fits images
/// whose rows are multiples of 4 bytes; other widths are copied row by row.
QSharedPointer<QImage> imageOf(FrameEx2& picture)
{
    const bool color = picture.params.bitsPerPixel > 8;
    const int rowBytes = picture.imgWidth * (color ? 3 : 1);
    if (rowBytes % 4 == 0)
        return picture.getImage();
    const QImage view(picture.getImageBuffer(), picture.imgWidth, picture.imgHeight, rowBytes,
                      color ? QImage::Format_RGB888 : QImage::Format_Grayscale8);
    return QSharedPointer<QImage>::create(view.copy());
}

} // namespace

LiveFeed::LiveFeed(QObject* parent)
    : QObject(parent)
{
}

LiveFeed::~LiveFeed() = default;

LivePicture* LiveFeed::takePicture()
{
    const std::lock_guard lock(mutex);
    if (!isWaiting)
        return nullptr;
    isWaiting = false;
    std::swap(waiting, shown);
    return shown.get();
}

void LiveFeed::setFlips(bool horizontally, bool vertically)
{
    flipH = horizontally;
    flipV = vertically;
}

void LiveFeed::fill(LivePicture& picture, const ProcessedFrame& frame) const
{
    // The samples as the camera sent them, where processing had to touch the frame's own.
    const bool copied = frame.untouched != nullptr;
    const FrameEx2& raw = copied ? frame.untouched->raw : frame.source.raw;
    // Without processing the raw frame itself is the picture, and was mirrored itself.
    const bool separate = copied || &frame.picture != &raw;
    picture.image = imageOf(frame.picture);
    copyPixels(raw, picture.raw);
    picture.params = raw.params;
    picture.params.mirrorH = picture.params.mirrorH != flipH;
    picture.params.mirrorV = picture.params.mirrorV != flipV;
    picture.flippedH = flipH && separate;
    picture.flippedV = flipV && separate;
    picture.mosaic = frame.source.mosaic;
    picture.stamp = frame.source.stamp;
    picture.times = frame.times;
    picture.newHistograms = frame.newHistograms;
    if (frame.newHistograms)
        picture.histograms = frame.histograms;
    picture.toneTable.assign(frame.toneTable, frame.toneTable + frame.toneTableSize);
    if (clippingWanted)
        clippingMask(RawPicture(picture.raw, picture.flippedH, picture.flippedV), picture.clipping);
    else
        picture.clipping = QImage();
}

void LiveFeed::pictureReady(const ProcessedFrame& frame)
{
    writeGraphs(frame);
    fill(*writing, frame);
    {
        const std::lock_guard lock(mutex);
        // Histograms that the window never saw travel on with the newer picture.
        if (isWaiting && waiting->newHistograms && !writing->newHistograms) {
            std::swap(writing->histograms, waiting->histograms);
            writing->newHistograms = true;
        }
        std::swap(writing, waiting);
        if (std::exchange(isWaiting, true))
            return;
    }
    emit pictureWaiting();
}

void LiveFeed::writeGraphs(const ProcessedFrame& frame)
{
    const std::chrono::nanoseconds arrival = frame.source.stamp.hostTime;
    const std::chrono::duration<double> distance = arrival - lastArrival;
    lastArrival = arrival;
    // Single distances jitter by the host's scheduling: the mean of about ten frames is shown.
    if (distance.count() > 0 && distance.count() < 10.0) {
        meanDistance += (distance.count() - meanDistance) * (meanDistance == 0 ? 1.0 : 0.1);
        graphs.rate.write(1.0 / meanDistance);
    }
    graphs.processing.write(frame.times.total());
    graphs.tone.write(frame.times.tone);
    if (frame.newHistograms)
        graphs.level.write(frame.histograms.meanLevel * 100.0);
}

void LiveFeed::streamChanged(StreamEvent event, const QString& detail)
{
    emit streamEvent(static_cast<int>(event), detail);
}
