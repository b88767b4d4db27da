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
    connect(&ruler, &Ruller::rullerChanged, this, [this] { emit rulerChanged(rulerLine()); });
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
    const bool resized = size != view->getBitmap().size();
    const bool refit = resized && view->dragMode() == QGraphicsView::NoDrag;
    view->viewFrame(picture.params, picture.image, picture.stamp.hostTime.count());
    if (refit)
        fit();
    crossHair.setPictureSize(size);
    measure.setPictureSize(size);
    if (resized)
        keepRulerReachable();
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
    const auto [first, second] = rulerEnds();
    return {first->pos(), second->pos()};
}

std::pair<QGraphicsItem*, QGraphicsItem*> PictureArea::rulerEnds()
{
    const QList<QGraphicsItem*> parts = view->getRuller().childItems();
    return {parts.at(0), parts.at(1)};
}

void PictureArea::setRulerLine(const QLineF& line)
{
    const QSizeF picture = view->getBitmap().size();
    const auto inside = [&](const QPointF& end) {
        return QPointF(qBound(0.0, end.x(), picture.width()),
                       qBound(0.0, end.y(), picture.height()));
    };
    const auto [first, second] = rulerEnds();
    first->setPos(inside(line.p1()));
    second->setPos(inside(line.p2()));
    emit rulerChanged(rulerLine()); // also when an end stays where it was
}

// A smaller region or a decimated read-out may leave the ends where no pointer gets.
void PictureArea::keepRulerReachable()
{
    Ruller& ruler = view->getRuller();
    if (!ruler.isVisible())
        return;
    setRulerLine(rulerLine());
    // Both ends in one corner are hard to take hold of.
    if (!rulerPlaced || rulerLine().isNull())
        placeRuler();
    ruler.updateRuller(); // the label's scale follows the decimation
}

void PictureArea::placeRuler()
{
    const QRectF visible =
        view->mapToScene(view->viewport()->rect()).boundingRect() & view->sceneRect();
    const double y = std::round(visible.top() + visible.height() / 3);
    setRulerLine({std::round(visible.left() + visible.width() / 4), y,
                  std::round(visible.right() - visible.width() / 4), y});
    rulerPlaced = true;
}

void PictureArea::showRuler(bool shown)
{
    view->getRuller().setVisible(shown);
    if (!view->getBitmap().isNull())
        keepRulerReachable();
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
