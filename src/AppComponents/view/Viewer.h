#pragma once

#include <QColor>
#include <QGraphicsView>
#include <QImage>
#include <QList>
#include <QMutex>
#include <QRectF>
#include <QSize>
#include <QString>

#include <memory>

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/view/RecordIndicator.h>
#include <AppComponents/view/Ruller.h>

/// A zoomable, scrollable view of a picture with a measuring ruler, a recording indicator and a
/// grid of 100-pixel squares.
///
/// The picture is painted as the background of the view's own scene; one scene unit is one pixel
/// of the picture. The view is either *fitted* (whole picture visible, refitted on each resize) or
/// *free* (the left button scrolls, the zoom follows the displayed area on a resize); it starts
/// fitted. The wheel and the keys + and - zoom, Escape hides the ruler.
///
/// GUI thread only, except `getBitmapSafe`, which any thread may call.
class APPCOMPONENTS_EXPORT Viewer : public QGraphicsView
{
    Q_OBJECT

public:
    explicit Viewer(QWidget* parent = nullptr);
    ~Viewer() override;

    /// The viewer as a plain widget.
    virtual QWidget* getAsWidget();

    /// Colours what the picture does not cover, through the widget's style sheet.
    virtual void setBackground(QColor color);

    /// Shows \p image, which is shared, not copied, and enables the widget. A picture of the same
    /// size keeps zoom and scroll position; one of a new size keeps the zoom, clamped to 0.1 … 20,
    /// and becomes the scene's rectangle.
    void setBitmap(const QImage& image);

    /// The picture itself, without a lock: GUI thread only.
    QImage& getBitmap();

    /// A deep copy of the picture, for any thread. A slot of one of the viewer's signals may call
    /// it.
    QImage getBitmapSafe();

    /// The ruler, hidden until the application shows it.
    Ruller& getRuller();

    /// Sets how the ruler labels lengths: measured units per picture pixel and the unit's text.
    void setMagnification(float magnification, QString unit);

    /// Sets the extent of grid and scene, in pixels; 0 × 0 removes the grid.
    void setMaxImageSize(int width, int height);

    /// Sets the zoom, clamped to 0.1 … 20 screen pixels per picture pixel.
    /// \return the clamped zoom
    double setZoom(double zoom);

    /// Multiplies the zoom by \p factor. Below the fit zoom the view becomes fitted; a step after
    /// which 10 picture pixels or fewer would remain visible in a direction is refused.
    void scaleView(double factor);
    void scaleViewIn();
    void scaleViewOut();

    /// Makes the view fitted.
    void setMinZoom();

    /// Zooms to 20.
    void setMaxZoom();

    /// Zooms so that the whole picture is visible, without making the view fitted.
    void fitIn();

public slots:
    /// Removes the picture, stops the recording indicator and disables the widget until the next
    /// picture.
    void clearViewer();

    /// Puts the picture, when there is one, on the system clipboard.
    void copyImageToBuffer();

    /// Starts or stops the recording indicator.
    void showRecordVideo(bool show);

    /// Shows the grid, as soon as it and a picture exist, or hides it.
    void onShowGrid(bool show);

signals:
    /// For the class's users; the viewer itself does not emit it.
    void groupAdded(QString keyName, bool showState);

    /// For the class's users; the viewer itself does not emit it.
    void groupStateChanged(QString keyName, bool showState);

    /// The zoom, in screen pixels per picture pixel, after a change and after each resize.
    void showZoom(float zoom);

protected:
    /// Computes and applies the fit zoom.
    virtual void setMinZoomInternal();

    void reCreateGrid();
    void updateShowGrid();

    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void drawBackground(QPainter* painter, const QRectF& rect) override;

protected slots:
    /// Does nothing; for subclasses that watch their scene.
    void sceneModified(QList<QRectF> regions);

private:
    double currentZoom() const;
    double clampedZoom(double zoom) const;
    void applyZoom(double zoom);
    void emitZoom();
    bool replaceBitmap(const QImage& image);
    void addGridLines();
    void eraseAroundPicture(const QRegion& exposed);
    bool hasPlainBackground() const;
    QRect coveredByPicture() const;
    bool isTurned() const;

    CLogAccessor log;
    QMutex bitmapMutex;
    std::unique_ptr<QGraphicsRectItem> gridItem;
    QImage bitmap;
    int maxImageWidth = 0;
    int maxImageHeight = 0;
    double minZoom = 0.1;
    double maxZoom = 20.0;
    QSize lastSize;
    bool fitted = true;
    RecordIndicator recordIndicator;
    Ruller ruler;
    double zoomInFactor = 1.2;
    double zoomOutFactor = 0.8;
    bool showGrid = false;
    QString backgroundStyleSheet;
    bool opaquePictureDrawn = false; ///< by the repaint that runs or ran last
};
