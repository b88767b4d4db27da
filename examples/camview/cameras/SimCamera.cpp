#include "SimCamera.h"

#include <QFileInfo>
#include <QImageReader>

namespace
{

constexpr int smallestSensor = 16;
constexpr int largestSensor = 16384;
constexpr double pixelLimit = 128e6;

CameraSettings wholeSensor(const SimulatedSensor& sensor, int bitDepth)
{
    CameraSettings settings;
    settings.bitDepth = bitDepth;
    return sensor.adjusted(settings);
}

std::unique_ptr<SimulatedSensor> makeSensor(const SourceText& source, std::unique_ptr<Scene> scene,
                                            bool mosaic)
{
    const double noise = source.number("noise", 1.0, 0.0, 100.0);
    const int seed = source.integer("seed", 1, 0, 1000000);
    return std::make_unique<SimulatedSensor>(std::move(scene), mosaic, noise, unsigned(seed));
}

QImage readPhoto(const QString& path)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    if (double(size.width()) * size.height() > pixelLimit)
        throw CameraError(QString("%1: larger than %2 megapixels").arg(path).arg(pixelLimit / 1e6));
    QImage photo = reader.read();
    if (photo.isNull())
        throw CameraError(
            QString("%1: cannot be read as a picture: %2").arg(path, reader.errorString()));
    if (photo.width() < 4 || photo.height() < 2)
        throw CameraError(QString("%1: smaller than 4 x 2 pixels").arg(path));
    return photo;
}

} // namespace

std::unique_ptr<Camera> SimCamera::openChart(const SourceText& source)
{
    source.allowOnly({"width", "height", "bits", "mono", "noise", "seed"});
    source.refusePath();
    const int width = source.integer("width", 1920, smallestSensor, largestSensor);
    const int height = source.integer("height", 1080, smallestSensor, largestSensor);
    if (width % 4 != 0 || height % 2 != 0)
        throw CameraError(
            "source \"sim\" needs a width that is a multiple of 4 and an even height");
    if (double(width) * height > pixelLimit)
        throw CameraError(
            QString("source \"sim\" is larger than %1 megapixels").arg(pixelLimit / 1e6));
    const bool mosaic = !source.flag("mono", false);
    const int bits = source.bitDepth(12);
    auto scene = std::make_unique<ChartScene>(width, height, mosaic);
    return std::make_unique<SimCamera>("sim", makeSensor(source, std::move(scene), mosaic), bits);
}

std::unique_ptr<Camera> SimCamera::openPhoto(const SourceText& source)
{
    source.allowOnly({"bits", "mono", "noise", "seed"});
    source.requirePath();
    const bool mosaic = !source.flag("mono", false);
    const int bits = source.bitDepth(12);
    auto scene = std::make_unique<PhotoScene>(readPhoto(source.path()), mosaic);
    const QString name = "photo " + QFileInfo(source.path()).fileName();
    return std::make_unique<SimCamera>(name, makeSensor(source, std::move(scene), mosaic), bits);
}

SimCamera::SimCamera(QString cameraName, std::unique_ptr<SimulatedSensor> what, int bitDepth)
    : StreamingCamera(wholeSensor(*what, bitDepth))
    , name(std::move(cameraName))
    , sensor(std::move(what))
{
}

SimCamera::~SimCamera()
{
    stop();
}

CameraInfo SimCamera::info() const
{
    CameraInfo info;
    info.name = name;
    info.sensorWidth = sensor->width();
    info.sensorHeight = sensor->height();
    info.mosaic = sensor->isMosaic();
    return info;
}

CameraSettings SimCamera::adjusted(const CameraSettings& wanted) const
{
    return sensor->adjusted(wanted);
}

bool SimCamera::fill(CameraFrame& frame, const CameraSettings& now)
{
    sensor->expose(now, frame);
    return true;
}
