#include <AppComponents/view/RecordIndicator.h>
#include <AppComponents/view/Ruller.h>

#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QPainter>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace
{

QGraphicsItem& child(const QGraphicsItem& parent, int index)
{
    return *parent.childItems().at(index);
}

QGraphicsTextItem& labelOf(const Ruller& ruler)
{
    return static_cast<QGraphicsTextItem&>(child(ruler, 2));
}

void place(Ruller& ruler, QPointF first, QPointF second)
{
    child(ruler, 0).setPos(first);
    child(ruler, 1).setPos(second);
}

// The item alone on white, with its origin in the middle of a 41 x 41 picture.
QImage painted(QGraphicsItem& item)
{
    QImage picture(41, 41, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.translate(20, 20);
    item.paint(&painter, nullptr, nullptr);
    return picture;
}

bool isRed(const QImage& picture, QPointF fromCentre)
{
    return picture.pixelColor((QPointF(20, 20) + fromCentre).toPoint()) == QColor(Qt::red);
}

// A slanted line may pass half a pixel beside its ideal place.
bool isRedNear(const QImage& picture, QPointF fromCentre)
{
    return isRed(picture, fromCentre) || isRed(picture, fromCentre + QPointF(0, 1)) ||
           isRed(picture, fromCentre - QPointF(0, 1));
}

struct LabelCase {
    const char* name;
    QPointF second; // the first point is at the origin
    float magnification;
    const char* text;
    double rotation;
};

void PrintTo(const LabelCase& c, std::ostream* stream)
{
    *stream << c.name;
}

class RullerLabel : public testing::TestWithParam<LabelCase>
{
};

TEST_P(RullerLabel, NamesTheLengthAndNeverReadsUpsideDown)
{
    const LabelCase& c = GetParam();
    Ruller ruler;
    ruler.setMagnification(c.magnification, QStringLiteral("um"));
    QSignalSpy changed(&ruler, &Ruller::rullerChanged);
    child(ruler, 1).setPos(c.second);
    const QGraphicsTextItem& label = labelOf(ruler);
    EXPECT_EQ(label.toPlainText(), QString::fromLatin1(c.text));
    EXPECT_NEAR(label.rotation(), c.rotation, 1e-9);
    EXPECT_EQ(label.pos(), c.second / 2);
    ASSERT_EQ(changed.size(), 1);
    EXPECT_EQ(changed[0][0].toLineF(), QLineF(QPointF(0, 0), c.second));
    EXPECT_EQ(ruler.boundingRect(), QRectF(QPointF(0, 0), c.second).normalized());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, RullerLabel,
    testing::Values(LabelCase{"TwoDecimals", {30, 0}, 1.0F, "30.00um", 0},
                    LabelCase{"OneDecimalFrom100", {100, 0}, 1.0F, "100.0um", 0},
                    LabelCase{"Magnified", {30, 40}, 2.5F, "125.0um", -306.86989764584405},
                    LabelCase{"RightToLeft", {-50, 0}, 1.0F, "50.00um", 0},
                    LabelCase{"Up", {0, -50}, 1.0F, "50.00um", -90},
                    LabelCase{"Down", {0, 50}, 1.0F, "50.00um", -270},
                    LabelCase{"DownToTheLeft", {-50, 50}, 1.0F, "70.71um", -45}),
    [](const auto& label) { return label.param.name; });

TEST(Ruller, KeepsItsLabelUntilTheNextUpdate)
{
    Ruller ruler;
    place(ruler, {10, 10}, {40, 50});
    EXPECT_EQ(labelOf(ruler).toPlainText(), QStringLiteral("50.00pix"));
    ruler.setMagnification(2.0F, QStringLiteral("mm"));
    EXPECT_EQ(labelOf(ruler).toPlainText(), QStringLiteral("50.00pix"));
    place(ruler, {10, 10}, {10, 10});
    EXPECT_EQ(labelOf(ruler).toPlainText(), QStringLiteral("0.00mm"));
    EXPECT_EQ(labelOf(ruler).rotation(), 0.0);
}

TEST(Ruller, PaintsTheLineOnlyWhereItHasALength)
{
    Ruller ruler;
    ruler.updateRuller();
    EXPECT_FALSE(isRed(painted(ruler), {0, 0}));
    place(ruler, {-10, 5}, {10, 5});
    const QImage picture = painted(ruler);
    EXPECT_TRUE(isRed(picture, {0, 5}));
    EXPECT_FALSE(isRed(picture, {0, 0}));
    EXPECT_FALSE(isRed(picture, {15, 5}));
}

TEST(Ruller, PointsItsArrowsOutward)
{
    Ruller ruler;
    place(ruler, {0, 0}, {100, 0});
    const double along = 14 * std::cos(M_PI / 6);
    const double across = 14 * std::sin(M_PI / 6);
    for (const int end : {0, 1}) {
        const QImage picture = painted(child(ruler, end));
        const double inward = end == 0 ? 1 : -1;
        for (const double side : {-1, 1}) {
            EXPECT_TRUE(isRedNear(picture, {inward * along, side * across})) << end << ' ' << side;
            EXPECT_FALSE(isRedNear(picture, {-inward * along, side * across}))
                << end << ' ' << side;
        }
        EXPECT_EQ(child(ruler, end).boundingRect(), QRectF(-15, -15, 30, 30));
    }
}

TEST(CenteredTextItem, CentresItsTextAndKeepsHalfAWidthOfSlack)
{
    Ruller ruler;
    place(ruler, {0, 0}, {60, 0});
    const auto& label = static_cast<CenteredTextItem&>(labelOf(ruler));
    const QRectF plain = label.QGraphicsTextItem::boundingRect();
    const int textWidth = QFontMetrics(label.font()).horizontalAdvance(label.toPlainText());
    EXPECT_EQ(label.getOffset(), -(textWidth / 2));
    EXPECT_EQ(label.boundingRect(), QRectF(plain.x() + label.getOffset(), plain.y(),
                                           plain.width() * 1.5, plain.height()));
}

class IndicatorProbe : public RecordIndicator
{
public:
    using RecordIndicator::timerTimeOut;
    QGraphicsTextItem& text() const { return static_cast<QGraphicsTextItem&>(child(*this, 0)); }
    bool showsRecordIcon() const { return text().toHtml().contains(":/svg/icons/but-record.svg"); }
    bool showsEmptyIcon() const { return text().toHtml().contains(":/svg/icons/empty.svg"); }
    int shownSeconds() const
    {
        const QRegularExpression time(QStringLiteral("(\\d\\d)h (\\d\\d)m (\\d\\d)s"));
        const QRegularExpressionMatch match = time.match(text().toPlainText());
        return match.hasMatch() ? match.captured(1).toInt() * 3600 +
                                      match.captured(2).toInt() * 60 + match.captured(3).toInt()
                                : -1;
    }
};

TEST(RecordIndicator, BlinksAndRoundsTheTimeToSeconds)
{
    IndicatorProbe indicator;
    indicator.setVisible(false);
    indicator.setTitle(QStringLiteral("Filming"));
    QElapsedTimer sinceBeforeStart;
    sinceBeforeStart.start();
    indicator.start();
    QElapsedTimer sinceStart;
    sinceStart.start();
    EXPECT_TRUE(indicator.isVisible());
    EXPECT_TRUE(indicator.showsRecordIcon());
    EXPECT_EQ(indicator.shownSeconds(), 0);
    EXPECT_TRUE(indicator.text().toPlainText().contains(QStringLiteral("Filming")));

    QTest::qSleep(520); // no event loop: only the call below ticks
    const qint64 shortest = sinceStart.elapsed();
    indicator.timerTimeOut();
    const qint64 longest = sinceBeforeStart.elapsed();
    EXPECT_TRUE(indicator.showsEmptyIcon());
    EXPECT_GE(indicator.shownSeconds(), (shortest + 500) / 1000);
    EXPECT_LE(indicator.shownSeconds(), (longest + 500) / 1000);
    indicator.timerTimeOut();
    EXPECT_TRUE(indicator.showsRecordIcon());

    const QString last = indicator.text().toPlainText();
    indicator.stop();
    EXPECT_FALSE(indicator.isVisible());
    EXPECT_EQ(indicator.text().toPlainText(), last);
    indicator.start();
    EXPECT_EQ(indicator.shownSeconds(), 0);
}

TEST(RecordIndicator, TicksByItselfWhileItRuns)
{
    IndicatorProbe indicator;
    indicator.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return indicator.showsEmptyIcon(); }, 20000));
    indicator.stop();
    const QString last = indicator.text().toHtml();
    QTest::qWait(700);
    EXPECT_EQ(indicator.text().toHtml(), last);
}

} // namespace
