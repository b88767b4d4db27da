#pragma once

#include <QColor>
#include <QElapsedTimer>
#include <QGraphicsRectItem>
#include <QImage>
#include <QMetaType>
#include <QPoint>
#include <QPointF>
#include <QSharedPointer>
#include <QString>

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/frames/FrameEx2.h>
#include <AppComponents/view/ViewPort.h>
#include <AppComponents/view/Viewer.h>

/// Shows the camera's running picture and turns the mouse into requests in sensor coordinates.
///
/// Dragging the fitted picture moves the camera viewport, a Shift-drag selects a new one, hovering
/// reports the sensor position, releasing reports the colour under the mouse, a double-click asks
/// for full screen. Nothing changes by itself: the application answers a request by sending frames
/// with the new viewport. GUI thread only; frames of a camera thread come through a queued
/// connection to `viewFrame`, whose argument types are registered when the library is loaded.
class APPCOMPONENTS_EXPORT LifeView : public Viewer
{
    Q_OBJECT

public:
    explicit LifeView(QWidget* parent = nullptr);
    ~LifeView() override;

    /// Sets the measured units per sensor pixel and the unit's text. The ruler, which measures
    /// picture pixels, gets the product with the decimation.
    void setMagnification(float newMagnification, QString unit);

public slots:
    /// Shows one frame.
    /// \param frameParams where on the sensor the picture comes from
    /// \param pImg        the picture, never null; shared, not copied
    /// \param fillTime    not used
    void viewFrame(TFrameParams frameParams, QSharedPointer<QImage> pImg, qlonglong fillTime);

signals:
    /// The sensor position under the mouse, (-1, -1) outside the picture; on every mouse move.
    void sensorePosition(QPointF p);

    /// The colour of the pixel under the mouse when a button is released, invalid outside the
    /// picture.
    void pinColor(QColor);

    /// Asks the application to set the camera's viewport.
    void setCameraViewport(ViewPort vp);

    /// Asks for a switch between full screen and window.
    void toggleFullScreen();

    /// The measured display rate in frames per second, at most about once per second.
    void showViewFramerate(float fps);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    enum MouseMode { NoGesture = 0, MovingViewport = 1, SelectingRectangle = 2 };

    void beginSelection(const QPointF& scenePos);
    void requestMovedViewport(const QPointF& scenePos);
    void requestSelectedViewport();
    void reportSensorPosition(const QPointF& scenePos);
    void reportColor(const QPointF& scenePos);
    void countFrame();
    QPointF clampedToScene(const QPointF& scenePos) const;
    QPoint scaledByDecimation(const QPointF& scenePos) const;

    QPoint dragStartOrigin;
    QString magnificationUnit;
    float magnification = 1.0F;
    QPointF pressScenePos;
    ViewPort cameraViewport;
    int decimation = 1;
    bool mirrorH = false;
    bool mirrorV = false;
    MouseMode mouseMode = NoGesture;
    QGraphicsRectItem selectionRect;
    QElapsedTimer fpsClock;
    int frameCount = 0;
};

Q_DECLARE_METATYPE(QSharedPointer<QImage>)
