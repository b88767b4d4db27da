#pragma once

#include "cameras/CameraFactory.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <vector>

/// Keeps copies of the first frames that a camera delivers, and the events.
class CollectingSink : public FrameSink
{
public:
    struct Picture {
        _FrameParams params{};
        int depth = 0;
        int columns = 0;
        int rows = 0;
        bool mosaic = false;
        FrameStamp stamp;
        std::vector<int> samples;

        int at(int x, int y) const { return samples[std::size_t(y) * columns + x]; }
    };

    explicit CollectingSink(std::size_t frames)
        : wanted(frames)
    {
    }

    void frameArrived(PooledFrame frame) override
    {
        const std::lock_guard lock(mutex);
        if (pictures.size() < wanted)
            pictures.push_back(copyOf(*frame));
        changed.notify_all();
    }

    void streamChanged(StreamEvent event, const QString& detail) override
    {
        const std::lock_guard lock(mutex);
        events.push_back(event);
        details.push_back(detail);
        changed.notify_all();
    }

    /// Waits for the frames, or for the end of the stream.
    void wait()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return pictures.size() >= wanted || !events.empty(); });
    }

    void waitFor(StreamEvent event)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this, event] {
            return std::find(events.begin(), events.end(), event) != events.end();
        });
    }

    std::size_t count()
    {
        const std::lock_guard lock(mutex);
        return pictures.size();
    }

    std::vector<Picture> pictures;
    std::vector<StreamEvent> events;
    std::vector<QString> details;

private:
    static Picture copyOf(const CameraFrame& frame)
    {
        const FrameEx2& raw = frame.raw;
        Picture copy{
            raw.params, raw.rawBitDepth, raw.imgWidth, raw.imgHeight, frame.mosaic, frame.stamp,
            {}};
        for (int i = 0; i < raw.imgWidth * raw.imgHeight; ++i) {
            if (raw.rawBitDepth == 8)
                copy.samples.push_back(raw.getImageBuffer()[i]);
            else
                copy.samples.push_back(
                    reinterpret_cast<const std::uint16_t*>(raw.getImageBuffer())[i]);
        }
        return copy;
    }

    const std::size_t wanted;
    std::mutex mutex;
    std::condition_variable changed;
};

/// The first frames of a camera under the settings it has.
inline std::vector<CollectingSink::Picture> take(Camera& camera, std::size_t frames)
{
    CollectingSink sink(frames);
    camera.start(sink);
    sink.wait();
    camera.stop();
    return sink.pictures;
}

inline void writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot write a test's file");
}

inline QString flatPhoto(const QTemporaryDir& folder, QColor colour, int width = 48,
                         int height = 32)
{
    QImage image(width, height, QImage::Format_RGB888);
    image.fill(colour);
    const QString path = folder.filePath("flat.png");
    image.save(path);
    return path;
}

/// Smooth in both directions, so that every reconstruction method can follow it.
inline QImage smoothPhoto(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB888);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y,
                                QColor(30 + 180 * x / width, 60 + 120 * y / height,
                                       200 - 80 * (x + y) / (width + height)));
    }
    return image;
}
