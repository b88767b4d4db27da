// GLib's headers come before Qt's, whose keyword macros they would stumble over.
#include <arv.h>

#include "GenicamDevice.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr std::size_t streamBuffers = 16;
constexpr guint64 waitMicroseconds = 50000;

/// Collects what Aravis reports through its error argument.
class Error
{
public:
    Error() = default;
    Error(const Error&) = delete;
    Error& operator=(const Error&) = delete;
    ~Error() { g_clear_error(&error); }

    operator GError**() // NOLINT(google-explicit-constructor): stands for the argument
    {
        g_clear_error(&error);
        return &error;
    }

    QString text() const { return error ? QString::fromUtf8(error->message) : QString(); }

    void raise(const char* what) const
    {
        if (error)
            throw CameraError(QString("%1: %2").arg(what, text()));
    }

private:
    GError* error = nullptr;
};

int roundDown(int value, int smallest, int step)
{
    return smallest + (value - smallest) / std::max(step, 1) * std::max(step, 1);
}

int fit(int value, gint smallest, gint largest, gint step)
{
    return roundDown(std::clamp(value, int(smallest), std::max(int(smallest), int(largest))),
                     smallest, step);
}

bool has(ArvCamera* camera, const char* feature)
{
    return arv_camera_is_feature_available(camera, feature, nullptr);
}

bool booleanOf(ArvCamera* camera, const char* feature)
{
    return has(camera, feature) && arv_camera_get_boolean(camera, feature, nullptr);
}

} // namespace

void GenicamDevice::Unref::operator()(void* object) const
{
    g_object_unref(object);
}

QStringList GenicamDevice::list()
{
    arv_update_device_list();
    QStringList names;
    for (unsigned i = 0; i < arv_get_n_devices(); ++i)
        names.append(QString::fromUtf8(arv_get_device_id(i)));
    return names;
}

GenicamDevice::GenicamDevice(const QString& wanted)
{
    // What was found earlier may be gone, and what is new is not known yet.
    const QStringList found = list();
    if (wanted.isEmpty() && found.isEmpty())
        throw CameraError("no camera found");
    name = wanted.isEmpty() ? found.constFirst() : wanted;
    Error error;
    camera.reset(arv_camera_new(name.toUtf8().constData(), error));
    if (!camera)
        throw CameraError(QString("no camera \"%1\": %2").arg(name, error.text()));
    guint count = 0;
    gint64* const codes = arv_camera_dup_available_pixel_formats(camera.get(), &count, error);
    for (guint i = 0; i < count; ++i) {
        if (const PixelFormat* format = PixelFormat::byCode(std::uint32_t(codes[i])))
            formats.push_back(format);
    }
    g_free(codes);
    if (formats.empty())
        throw CameraError("the camera offers no pixel format that camview takes");
    // A camera with a mosaic may offer monochrome formats besides: its mosaic comes first.
    const bool mosaic = std::any_of(formats.begin(), formats.end(),
                                    [](const PixelFormat* format) { return format->phase; });
    const auto last =
        std::remove_if(formats.begin(), formats.end(), [&](const PixelFormat* format) {
            return format->phase.has_value() != mosaic;
        });
    formats.erase(last, formats.end());
    std::sort(formats.begin(), formats.end()); // the table's order, least work first
    g_signal_connect(arv_camera_get_device(camera.get()), "control-lost",
                     G_CALLBACK(+[](ArvDevice*, std::atomic<bool>* flag) { *flag = true; }), &lost);
    choosePixelFormat(settings().bitDepth);
}

GenicamDevice::~GenicamDevice()
{
    stopStream();
    if (camera)
        g_signal_handlers_disconnect_by_data(arv_camera_get_device(camera.get()), &lost);
}

bool GenicamDevice::hasShortFrameIds() const
{
    return arv_camera_is_gv_device(camera.get());
}

CameraInfo GenicamDevice::info() const
{
    Error error;
    CameraInfo info;
    info.name = name;
    gint width = 0;
    gint height = 0;
    arv_camera_get_sensor_size(camera.get(), &width, &height, error);
    error.raise("sensor size");
    info.sensorWidth = width;
    info.sensorHeight = height;
    info.mosaic = formats.front()->phase.has_value();
    info.live = true;
    return info;
}

