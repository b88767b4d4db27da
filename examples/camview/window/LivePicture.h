#pragma once

#include "core/CameraFrame.h"
#include "core/FrameProcessor.h"

#include <QImage>
#include <QSharedPointer>

#include <vector>

/// Everything the window needs of one frame, detached from the threads that made it.
struct LivePicture {
    TFrameParams params; ///< where the shown picture lies on the sensor, and how it is mirrored
    QSharedPointer<QImage> image;
    FrameEx2 raw;          ///< the samples as the camera sent them
    bool flippedH = false; ///< the picture is shown mirrored against raw
    bool flippedV = false;
    bool mosaic = false;
    FrameStamp stamp;
    StageTimes times;
    Histograms histograms;
    bool newHistograms = false;
    std::vector<unsigned char> toneTable;
    QImage clipping; ///< null unless asked for
};
