#pragma once

#include "CameraFrame.h"
#include "Histograms.h"
#include "ProcessingSettings.h"
#include "ToneProcessor.h"

#include <AppComponents/frames/RingFrameBuffer.h>
#include <AppComponents/log/CLogAccessor.h>

/// What the stages of one frame took, in milliseconds.
struct StageTimes {
    double average = 0;   ///< running mean of the last frames
    double histogram = 0; ///< raw and processed histograms
    double process = 0;   ///< ImgProcessor::ProcessFrame as a whole
    double tone = 0;      ///< the part of process that applied the tone table
    double grey = 0;      ///< mosaic-to-grey conversion
    double flip = 0;      ///< mirroring of the finished picture

    double total() const { return average + histogram + process + grey + flip; }
    StageTimes& operator+=(const StageTimes& other);
};

/// One finished frame, valid during the call that hands it over.
struct ProcessedFrame {
    FrameEx2& picture; ///< 8-bit grey or 24-bit colour
    const CameraFrame& source;
    const Histograms& histograms;
    bool newHistograms; ///< the histograms are of this frame
    const unsigned char* toneTable;
    int toneTableSize; ///< 256, 1024 or 4096
    StageTimes times;
    const CameraFrame* untouched = nullptr; ///< the raw samples, see LiveSession::keepRaw()
};

/// The road of one frame from the camera's samples to the finished picture.
/// Belongs to one thread; the application serialises setting changes and processing.
class FrameProcessor
{
public:
    FrameProcessor();

    void setSettings(const ProcessingSettings& wanted);

    /// Processes a frame whose chain is invalidated. The raw samples are left alone unless the
    /// median filter is on, which works in place.
    ProcessedFrame process(CameraFrame& frame);

private:
    FrameEx2& averaged(CameraFrame& frame);
    void buildPicture(FrameEx2& raw, bool mosaic, StageTimes& times, const CLogAccessor* timeLog);
    bool histogramsAreDue(const FrameStamp& stamp) const;
    const CLogAccessor* logFor(const FrameStamp& stamp);

    ProcessingSettings settings;
    ToneProcessor engine;
    RingFrameBuffer ring;
    FrameEx2 mean; ///< the ring's output, on which the pipeline then works
    Histograms histograms;
    std::chrono::nanoseconds lastHistogram{-1};
    CLogAccessor log{L"camview"};
    std::chrono::nanoseconds lastLogged{0};
};
