#include <AppComponents/view/Viewer.h>

#include <QClipboard>
#include <QGraphicsLineItem>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QMutexLocker>
#include <QPaintEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QThread>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr int gridStep = 100;
constexpr double closeUpLimit = 10.0; // picture pixels that stay visible in each direction
constexpr double wheelUnitsPerOctave = 480.0;

// A wheel event has two axes; the one that moved further counts, as in the classic one-axis event.
int classicDelta(const QWheelEvent& event)
{
    const QPoint delta = event.angleDelta();
    return std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
}

double area(const QSize& size)
{
    return static_cast<double>(static_cast<qint64>(size.width()) * size.height());
}

const QBrush& plainBrush(const QWidget& widget)
{
    return widget.palette().brush(widget.backgroundRole());
}

} // namespace

Viewer::Viewer(QWidget* parent)
    : QGraphicsView(parent)
{
    setDragMode(ScrollHandDrag);
    setTransformationAnchor(AnchorUnderMouse);
    setResizeAnchor(AnchorViewCenter);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setCacheMode(CacheNone);
    setScene(new QGraphicsScene(this));

    ruler.setVisible(false);
    scene()->addItem(&ruler);

    recordIndicator.setVisible(false);
    recordIndicator.setTitle(QStringLiteral("Recording"));
    recordIndicator.setPos(mapToScene(20, 20));
    scene()->addItem(&recordIndicator);
}

Viewer::~Viewer() = default;

QWidget* Viewer::getAsWidget()
{
    return this;
}

void Viewer::setBackground(QColor color)
{
    backgroundStyleSheet = QStringLiteral("background-color:%1;").arg(color.name());
    setStyleSheet(backgroundStyleSheet);
}

void Viewer::setBitmap(const QImage& image)
{
    const bool sizeChanged = replaceBitmap(image);
    // A slot may want the lock, for instance to take a copy of the new picture.
    if (sizeChanged)
        emitZoom();
    setEnabled(true);
    // Not the argument's size: the slot may have set another picture.
    if (sizeChanged && gridItem)
        gridItem->setRect(bitmap.rect());
    updateShowGrid();
    viewport()->update();
}

bool Viewer::replaceBitmap(const QImage& image)
{
    const QMutexLocker lock(&bitmapMutex);
    const bool sizeChanged = image.size() != bitmap.size();
    bitmap = image;
    if (sizeChanged) {
        const double zoom = currentZoom();
        scene()->setSceneRect(0, 0, bitmap.width(), bitmap.height());
        applyZoom(clampedZoom(zoom));
    }
    return sizeChanged;
}

QImage& Viewer::getBitmap()
{
    return bitmap;
}

QImage Viewer::getBitmapSafe()
{
    // Only the GUI thread replaces the bitmap, so it may read it without the lock. It must: a slot
    // that runs while this very thread holds the lock would wait for itself.
    if (QThread::currentThread() == thread())
        return bitmap.copy();
    const QMutexLocker lock(&bitmapMutex);
    return bitmap.copy();
}

Ruller& Viewer::getRuller()
{
    return ruler;
}

void Viewer::setMagnification(float magnification, QString unit)
{
    ruler.setMagnification(magnification, std::move(unit));
}

void Viewer::setMaxImageSize(int width, int height)
{
    if (width == maxImageWidth && height == maxImageHeight)
        return;
    maxImageWidth = width;
    maxImageHeight = height;
    reCreateGrid();
}

double Viewer::setZoom(double zoom)
{
    const double clamped = clampedZoom(zoom);
    applyZoom(clamped);
    emitZoom();
    return clamped;
}

