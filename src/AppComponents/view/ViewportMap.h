#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSizeF>
#include <QWidget>

#include <AppComponents/AppComponentsExport.h>

/// Where a point lies relative to the viewport's rectangle on the map.
enum PointRelativePosition {
    Outside = 0,
    Inside = 1,
    TopEdge = 2,
    BottomEdge = 3,
    LeftEdge = 4,
    RightEdge = 5,
    TopLeftCorner = 6,
    TopRightCorner = 7,
    BottomLeftCorner = 8,
    BottomRightCorner = 9
};

/// A small map of the camera's sensor on which the user moves and resizes the camera viewport.
///
/// A drag moves the rectangle, a click beside it centres it there, a drag of an edge or a corner
/// resizes it. On release the map asks for the viewport with `setCameraViewport`; its own
/// rectangle moves only when the application confirms with `setViewport`. The map is mirrored in
/// both axes unless `setFlipping` says otherwise. Before `setMaxVPSize` it paints nothing and
/// ignores the mouse. GUI thread only.
class APPCOMPONENTS_EXPORT ViewportMap : public QWidget
{
    Q_OBJECT

public:
    explicit ViewportMap(QWidget* parent = nullptr);
    ~ViewportMap() override;

    /// Sets the sensor's size in pixels; the longer side becomes 200 map pixels. Clears the map's
    /// picture. Ignored when a side is 0.
    void setMaxVPSize(int width, int height);

    /// The viewport in force, in sensor pixels.
    QRect getCameraViewport() const;

    /// Sets whether sensor and map are mirrored left-right and top-bottom to each other. The
    /// rectangle follows with the next `setViewport`.
    void setFlipping(bool newFlipX, bool newFlipY);

    /// Clears the map, draws \p image into the viewport in force and repaints.
    void drawOnViewPort(const QImage& image);

    /// Clears the map and draws \p image into \p rect, in sensor pixels, without repainting.
    void drawOnViewPort(const QImage& image, const QRect& rect);
    void drawOnViewPort(const QImage& image, int x, int y, int width, int height);

    /// Clears the map, whatever the rectangle, without repainting.
    void drawOnViewPort(int x, int y, int width, int height);

    /// Fills the whole map with \p color or \p image, without repainting.
    void fillBackground(const QColor& color);
    void fillBackground(const QImage& image);

public slots:
    /// Sets the viewport in force, in sensor pixels.
    void setViewport(int startX, int startY, int width, int height);

signals:
    /// Asks the application to set the camera's viewport, in sensor pixels; on every release.
    void setCameraViewport(int startX, int startY, int width, int height);

protected:
    static constexpr int widgetSize = 200;

    /// The map's rectangle, in map pixels, of a rectangle in sensor pixels.
    QRectF cameraToScreen(const QRect& rect) const;

    /// The way back, each value truncated toward zero.
    QRect screenToCamera(const QRectF& rect) const;

    /// Where \p point lies relative to the viewport's rectangle, within 5 map pixels.
    PointRelativePosition getPointPosition(const QPointF& point) const;

    /// Moves \p rect back onto the map, without changing its size.
    QRectF& matchViewPortMove(QRectF& rect) const;

    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool hasSize() const;
    QRectF mirrored(QRectF rect) const;
    QRectF resizedViewport(QPointF distance) const;

    QImage mapImage;
    QColor backgroundColor{127, 127, 127, 255};
    QByteArray mapPixels;
    QRect cameraViewport;
    QSizeF mapSize;
    QRectF screenViewport;
    QRectF dragRect;
    QPointF pressPos;
    double scale = 0.0;
    bool flipX = true;
    bool flipY = true;
    bool moving = false;
    bool resizing = false;
    PointRelativePosition resizeHandle = Outside;
};