CameraSettings GenicamDevice::settings() const
{
    ArvCamera* const device = camera.get();
    Error error;
    CameraSettings now;
    arv_camera_get_region(device, &now.region.x, &now.region.y, &now.region.width,
                          &now.region.height, error);
    error.raise("region");
    if (has(device, "DecimationHorizontal"))
        now.decimation = int(arv_camera_get_integer(device, "DecimationHorizontal", nullptr));
    now.region.width *= now.decimation;
    now.region.height *= now.decimation;
    if (const auto* format =
            PixelFormat::byCode(std::uint32_t(arv_camera_get_pixel_format(device, nullptr))))
        now.bitDepth = format->bitDepth;
    now.mirrorH = booleanOf(device, "ReverseX");
    now.mirrorV = booleanOf(device, "ReverseY");
    if (arv_camera_is_exposure_time_available(device, nullptr))
        now.exposureMs = arv_camera_get_exposure_time(device, nullptr) / 1000;
    if (arv_camera_is_gain_available(device, nullptr))
        now.gainDb = arv_camera_get_gain(device, nullptr);
    if (arv_camera_is_frame_rate_available(device, nullptr))
        now.frameRate = arv_camera_get_frame_rate(device, nullptr);
    return now;
}

void GenicamDevice::applyExposure(const CameraSettings& wanted)
{
    ArvCamera* const device = camera.get();
    Error error;
    double smallest = 0;
    double largest = 0;
    if (arv_camera_is_exposure_time_available(device, nullptr)) {
        arv_camera_get_exposure_time_bounds(device, &smallest, &largest, error);
        const double time =
            std::clamp(wanted.exposureMs * 1000, smallest, std::max(smallest, largest));
        arv_camera_set_exposure_time(device, time, error);
        error.raise("exposure");
    }
    if (arv_camera_is_gain_available(device, nullptr)) {
        arv_camera_get_gain_bounds(device, &smallest, &largest, error);
        arv_camera_set_gain(
            device, std::clamp(wanted.gainDb, smallest, std::max(smallest, largest)), error);
        error.raise("gain");
    }
    if (wanted.frameRate > 0 && arv_camera_is_frame_rate_available(device, nullptr)) {
        arv_camera_get_frame_rate_bounds(device, &smallest, &largest, error);
        arv_camera_set_frame_rate(
            device, std::clamp(wanted.frameRate, smallest, std::max(smallest, largest)), error);
        error.raise("frame rate");
    }
}

void GenicamDevice::applyGeometry(const CameraSettings& wanted)
{
    ArvCamera* const device = camera.get();
    if (has(device, "ReverseX"))
        arv_camera_set_boolean(device, "ReverseX", wanted.mirrorH, nullptr);
    if (has(device, "ReverseY"))
        arv_camera_set_boolean(device, "ReverseY", wanted.mirrorV, nullptr);
    choosePixelFormat(wanted.bitDepth);
    setDecimation(std::max(1, std::abs(wanted.decimation)));
    setRegion(wanted);
}

void GenicamDevice::choosePixelFormat(int bitDepth)
{
    const auto nearest = std::min_element(
        formats.begin(), formats.end(), [bitDepth](const PixelFormat* a, const PixelFormat* b) {
            return std::abs(a->bitDepth - bitDepth) < std::abs(b->bitDepth - bitDepth);
        });
    Error error;
    arv_camera_set_pixel_format(camera.get(), ArvPixelFormat((*nearest)->code), error);
    error.raise("pixel format");
}

void GenicamDevice::setDecimation(int decimation)
{
    for (const char* feature : {"DecimationHorizontal", "DecimationVertical"}) {
        if (has(camera.get(), feature))
            arv_camera_set_integer(camera.get(), feature, decimation, nullptr);
    }
}

