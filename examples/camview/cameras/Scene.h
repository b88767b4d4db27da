#pragma once

#include <QImage>

#include <cstdint>
#include <vector>

/// What the simulated sensor looks at: light per sensor sample, 0 ... 65535 being full scale at
/// the reference exposure, seen through the sensor's colour filters where it has them.
class Scene
{
public:
    virtual ~Scene() = default;

    int width() const { return columns; }
    int height() const { return rows; }

    /// The whole sensor, row after row, at exposure number \p frame.
    virtual const std::uint16_t* light(std::uint64_t frame) = 0;

protected:
    Scene(int width, int height, bool isMosaic)
        : columns(width)
        , rows(height)
        , mosaic(isMosaic)
    {
    }

    /// What the filter over the sample at (x, y) lets through of a colour. The unmirrored
    /// sensor begins with the cell G B / R G.
    std::uint16_t filtered(int x, int y, const float rgb[3]) const;

    const int columns;
    const int rows;
    const bool mosaic;
};

/// A test chart with a ball that circles over it and a strip of fine detail that runs along its
/// lower edge.
class ChartScene : public Scene
{
public:
    ChartScene(int width, int height, bool isMosaic);
    const std::uint16_t* light(std::uint64_t frame) override;

private:
    struct Disc {
        int left;
        int top;
    };
    Disc discAt(std::uint64_t frame) const;
    void eraseDisc();
    void drawDisc(const Disc& disc);
    void drawStrip(std::uint64_t frame);

    const int discSize;
    const int stripTop;
    std::vector<std::uint16_t> chart; ///< without what moves
    std::vector<std::uint16_t> strip; ///< one row cell of the strip, twice the sensor wide
    std::vector<std::uint16_t> seen;  ///< the chart with what moves
    Disc drawn{0, 0};
};

/// A photograph. Its tone curve stays in: the neutral settings of the image engine show the
/// photograph as it was.
class PhotoScene : public Scene
{
public:
    /// Uses the photograph's largest part whose sides are multiples of 4 and 2.
    PhotoScene(const QImage& photograph, bool isMosaic);
    const std::uint16_t* light(std::uint64_t) override { return samples.data(); }

private:
    std::vector<std::uint16_t> samples;
};
