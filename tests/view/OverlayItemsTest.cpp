#include <AppComponents/view/RecordIndicator.h>
#include <AppComponents/view/Ruller.h>

#include "ViewTestSupport.h"

#include <QPainter>

#include <tuple>

namespace
{

TEST(Ruller, NamesTheLengthAndNeverReadsUpsideDown)
{
    const std::tuple<QPointF, float, const char*, double> cases[] = {
        {{30, 0}, 1.0F, "30.00um", 0},     {{100, 0}, 1.0F, "100.0um", 0},
        {{-50, 0}, 1.0F, "50.00um", 0},    {{30, 40}, 2.5F, "125.0um", -306.86989764584405},
        {{0, -50}, 1.0F, "50.00um", -90},  {{0, 50}, 1.0F, "50.00um", -270},
        {{-50, 50}, 1.0F, "70.71um", -45}, {{0, 0}, 1.0F, "0.00um", 0}};
    Ruller ruler;
    const auto& label = static_cast<CenteredTextItem&>(*ruler.childItems()[2]);
    QSignalSpy changed(&ruler, &Ruller::rullerChanged);
    for (const auto& [second, magnification, text, rotation] : cases) {
        ruler.setMagnification(magnification, QStringLiteral("um"));
        ruler.childItems()[1]->setPos(second);
        EXPECT_EQ(label.toPlainText().toStdString(), text);
        EXPECT_NEAR(label.rotation(), rotation, 1e-9) << text;
        EXPECT_EQ(label.pos(), second / 2);
        EXPECT_EQ(changed.takeLast()[0].toLineF(), QLineF(QPointF(0, 0), second));
        const QRectF plain = label.QGraphicsTextItem::boundingRect();
        const int width = QFontMetrics(label.font()).horizontalAdvance(label.toPlainText());
        EXPECT_EQ(label.boundingRect(),
                  QRectF(plain.x() - width / 2, plain.y(), plain.width() * 1.5, plain.height()));
    }
}

TEST(Ruller, PointsItsArrowsOutward)
{
    Ruller ruler;
    ruler.childItems()[1]->setPos(100, 0);
    for (const int end : {0, 1}) {
        QImage picture(31, 31, QImage::Format_RGB32);
        picture.fill(Qt::white);
        QPainter painter(&picture);
        painter.translate(15, 15);
        ruler.childItems()[end]->paint(&painter, nullptr, nullptr);
        for (const int side : {7, 19})
            for (const int x : {4, 26}) {
                const QImage column = picture.copy(x, side, 1, 5);
                EXPECT_EQ(column.allGray(), (x == 4) == (end == 0)) << end << ' ' << x;
            }
    }
}

TEST(RecordIndicator, BlinksAndRoundsTheTimeWhileItRuns)
{
    RecordIndicator indicator;
    auto& text = static_cast<QGraphicsTextItem&>(*indicator.childItems()[0]);
    const auto shows = [&](const char* part) { return text.toHtml().contains(part); };
    indicator.setVisible(false);
    indicator.setTitle(QStringLiteral("Filming"));
    indicator.start();
    EXPECT_TRUE(indicator.isVisible());
    EXPECT_TRUE(shows(":/svg/icons/but-record.svg") && shows("00h 00m 00s"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return shows(":/svg/icons/empty.svg"); }, 20000));
    EXPECT_FALSE(shows("00h 00m 00s")) << "half a second and more counts as one";

    indicator.stop();
    EXPECT_FALSE(indicator.isVisible());
    indicator.start();
    EXPECT_TRUE(shows("00h 00m 00s"));
}

} // namespace
