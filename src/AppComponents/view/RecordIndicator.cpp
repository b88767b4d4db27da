#include <AppComponents/view/RecordIndicator.h>

#include <QFont>
#include <QTime>

#include <utility>

namespace
{

constexpr int tickMs = 500;

} // namespace

RecordIndicator::RecordIndicator(QGraphicsItem* parent)
    : QGraphicsObject(parent)
{
    textItem.setDefaultTextColor(Qt::black);
    textItem.setFont(QFont(QStringLiteral("Arial"), 12));
    textItem.setFlag(ItemIgnoresTransformations);
    connect(&timer, &QTimer::timeout, this, &RecordIndicator::timerTimeOut);
}

RecordIndicator::~RecordIndicator() = default;

void RecordIndicator::start()
{
    elapsedMs = 0;
    timer.setInterval(tickMs);
    timer.setSingleShot(false);
    // A tick that came a little early, or before the clock's, would round to the second before.
    timer.setTimerType(Qt::PreciseTimer);
    clock.start();
    timer.start();
    blinkOn = true;
    refresh();
    setVisible(true);
}

void RecordIndicator::stop()
{
    timer.stop();
    setVisible(false);
}

void RecordIndicator::setTitle(QString newTitle)
{
    title = std::move(newTitle);
    refresh();
}

void RecordIndicator::timerTimeOut()
{
    const int elapsed = clock.isValid() ? static_cast<int>(clock.elapsed()) : 0;
    blinkOn = !blinkOn;
    if (elapsed > 0)
        elapsedMs = elapsed;
    refresh();
}

void RecordIndicator::refresh()
{
    const QTime time = QTime(0, 0, 0, 0).addMSecs(elapsedMs + 500);
    const QString icon = blinkOn ? QStringLiteral(":/svg/icons/but-record.svg")
                                 : QStringLiteral(":/svg/icons/empty.svg");
    prepareGeometryChange();
    textItem.setHtml(
        QStringLiteral("<div style='background-color: rgba(255,255,255,0.4);'><img src=\"%0\" "
                       "alt=\"failed to load\"/> %1<br/>&nbsp;&nbsp; %2 </div>")
            .arg(icon)
            .arg(title)
            .arg(time.toString(QStringLiteral("hh'h' mm'm' ss's'"))));
}

QRectF RecordIndicator::boundingRect() const
{
    return textItem.boundingRect();
}

void RecordIndicator::paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) {}