void GenicamDevice::setRegion(const CameraSettings& wanted)
{
    ArvCamera* const device = camera.get();
    Error error;
    // From the origin the size may be what it likes; then the place may.
    if (arv_camera_is_region_offset_available(device, nullptr))
        arv_camera_set_region(device, 0, 0, -1, -1, nullptr);
    const int decimation = settings().decimation;
    gint smallest = 0;
    gint largest = 0;
    const auto side = [&](int value, auto bounds, auto increment) {
        bounds(device, &smallest, &largest, error);
        error.raise("region");
        return fit(value, smallest, largest, increment(device, nullptr));
    };
    const int width = side(wanted.region.width / decimation, arv_camera_get_width_bounds,
                           arv_camera_get_width_increment);
    const int height = side(wanted.region.height / decimation, arv_camera_get_height_bounds,
                            arv_camera_get_height_increment);
    arv_camera_set_region(device, -1, -1, width, height, error);
    error.raise("region");
    if (!arv_camera_is_region_offset_available(device, nullptr))
        return;
    const int x =
        side(wanted.region.x, arv_camera_get_x_offset_bounds, arv_camera_get_x_offset_increment);
    const int y =
        side(wanted.region.y, arv_camera_get_y_offset_bounds, arv_camera_get_y_offset_increment);
    arv_camera_set_region(device, x, y, -1, -1, error);
    error.raise("region");
}

// Raw packet sockets do not see what stays inside the machine.
bool GenicamDevice::reachedByLoopback() const
{
    ArvDevice* const device = arv_camera_get_device(camera.get());
    if (!ARV_IS_GV_DEVICE(device))
        return false;
    GSocketAddress* const address = arv_gv_device_get_device_address(ARV_GV_DEVICE(device));
    if (!G_IS_INET_SOCKET_ADDRESS(address))
        return false;
    return g_inet_address_get_is_loopback(
        g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address)));
}

void GenicamDevice::startStream()
{
    ArvCamera* const device = camera.get();
    Error error;
    if (reachedByLoopback())
        arv_camera_gv_set_stream_options(device, ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    stream.reset(arv_camera_create_stream(device, nullptr, nullptr, error));
    if (!stream)
        throw CameraError(QString("stream: %1").arg(error.text()));
    // As much room for packets as the system grants: frames come in bursts.
    if (ARV_IS_GV_STREAM(stream.get()))
        g_object_set(stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_AUTO, nullptr);
    const guint payload = arv_camera_get_payload(device, error);
    error.raise("stream");
    for (std::size_t i = 0; i < streamBuffers; ++i)
        arv_stream_push_buffer(stream.get(), arv_buffer_new_allocate(payload));
    arv_camera_set_acquisition_mode(device, ARV_ACQUISITION_MODE_CONTINUOUS, nullptr);
    arv_camera_start_acquisition(device, error);
    error.raise("start");
}

void GenicamDevice::stopStream()
{
    if (!stream)
        return;
    if (!lost)
        arv_camera_stop_acquisition(camera.get(), nullptr);
    returnBuffer();
    stream.reset();
}

void GenicamDevice::returnBuffer()
{
    if (buffer)
        arv_stream_push_buffer(stream.get(), buffer);
    buffer = nullptr;
}

GenicamDevice::Receipt GenicamDevice::receive(GenicamImage& image)
{
    returnBuffer();
    buffer = arv_stream_timeout_pop_buffer(stream.get(), waitMicroseconds);
    if (!buffer)
        return Receipt::Nothing;
    receivedId = arv_buffer_get_frame_id(buffer);
    return readImage(image) ? Receipt::Image : Receipt::Incomplete;
}

bool GenicamDevice::readImage(GenicamImage& image) const
{
    if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS)
        return false;
    std::size_t bytes = 0;
    image.data = static_cast<const std::uint8_t*>(arv_buffer_get_image_data(buffer, &bytes));
    image.format = PixelFormat::byCode(std::uint32_t(arv_buffer_get_image_pixel_format(buffer)));
    arv_buffer_get_image_region(buffer, &image.x, &image.y, &image.columns, &image.rows);
    image.id = receivedId;
    image.time = std::chrono::nanoseconds(arv_buffer_get_timestamp(buffer));
    return image.data && image.format && image.columns > 0 && image.rows > 0 &&
           image.format->bytesFor(std::size_t(image.columns) * image.rows) <= bytes;
}
