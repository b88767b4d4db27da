#pragma once

#include "PixelFormat.h"
#include "core/Camera.h"

#include <QStringList>

#include <atomic>
#include <memory>
#include <vector>

typedef struct _ArvBuffer ArvBuffer;
typedef struct _ArvCamera ArvCamera;
typedef struct _ArvStream ArvStream;

/// One complete picture as a GenICam camera sent it, valid during the call that hands it over.
struct GenicamImage {
    const std::uint8_t* data;
    const PixelFormat* format;
    int x; ///< place of the picture on the sensor, in sensor pixels
    int y;
    int columns;
    int rows;
    std::uint64_t id; ///< the camera's number of the frame
    std::chrono::nanoseconds time;
};

/// An open connection to a camera through Aravis, with the camera's features in camview's terms.
/// Used by one thread at a time. All operations throw CameraError when the camera does not
/// answer, unless noted.
class GenicamDevice
{
public:
    static QStringList list();

    /// \param wanted a name of list(), an address, or empty for the first camera found
    explicit GenicamDevice(const QString& wanted);
    GenicamDevice(const GenicamDevice&) = delete;
    GenicamDevice& operator=(const GenicamDevice&) = delete;
    ~GenicamDevice();

    CameraInfo info() const;
    /// Frame numbers wrap around at 65535 and leave 0 out, as GigE Vision's do.
    bool hasShortFrameIds() const;

    CameraSettings settings() const;
    /// Sets what may change while the camera streams: exposure, gain and frame rate.
    void applyExposure(const CameraSettings& wanted);
    /// Sets the rest; the camera must not stream.
    void applyGeometry(const CameraSettings& wanted);

    void startStream();
    void stopStream();

    enum class Receipt { Image, Nothing, Incomplete };
    /// Waits shortly for the next picture. Never throws.
    /// \param image valid until the next call
    Receipt receive(GenicamImage& image);
    /// The number of the incomplete or complete frame received last.
    std::uint64_t lastId() const { return receivedId; }

    /// The camera does not answer any more. Any thread may ask.
    bool isLost() const { return lost; }

private:
    struct Unref {
        void operator()(void* object) const;
    };

    void choosePixelFormat(int bitDepth);
    void setRegion(const CameraSettings& wanted);
    void setDecimation(int decimation);
    void returnBuffer();
    bool readImage(GenicamImage& image) const;
    bool reachedByLoopback() const;

    QString name;
    std::unique_ptr<ArvCamera, Unref> camera;
    std::unique_ptr<ArvStream, Unref> stream;
    ArvBuffer* buffer = nullptr; ///< the one handed out last, owned until it goes back
    std::uint64_t receivedId = 0;
    std::vector<const PixelFormat*> formats;
    std::atomic<bool> lost{false};
};
