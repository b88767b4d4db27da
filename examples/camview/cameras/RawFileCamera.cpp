#include "RawFileCamera.h"

#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

namespace
{

constexpr int largestSide = 65535;
constexpr qint64 largestFrameBytes = 512LL << 20;

CameraSettings settingsOf(int width, int height, int depth, bool mirrorH, bool mirrorV)
{
    CameraSettings settings;
    settings.region = {0, 0, width, height};
    settings.bitDepth = depth;
    settings.mirrorH = mirrorH;
    settings.mirrorV = mirrorV;
    return settings;
}

} // namespace

qint64 RawFileCamera::Layout::frameBytes() const
{
    return qint64(width) * height * (storedBits > 8 ? 2 : 1);
}

std::unique_ptr<Camera> RawFileCamera::open(const SourceText& source)
{
    source.allowOnly({"width", "height", "bits", "mono", "mirrorh", "mirrorv", "loop"});
    source.requirePath();
    Layout layout;
    layout.width = source.requiredInteger("width", 1, largestSide);
    layout.height = source.requiredInteger("height", 1, largestSide);
    layout.storedBits = source.requiredInteger("bits", 8, 16);
    layout.mosaic = !source.flag("mono", false);
    layout.mirrorH = source.flag("mirrorh", false);
    layout.mirrorV = source.flag("mirrorv", false);
    layout.loop = source.flag("loop", false);
    const int bits = layout.storedBits;
    if (bits != 8 && bits != 10 && bits != 12 && bits != 16)
        throw CameraError(QString("source parameter bits=%1 is not 8, 10, 12 or 16").arg(bits));
    if (layout.frameBytes() > largestFrameBytes)
        throw CameraError(QString("frames of %1 x %2 samples are larger than 512 MiB")
                              .arg(layout.width)
                              .arg(layout.height));

    auto file = std::make_unique<QFile>(source.path());
    if (!file->open(QIODevice::ReadOnly))
        throw CameraError(QString("%1: %2").arg(source.path(), file->errorString()));
    if (file->size() < layout.frameBytes())
        throw CameraError(QString("%1: too short: %2 bytes, a frame takes %3")
                              .arg(source.path())
                              .arg(file->size())
                              .arg(layout.frameBytes()));
    if (file->size() % layout.frameBytes() != 0)
        throw CameraError(QString("%1: %2 bytes are not a whole number of frames of %3 bytes")
                              .arg(source.path())
                              .arg(file->size())
                              .arg(layout.frameBytes()));
    const int depth = bits == 16 ? depthOfWords(*file, layout) : bits;
    return std::unique_ptr<Camera>(new RawFileCamera(std::move(file), layout, depth));
}

// Files of 16-bit words come from 12-bit cameras, or use the whole range: the first frame tells.
int RawFileCamera::depthOfWords(QFile& words, const Layout& how)
{
    const QByteArray frame = words.read(how.frameBytes());
    words.seek(0);
    for (int i = 0; i + 1 < frame.size(); i += 2) {
        if (qFromLittleEndian<quint16>(frame.constData() + i) > 4095)
            return 16;
    }
    return 12;
}

RawFileCamera::RawFileCamera(std::unique_ptr<QFile> opened, const Layout& how, int bits)
    : StreamingCamera(
          settingsOf(how.width, how.height, std::min(bits, 12), how.mirrorH, how.mirrorV))
    , file(std::move(opened))
    , layout(how)
    , depth(bits)
    , frameCount(std::uint64_t(file->size() / layout.frameBytes()))
{
}

RawFileCamera::~RawFileCamera()
{
    stop();
}

CameraInfo RawFileCamera::info() const
{
    CameraInfo info;
    info.name = "raw " + QFileInfo(file->fileName()).fileName();
    info.sensorWidth = layout.width;
    info.sensorHeight = layout.height;
    info.mosaic = layout.mosaic;
    info.frameCount = layout.loop ? 0 : frameCount;
    info.fixedGeometry = true;
    return info;
}

CameraSettings RawFileCamera::adjusted(const CameraSettings& wanted) const
{
    CameraSettings fixed = settingsOf(layout.width, layout.height, std::min(depth, 12),
                                      layout.mirrorH, layout.mirrorV);
    fixed.frameRate = std::clamp(wanted.frameRate, 0.0, 10000.0);
    return fixed;
}

bool RawFileCamera::fill(CameraFrame& frame, const CameraSettings&)
{
    if (file->pos() + layout.frameBytes() > file->size()) {
        if (!layout.loop || !file->seek(0))
            return false;
    }
    _FrameParams params{};
    params.width = layout.width;
    params.height = layout.height;
    params.decimation = 1;
    params.bitsPerPixel = 8;
    params.mirrorH = layout.mirrorH;
    params.mirrorV = layout.mirrorV;
    frame.mosaic = layout.mosaic;
    frame.raw.InitFrame(params, static_cast<unsigned char>(std::min(depth, 12)));
    const auto out = reinterpret_cast<char*>(frame.raw.getImageBuffer());
    if (file->read(out, layout.frameBytes()) != layout.frameBytes())
        throw CameraError(QString("%1: %2").arg(file->fileName(), file->errorString()));
    if (layout.storedBits > 8)
        narrowWords(frame.raw);
    return true;
}

// The image engine uses samples as table indices: none may lie above the depth's range.
void RawFileCamera::narrowWords(FrameEx2& frame) const
{
    auto* sample = reinterpret_cast<quint16*>(frame.getImageBuffer());
    const int shift = depth == 16 ? 4 : 0;
    const auto largest = static_cast<quint16>((1 << std::min(depth, 12)) - 1);
    const qint64 count = layout.frameBytes() / 2;
    for (qint64 i = 0; i < count; ++i) {
        const auto value = static_cast<quint16>(qFromLittleEndian(sample[i]) >> shift);
        sample[i] = std::min(value, largest);
    }
}
