#include "SimulatedSensor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>

namespace
{

constexpr double referenceExposureMs = 10.0;
constexpr float fullWellElectrons = 30000.0F;
constexpr float readNoiseElectrons = 6.0F;
constexpr std::uint32_t noiseSteps = 1U << 16;
constexpr int smallestSide = 4;

int roundDown(int value, int step)
{
    return value / step * step;
}

// Places a stretch of the wanted length and start on the sensor's steps, moved inside.
void fitStretch(int sensor, int startStep, int lengthStep, int& start, int& length)
{
    length = std::clamp(roundDown(length, lengthStep), lengthStep, roundDown(sensor, lengthStep));
    start = std::clamp(roundDown(start, startStep), 0, roundDown(sensor - length, startStep));
}

// Which sensor sample of a line the read-out delivers at an index: of a mosaic whole cells are
// skipped, so that the colours keep their order.
int decimated(int index, int decimation, bool mosaic)
{
    return mosaic ? index / 2 * 2 * decimation + index % 2 : index * decimation;
}

} // namespace

SimulatedSensor::SimulatedSensor(std::unique_ptr<Scene> what, bool isMosaic, double noiseFactor,
                                 unsigned seed)
    : scene(std::move(what))
    , mosaic(isMosaic)
    , noise(static_cast<float>(noiseFactor))
    , random(seed * 2654435761U + 1U)
    , noiseTable(noiseSteps + static_cast<std::size_t>(scene->width()))
{
    std::mt19937 engine(seed);
    std::normal_distribution<float> normal;
    std::generate_n(noiseTable.begin(), noiseSteps, [&] { return normal(engine); });
    for (std::size_t i = noiseSteps; i < noiseTable.size(); ++i)
        noiseTable[i] = noiseTable[i - noiseSteps];
}

CameraSettings SimulatedSensor::adjusted(const CameraSettings& wanted) const
{
    CameraSettings possible = wanted;
    const int largest = std::max(1, std::min(width() / smallestSide, height() / 2));
    possible.decimation = std::clamp(std::abs(wanted.decimation), 1, largest);
    SensorRegion& region = possible.region;
    if (region.width <= 0 || region.height <= 0)
        region = {0, 0, width(), height()};
    fitStretch(width(), 2, 4 * possible.decimation, region.x, region.width);
    fitStretch(height(), 2, 2 * possible.decimation, region.y, region.height);
    possible.bitDepth = wanted.bitDepth <= 8 ? 8 : (wanted.bitDepth <= 10 ? 10 : 12);
    possible.exposureMs = std::clamp(wanted.exposureMs, 0.01, 10000.0);
    possible.gainDb = std::clamp(wanted.gainDb, 0.0, 48.0);
    possible.frameRate = std::clamp(wanted.frameRate, 0.0, 10000.0);
    return possible;
}

void SimulatedSensor::expose(const CameraSettings& settings, CameraFrame& frame)
{
    const SensorRegion& region = settings.region;
    _FrameParams params{};
    params.posX = region.x;
    params.posY = region.y;
    params.width = region.width;
    params.height = region.height;
    params.decimation = settings.decimation;
    params.bitsPerPixel = 8;
    params.mirrorV = settings.mirrorV;
    params.mirrorH = settings.mirrorH;
    frame.mosaic = mosaic;
    frame.raw.InitFrame(params, static_cast<unsigned char>(settings.bitDepth));

    const std::uint16_t* light = scene->light(frame.stamp.number);
    const int columns = frame.raw.imgWidth;
    const int rows = frame.raw.imgHeight;
    line.resize(static_cast<std::size_t>(columns));
    unsigned char* out = frame.raw.getImageBuffer();
    for (int y = 0; y < rows; ++y) {
        gatherRow(light, settings, settings.mirrorV ? rows - 1 - y : y);
        if (settings.bitDepth > 8)
            develop(settings, reinterpret_cast<std::uint16_t*>(out) + std::ptrdiff_t(y) * columns);
        else
            develop(settings, out + std::ptrdiff_t(y) * columns);
    }
}

void SimulatedSensor::gatherRow(const std::uint16_t* light, const CameraSettings& settings, int row)
{
    const int y = settings.region.y + decimated(row, settings.decimation, mosaic);
    const std::uint16_t* from = light + std::ptrdiff_t(y) * width() + settings.region.x;
    const int count = static_cast<int>(line.size());
    if (settings.decimation == 1) {
        std::copy_n(from, count, line.begin());
    } else {
        for (int x = 0; x < count; ++x)
            line[x] = from[decimated(x, settings.decimation, mosaic)];
    }
    if (settings.mirrorH)
        std::reverse(line.begin(), line.end());
}

template <typename Sample>
void SimulatedSensor::develop(const CameraSettings& settings, Sample* out)
{
    const auto exposure = static_cast<float>(settings.exposureMs / referenceExposureMs);
    const auto gain = static_cast<float>(std::pow(10.0, settings.gainDb / 20.0));
    const float largest = static_cast<float>((1 << settings.bitDepth) - 1);
    const float electronsPerUnit = fullWellElectrons / 65535.0F * exposure;
    const float levelsPerElectron = largest / fullWellElectrons * gain;
    const float variance = noise * noise;

    random = random * 1664525U + 1013904223U;
    const float* deviate = noiseTable.data() + (random >> 16);
    const std::uint16_t* light = line.data();
    const int count = static_cast<int>(line.size());
    for (int x = 0; x < count; ++x) {
        const float electrons = static_cast<float>(light[x]) * electronsPerUnit;
        const float sigma =
            std::sqrt(variance * (electrons + readNoiseElectrons * readNoiseElectrons));
        const float level = (electrons + deviate[x] * sigma) * levelsPerElectron + 0.5F;
        const float clipped = level < 0.0F ? 0.0F : (level > largest ? largest : level);
        out[x] = static_cast<Sample>(static_cast<int>(clipped));
    }
}