void Viewer::scaleView(double factor)
{
    if (bitmap.isNull())
        return;
    fitted = false;

    QTransform prospective = transform();
    prospective.scale(factor, factor);
    const QRectF view(viewport()->rect());
    const QRectF sceneOnScreen = prospective.mapRect(sceneRect());
    const QRectF visible = prospective.inverted().mapRect(view);

    if (view.width() > sceneOnScreen.width() && view.height() > sceneOnScreen.height()) {
        setDragMode(NoDrag);
        setMinZoomInternal();
        fitted = true;
    } else if ((visible.width() > closeUpLimit && visible.height() > closeUpLimit) ||
               factor < 1.0) {
        setDragMode(ScrollHandDrag);
        scale(factor, factor);
        setFocus(Qt::OtherFocusReason);
    }
    emitZoom();
}

void Viewer::scaleViewIn()
{
    scaleView(zoomInFactor);
}

void Viewer::scaleViewOut()
{
    scaleView(zoomOutFactor);
}

void Viewer::setMinZoom()
{
    setDragMode(NoDrag);
    setMinZoomInternal();
    fitted = true;
}

void Viewer::setMinZoomInternal()
{
    const double zoom = std::min(viewport()->width() / sceneRect().width(),
                                 viewport()->height() / sceneRect().height());
    // Nothing to fit, or nowhere to fit it: a zoom of zero or infinity has no way back.
    if (std::isfinite(zoom) && zoom > 0)
        applyZoom(zoom);
}

void Viewer::setMaxZoom()
{
    setZoom(maxZoom);
}

void Viewer::fitIn()
{
    fitInView(sceneRect(), Qt::KeepAspectRatio);
    emitZoom();
}

void Viewer::clearViewer()
{
    recordIndicator.stop();
    setBitmap(QImage());
    setZoom(1.0);
    setEnabled(false);
    viewport()->update();
}

void Viewer::copyImageToBuffer()
{
    const QMutexLocker lock(&bitmapMutex);
    if (!bitmap.isNull())
        QGuiApplication::clipboard()->setImage(bitmap, QClipboard::Clipboard);
}

void Viewer::showRecordVideo(bool show)
{
    if (show)
        recordIndicator.start();
    else
        recordIndicator.stop();
}

void Viewer::onShowGrid(bool show)
{
    showGrid = show;
    updateShowGrid();
}

void Viewer::sceneModified(QList<QRectF>) {}

void Viewer::reCreateGrid()
{
    gridItem.reset();
    if (maxImageWidth == 0 && maxImageHeight == 0) {
        updateShowGrid();
        return;
    }

    const double zoom = currentZoom();
    const QRectF extent(0, 0, maxImageWidth, maxImageHeight);
    gridItem = std::make_unique<QGraphicsRectItem>(extent);
    scene()->setSceneRect(extent);
    applyZoom(clampedZoom(zoom));
    emitZoom();
    // A slot may have asked for another size, and that grid is complete already.
    if (!gridItem || gridItem->scene())
        return;

    addGridLines();
    // The grid keeps its lines where the picture is smaller; they are cut at the picture's edge.
    gridItem->setFlag(QGraphicsItem::ItemClipsChildrenToShape);
    updateShowGrid();
    scene()->addItem(gridItem.get());
}

void Viewer::addGridLines()
{
    for (int x = gridStep; x < maxImageWidth; x += gridStep)
        new QGraphicsLineItem(x, 0, x, maxImageHeight, gridItem.get());
    for (int y = gridStep; y < maxImageHeight; y += gridStep)
        new QGraphicsLineItem(0, y, maxImageWidth, y, gridItem.get());
}

void Viewer::updateShowGrid()
{
    if (gridItem)
        gridItem->setVisible(showGrid && !bitmap.isNull());
}

void Viewer::mousePressEvent(QMouseEvent* event)
{
    if (QGuiApplication::keyboardModifiers() & Qt::ShiftModifier) {
        event->ignore();
        return;
    }
    QGraphicsView::mousePressEvent(event);
}

void Viewer::wheelEvent(QWheelEvent* event)
{
    scaleView(std::exp2(classicDelta(*event) / wheelUnitsPerOctave));
}

