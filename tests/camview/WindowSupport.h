#pragma once

#include "core/Camera.h"
#include "window/MainWindow.h"
#include "window/WindowLogs.h"

#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <memory>

namespace window_test
{

constexpr int patienceMs = 60000; // far more than any busy machine needs

/// Runs the event loop until \p condition holds. \return whether it came to hold
template <typename Condition>
bool eventually(Condition condition)
{
    return QTest::qWaitFor(condition, patienceMs);
}

/// A camera that does what the test says: frames come when they are asked for, from the test's
/// own thread.
class ScriptedCamera : public Camera
{
public:
    explicit ScriptedCamera(QString cameraName = "scripted")
        : name(std::move(cameraName))
    {
        current.region = {0, 0, 400, 300};
        current.bitDepth = 12;
    }

    CameraInfo info() const override
    {
        CameraInfo about;
        about.name = name;
        about.sensorWidth = 400;
        about.sensorHeight = 300;
        return about;
    }
    CameraSettings settings() const override { return current; }
    CameraSettings apply(const CameraSettings& wanted) override
    {
        current = wanted;
        return current;
    }
    void start(FrameSink& to) override { sink = &to; }
    void stop() override { sink = nullptr; }

    /// Sends a frame whose sample (x, y) is what \p level says.
    template <typename Level>
    void send(Level level)
    {
        PooledFrame frame = pool.take();
        _FrameParams params;
        params.posX = current.region.x;
        params.posY = current.region.y;
        params.width = current.region.width;
        params.height = current.region.height;
        params.decimation = current.decimation;
        params.bitsPerPixel = 8;
        frame->raw.InitFrame(params, static_cast<unsigned char>(current.bitDepth));
        frame->raw.invalidateFrame();
        auto* samples = reinterpret_cast<quint16*>(frame->raw.getImageBuffer());
        for (int y = 0; y < frame->raw.imgHeight; ++y)
            for (int x = 0; x < frame->raw.imgWidth; ++x)
                *samples++ = static_cast<quint16>(level(x, y));
        frame->mosaic = false;
        frame->stamp = {number++, hostNow(), hostNow()};
        sink->frameArrived(std::move(frame));
    }
    void announce(StreamEvent event, const QString& detail) { sink->streamChanged(event, detail); }

private:
    const QString name;
    CameraSettings current;
    FramePool pool;
    FrameSink* sink = nullptr;
    std::uint64_t number = 1;
};

/// A window with folders of its own.
struct OpenWindow {
    explicit OpenWindow(const QString& root, bool restore = true)
    {
        registerWindowLogs();
        WindowOptions options;
        options.settingsRoot = root + "/settings";
        options.outputFolder = root + "/output";
        options.restoreSettings = restore;
        window = std::make_unique<MainWindow>(options);
        window->show();
    }

    MainWindow* operator->() { return window.get(); }
    MainWindow& operator*() { return *window; }

    ScriptedCamera& useScriptedCamera()
    {
        auto camera = std::make_unique<ScriptedCamera>();
        ScriptedCamera& scripted = *camera;
        window->useCamera(std::move(camera), "scripted");
        return scripted;
    }

    /// Sends a frame and waits until it is shown.
    template <typename Level>
    bool show(ScriptedCamera& camera, Level level)
    {
        const std::uint64_t before = window->picturesShown();
        camera.send(level);
        return eventually([&] { return window->picturesShown() > before; });
    }

    bool waitForPictures(std::uint64_t more)
    {
        const std::uint64_t enough = window->picturesShown() + more;
        return eventually([&] { return window->picturesShown() >= enough; });
    }

    std::unique_ptr<MainWindow> window;
};

} // namespace window_test
