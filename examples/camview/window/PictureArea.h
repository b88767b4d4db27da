#pragma once

#include "ClippingOverlay.h"
#include "CrossHair.h"
#include "LivePicture.h"
#include "MeasureFrame.h"

#include <AppComponents/view/LifeView.h>

#include <QWidget>

#include <utility>

/// The live view with what camview lays over the picture: cross hair, clipping, measured
/// rectangle. The view's own overlays, ruler and grid, are switched here too.
class PictureArea : public QWidget
{
    Q_OBJECT

public:
    explicit PictureArea(QWidget* parent = nullptr);
    ~PictureArea() override;

    LifeView& liveView() { return *view; }
    MeasureFrame& measureFrame() { return measure; }

    /// Prepares for pictures of a sensor of this size.
    void setSensorSize(int width, int height);
    void showPicture(const LivePicture& picture);

    /// The ruler's line in picture pixels; null while it is hidden.
    QLineF rulerLine();
    /// Moves the ruler's ends, in picture pixels, as far as the picture goes.
    void setRulerLine(const QLineF& line);

public slots:
    /// Shows the whole picture, and keeps to it when the window or the region is resized.
    void fit();
    void showRuler(bool shown);
    void showCrossHair(bool shown);
    void showClipping(bool shown);
    void showMeasureFrame(bool shown);

signals:
    /// The picture's pixel under the pointer; (-1, -1) outside.
    void hovered(const QPoint& pixel);
    /// The ruler was moved, shown or hidden.
    void rulerChanged(const QLineF& line);
    void rulerShown(bool shown);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void darkenSurroundings();
    void placeRuler();
    void keepRulerReachable();
    std::pair<QGraphicsItem*, QGraphicsItem*> rulerEnds();
    void reportHover(const QPoint& viewPoint);

    LifeView* view;
    // After the view: the items leave its scene before the scene is gone.
    CrossHair crossHair;
    ClippingOverlay clipping;
    MeasureFrame measure;
    bool rulerPlaced = false;
};