void Viewer::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        scaleView(zoomInFactor);
        break;
    case Qt::Key_Minus:
        scaleView(zoomOutFactor);
        break;
    case Qt::Key_Escape:
        ruler.setVisible(false);
        break;
    default:
        // Every other key counts twice: an arrow key scrolls two steps.
        QGraphicsView::keyPressEvent(event);
        break;
    }
    QGraphicsView::keyPressEvent(event);
}

void Viewer::resizeEvent(QResizeEvent* event)
{
    const QSize size = event->size();
    if (!size.isEmpty()) {
        const QSize previous = std::exchange(lastSize, size);
        if (previous.isEmpty() || fitted)
            setMinZoom();
        else
            scaleView(std::sqrt(area(size) / area(previous)));
    }
    QGraphicsView::resizeEvent(event);
    emitZoom();
}

void Viewer::paintEvent(QPaintEvent* event)
{
    const bool erasedByQt = !viewport()->testAttribute(Qt::WA_OpaquePaintEvent);
    if (!erasedByQt)
        eraseAroundPicture(event->region());

    opaquePictureDrawn = false;
    QGraphicsView::paintEvent(event);

    const bool eraseNext = opaquePictureDrawn && hasPlainBackground();
    if (eraseNext == erasedByQt) {
        viewport()->setAttribute(Qt::WA_OpaquePaintEvent, eraseNext);
        if (!eraseNext)
            viewport()->update();
    }
}

// Qt would clear the whole viewport before each frame, only to have it covered by the picture.
// While a picture is shown, the viewport therefore passes as opaque and is cleared here where no
// picture comes.
void Viewer::eraseAroundPicture(const QRegion& exposed)
{
    const QRegion uncovered = exposed - coveredByPicture();
    if (uncovered.isEmpty())
        return;
    QPainter painter(viewport());
    for (const QRect& rect : uncovered)
        painter.fillRect(rect, plainBrush(*viewport()));
}

// Whether one opaque brush is all that Qt would paint: not so with a style sheet of the
// application, which may hold pictures and borders.
bool Viewer::hasPlainBackground() const
{
    const bool coloured = !backgroundStyleSheet.isEmpty() && styleSheet() == backgroundStyleSheet;
    const bool oneBrush = coloured || viewport()->autoFillBackground();
    return oneBrush && plainBrush(*viewport()).isOpaque();
}

// Without the outermost pixels, which a picture at a fraction of a pixel may leave uncovered.
QRect Viewer::coveredByPicture() const
{
    if (bitmap.isNull() || bitmap.hasAlphaChannel() || isTurned())
        return {};
    const QRectF shown = viewportTransform().mapRect(QRectF(bitmap.rect()));
    return shown.intersected(viewport()->rect().adjusted(-2, -2, 2, 2))
        .toAlignedRect()
        .adjusted(1, 1, -1, -1);
}

// Whether the picture's edges are not those of the screen.
bool Viewer::isTurned() const
{
    return viewportTransform().type() > QTransform::TxScale;
}

void Viewer::drawBackground(QPainter* painter, const QRectF& rect)
{
    QGraphicsView::drawBackground(painter, rect);
    if (bitmap.isNull())
        return;
    {
        const QMutexLocker lock(&bitmapMutex);
        const double shownWidth = transform().mapRect(sceneRect()).width();
        painter->setRenderHint(QPainter::SmoothPixmapTransform, bitmap.width() > shownWidth);
        // Into its rectangle: a picture's own device pixel ratio must not shrink it.
        painter->drawImage(QRectF(bitmap.rect()), bitmap);
    }
    opaquePictureDrawn = !bitmap.hasAlphaChannel();
    recordIndicator.setPos(mapToScene(5, 5));
}

double Viewer::currentZoom() const
{
    return transform().m11();
}

double Viewer::clampedZoom(double zoom) const
{
    return std::min(std::max(minZoom, zoom), maxZoom);
}

void Viewer::applyZoom(double zoom)
{
    resetTransform();
    scale(zoom, zoom);
}

void Viewer::emitZoom()
{
    emit showZoom(static_cast<float>(currentZoom()));
}
