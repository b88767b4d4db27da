#include "FrameProcessor.h"

#include "StageWatch.h"

#include <algorithm>

StageTimes& StageTimes::operator+=(const StageTimes& other)
{
    average += other.average;
    histogram += other.histogram;
    process += other.process;
    tone += other.tone;
    grey += other.grey;
    flip += other.flip;
    return *this;
}

FrameProcessor::FrameProcessor()
{
    setSettings(settings);
}

void FrameProcessor::setSettings(const ProcessingSettings& wanted)
{
    settings = wanted;
    settings.averageFrames = std::clamp(wanted.averageFrames, 1, int(RingFrameBuffer::maxFrames));
    if (settings.averageFrames == 1)
        ring = RingFrameBuffer(); // switched on again, the mean begins anew
    const ImgCorrectionSettings& correction = settings.correction;

    engine.setColorReconstructionMethod(correction.colorReconstructionMethod);
    engine.setBrightnessD(correction.brightness);
    engine.setContrastD(correction.contrast);
    engine.setGammaD(correction.gamma);
    engine.setColorCorrectionParams(correction.colorCorrectionRed, correction.colorCorrectionGreen,
                                    correction.colorCorrectionBlue, correction.colorCorrectionHue,
                                    correction.colorCorrectionSaturation,
                                    correction.colorCorrectionLightness);
    engine.setAutoStretch(settings.autoStretch);
    const int stretchFlag = settings.autoStretch ? CS_APPLY_LUT : 0;
    engine.setipFlags(correction.flags | stretchFlag);
}

ProcessedFrame FrameProcessor::process(CameraFrame& frame)
{
    StageTimes times;
    const CLogAccessor* timeLog = logFor(frame.stamp);
    const bool count = histogramsAreDue(frame.stamp);
    if (count) {
        const StageWatch watch(times.histogram, L"histogram", timeLog);
        histograms.countRaw(frame.raw);
        lastHistogram = frame.stamp.hostTime;
    }
    FrameEx2* raw = &frame.raw;
    if (settings.averageFrames > 1) {
        const StageWatch watch(times.average, L"average", timeLog);
        raw = &averaged(frame);
    }
    buildPicture(*raw, frame.mosaic, times, timeLog);
    FrameEx2& picture = *raw->getLasFrameInChain(true);
    if (count) {
        const StageWatch watch(times.histogram, L"histogram", timeLog);
        histograms.countPicture(picture);
    }

    const int depth = frame.raw.rawBitDepth;
    return {picture,    frame, histograms, count, engine.tableInPlace(depth),
            1 << depth, times, nullptr};
}

void FrameProcessor::buildPicture(FrameEx2& raw, bool mosaic, StageTimes& times,
                                  const CLogAccessor* timeLog)
{
    const ImgCorrectionSettings& correction = settings.correction;
    const bool greyByConversion = mosaic && settings.greyFromMosaic;
    const bool colourSensor = mosaic && !greyByConversion;
    engine.setCapabilityFlags(colourSensor ? CC_COLOR_SENSOR : 0);
    // A sensor without a mosaic has nothing to debayer.
    int method = correction.colorReconstructionMethod;
    if (!colourSensor)
        method = std::min(std::max(method, 0), 1);
    engine.setColorReconstructionMethod(method);

    // ProcessFrame mirrors the frame that it is given, which is the raw data here. The raw data
    // stays as the sensor sent it; flipImage mirrors the end of the chain.
    engine.setFlipH(false);
    engine.setFlipV(false);
    {
        const StageWatch watch(times.process, L"process", timeLog);
        engine.ProcessFrame(&raw, 8);
    }
    times.tone = engine.takeToneTime();
    if (greyByConversion) {
        const StageWatch watch(times.grey, L"grey", timeLog);
        engine.convertToMonochrome(&raw);
    }
    const StageWatch watch(times.flip, L"flip", timeLog);
    engine.setFlipH(correction.flipH);
    engine.setFlipV(correction.flipV);
    engine.flipImage(&raw);
}

FrameEx2& FrameProcessor::averaged(CameraFrame& frame)
{
    FrameEx2& raw = frame.raw;
    const _FrameParams& params = raw.params;
    const bool fits =
        ring.getCapacity() == settings.averageFrames && ring.geBitsPerPixel() == raw.rawBitDepth &&
        ring.getWidth() == raw.imgWidth && ring.getHeight() == raw.imgHeight &&
        ring.getDecimation() == params.decimation && ring.getMirrorH() == bool(params.mirrorH) &&
        ring.getMirrorV() == bool(params.mirrorV) && mean.params.posX == params.posX &&
        mean.params.posY == params.posY;
    if (!fits)
        ring.Reset(settings.averageFrames, raw.rawBitDepth, raw.imgWidth, raw.imgHeight,
                   params.decimation, params.mirrorH, params.mirrorV);
    mean.InitFrame(raw.params, raw.rawBitDepth);
    mean.invalidateFrame();
    ring.appendFrame(raw.getImageBuffer(), mean.getImageBuffer());
    return mean;
}

bool FrameProcessor::histogramsAreDue(const FrameStamp& stamp) const
{
    return lastHistogram.count() < 0 || stamp.hostTime - lastHistogram >= settings.histogramPeriod;
}

// One frame per second tells enough.
const CLogAccessor* FrameProcessor::logFor(const FrameStamp& stamp)
{
    if (stamp.hostTime - lastLogged < std::chrono::seconds(1) || !log.isWriting(textLog))
        return nullptr;
    lastLogged = stamp.hostTime;
    return &log;
}
