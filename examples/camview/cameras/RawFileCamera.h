#pragma once

#include "SourceText.h"
#include "StreamingCamera.h"

#include <QFile>

#include <memory>
#include <vector>

/// Raw frames from a file without a header, one after the other: 8-bit samples, or 16-bit
/// little-endian words with the value in the low bits.
class RawFileCamera : public StreamingCamera
{
public:
    static std::unique_ptr<Camera> open(const SourceText& source);
    ~RawFileCamera() override;

    CameraInfo info() const override;

protected:
    CameraSettings adjusted(const CameraSettings& wanted) const override;
    bool fill(CameraFrame& frame, const CameraSettings& now) override;
    bool exposesOnItsOwn() const override { return false; }

private:
    /// How the file holds its samples.
    struct Layout {
        int width = 0;
        int height = 0;
        int storedBits = 8; ///< 8, 10, 12 or 16; above 8 a sample takes two bytes
        bool mosaic = true;
        bool mirrorH = false;
        bool mirrorV = false;
        bool loop = false;

        qint64 frameBytes() const;
    };

    RawFileCamera(std::unique_ptr<QFile> opened, const Layout& how, int bits);
    static int depthOfWords(QFile& words, const Layout& how);
    void narrowWords(FrameEx2& frame) const;

    const std::unique_ptr<QFile> file;
    const Layout layout;
    const int depth; ///< bits per sample as delivered
    const std::uint64_t frameCount;
};
