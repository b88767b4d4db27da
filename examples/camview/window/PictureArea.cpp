#include "PictureArea.h"

#include <QHBoxLayout>
#include <QMouseEvent>

#include <cmath>

PictureArea::PictureArea(QWidget* parent)
    : QWidget(parent)
    , view(new LifeView(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view);

    view->setAccessibleName(tr("Live picture"));
    darkenSurroundings();
    view->setFrameShape(QFrame::NoFrame);
    view->viewport()->setMouseTracking(true);
    view->viewport()->installEventFilter(this);
    view->scene()->addItem(&clipping);
    view->scene()->addItem(&crossHair);
    view->scene()->addItem(&measure);

    Ruller& ruler = view->getRuller();
    ruler.setZValue(4);
    connect(&ruler, &Ruller::rullerChanged, this, &PictureArea::rulerChanged);
    // Escape hides the ruler behind our back.
    connect(&ruler, &QGraphicsObject::visibleChanged, this, [this] {
        const bool shown = view->getRuller().isVisible();
        emit rulerShown(shown);
        emit rulerChanged(rulerLine());
    });
}

void PictureArea::darkenSurroundings()
{
    // Viewer::setBackground is for windows with a style sheet of their own: it colours the scroll
    // bars, too.
    QPalette colors = view->viewport()->palette();
    colors.setColor(QPalette::Base, QColor(40, 42, 45));
    view->viewport()->setPalette(colors);
}

PictureArea::~PictureArea()
{
    view->getRuller().disconnect(this);
    for (QGraphicsItem* item :
         {static_cast<QGraphicsItem*>(&clipping), static_cast<QGraphicsItem*>(&crossHair),
          static_cast<QGraphicsItem*>(&measure)})
        view->scene()->removeItem(item);
}

void PictureArea::setSensorSize(int width, int height)
{
    // The grid takes over the scene's size; only a picture of a new size takes it back.
    view->clearViewer();
    view->setMaxImageSize(width, height);
    rulerPlaced = false;
}

void PictureArea::showPicture(const LivePicture& picture)
{
    const QSize size = picture.image->size();
    // A fitted view stays fitted when the region changes. It is then the one without a drag mode.
    const bool refit =
        size != view->getBitmap().size() && view->dragMode() == QGraphicsView::NoDrag;
    view->viewFrame(picture.params, picture.image, picture.stamp.hostTime.count());
    if (refit)
        fit();
    crossHair.setPictureSize(size);
    measure.setPictureSize(size);
    if (clipping.isVisible())
        clipping.setMask(picture.clipping);
}

void PictureArea::fit()
{
    view->setMinZoom();
    emit view->showZoom(static_cast<float>(view->transform().m11())); // it says nothing itself
}

QLineF PictureArea::rulerLine()
{
    const Ruller& ruler = view->getRuller();
    if (!ruler.isVisible())
        return {};
    const QList<QGraphicsItem*> parts = ruler.childItems();
    return {parts.at(0)->pos(), parts.at(1)->pos()};
}

void PictureArea::placeRuler()
{
    const QRectF visible =
        view->mapToScene(view->viewport()->rect()).boundingRect() & view->sceneRect();
    const QList<QGraphicsItem*> parts = view->getRuller().childItems();
    const double y = std::round(visible.top() + visible.height() / 3);
    parts.at(0)->setPos(std::round(visible.left() + visible.width() / 4), y);
    parts.at(1)->setPos(std::round(visible.right() - visible.width() / 4), y);
}

void PictureArea::showRuler(bool shown)
{
    if (shown && !rulerPlaced && !view->getBitmap().isNull()) {
        placeRuler();
        rulerPlaced = true;
    }
    view->getRuller().setVisible(shown);
}

void PictureArea::showCrossHair(bool shown)
{
    crossHair.setVisible(shown);
}

void PictureArea::showClipping(bool shown)
{
    clipping.setVisible(shown);
    if (!shown)
        clipping.setMask(QImage());
}

void PictureArea::showMeasureFrame(bool shown)
{
    measure.setVisible(shown);
}

bool PictureArea::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseMove)
        reportHover(static_cast<QMouseEvent*>(event)->pos());
    else if (event->type() == QEvent::Leave)
        emit hovered(QPoint(-1, -1));
    return QWidget::eventFilter(watched, event);
}

void PictureArea::reportHover(const QPoint& viewPoint)
{
    const QPointF point = view->mapToScene(viewPoint);
    const QPoint pixel(static_cast<int>(std::floor(point.x())),
                       static_cast<int>(std::floor(point.y())));
    const bool inside = view->getBitmap().rect().contains(pixel);
    emit hovered(inside ? pixel : QPoint(-1, -1));
}
