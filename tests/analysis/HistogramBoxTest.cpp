#include <AppComponents/analysis/HistogramBox.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <vector>

#include <QCheckBox>
#include <QLineEdit>
#include <QPainter>
#include <QSignalSpy>
#include <QtTest>

#include <support/AllocationCounter.h>

#include <gtest/gtest.h>

namespace
{

using Bins = std::vector<int>;

const QColor shade(223, 228, 234);

Bins bell(int size, int first, int last, int top)
{
    Bins bins(size);
    for (int i = first; i <= last; ++i) {
        const double x = (i - first) / (last - first + 1.0);
        bins[i] = 1 + static_cast<int>(top * x * (1 - x) * 4 + i % 5);
    }
    return bins;
}

int barHeight(int value, int max, int height, bool isLogarithmic)
{
    if (isLogarithmic)
        return static_cast<int>(std::log(value * 99.0 / max + 1) / std::log(100.0) * height);
    return static_cast<int>(value * (static_cast<double>(height) / max));
}

int largest(const Bins& bins)
{
    return *std::max_element(bins.begin(), bins.end());
}

class HistogramBoxTest : public testing::Test
{
protected:
    QWidget& painter(const char* name) { return *box.findChild<QWidget*>(QLatin1String(name)); }
    QWidget& raw() { return painter("wgtHistogram"); }
    QWidget& processed() { return painter("wgtProcessedHistogram"); }
    void click(const char* name) { box.findChild<QCheckBox*>(QLatin1String(name))->click(); }

    void preview(Bins h, Bins h1, Bins h2 = {}, Bins h3 = {})
    {
        const auto data = [](Bins& bins) { return bins.empty() ? nullptr : bins.data(); };
        box.previewHistogram(static_cast<int>(h.size()), h.data(), data(h1), data(h2), data(h3));
        for (Bins* const bins : {&h, &h1, &h2, &h3})
            std::fill(bins->begin(), bins->end(), -1);
    }

    static QImage painted(QWidget& widget)
    {
        QImage image(widget.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    QStringList readOuts(const char* suffix)
    {
        painted(raw());
        painted(processed());
        QStringList texts;
        for (const char* const name : {"txtRawMin", "txtRawMax", "txtRawRange", "txtRawAvg"})
            texts << box.findChild<QLineEdit*>(QLatin1String(name) + suffix)->text();
        return texts;
    }

    QImage predictedRaw(const Bins& h, int lowZero, int hiZero, bool isLogarithmic)
    {
        const int n = static_cast<int>(h.size());
        const int height = raw().height();
        QImage image(raw().size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter p(&image);
        if (lowZero > 0)
            p.fillRect(0, 0, lowZero - 1, height, shade);
        p.fillRect(hiZero + 1, 0, n, height, shade);
        QPolygon polygon(QVector<QPoint>{QPoint(0, height)});
        for (int i = 0; i < n; ++i)
            polygon << QPoint(i + 1, height - barHeight(h[i], largest(h), height, isLogarithmic));
        polygon << QPoint(n + 1, height);
        p.setBrush(Qt::gray);
        p.drawPolygon(polygon, Qt::OddEvenFill);
        return image;
    }

    static QPolygon processedOutline(const Bins& h, int step, int max, bool isLogarithmic)
    {
        QPolygon polygon(QVector<QPoint>{QPoint(0, 128)});
        for (int b = 0; b < 256; ++b)
            polygon << QPoint((b + 1) * step, 128 - barHeight(h[b], max, 128, isLogarithmic));
        return polygon << QPoint(255 * step, 128);
    }

    HistogramBox box{nullptr};
};

struct BoxCase {
    const char* name;
    int size;
    bool isLogarithmic;
};

void PrintTo(const BoxCase& row, std::ostream* out)
{
    *out << row.name;
}

class HistogramPicture : public HistogramBoxTest, public testing::WithParamInterface<BoxCase>
{
};

TEST_P(HistogramPicture, RawIsTheGreyAreaOverTheWholeHeight)
{
    const auto& [name, size, isLogarithmic] = GetParam();
    if (isLogarithmic)
        click("cbLogarithmic");
    const Bins h = bell(size, 11, 200, 900);
    preview(h, h);
    EXPECT_EQ(painted(raw()), predictedRaw(h, 10, 200, isLogarithmic));
}

TEST_P(HistogramPicture, GreyIsTheAreaInTheTopRowsWithABlackOutline)
{
    const auto& [name, size, isLogarithmic] = GetParam();
    if (isLogarithmic)
        click("cbLogarithmic");
    const Bins h = bell(size, 10, 20, 900);
    preview(h, h);

    const int step = size / 256;
    const QPolygon outline = processedOutline(h, step, largest(h), isLogarithmic);
    QImage expected(processed().size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter p(&expected);
    p.fillRect(0, 0, 9 * step - 1, 128, shade);
    p.fillRect(21 * step - 1 + step, 0, size, 128, shade);
    p.setCompositionMode(QPainter::RasterOp_SourceAndDestination);
    p.setPen(Qt::NoPen);
    p.setBrush(Qt::gray);
    p.setClipRect(0, 0, size, 128);
    p.drawPolygon(outline, Qt::OddEvenFill);
    p.setPen(Qt::gray);
    p.setBrush(Qt::NoBrush);
    p.drawPolygon(outline, Qt::OddEvenFill);
    p.setClipping(false);
    p.setPen(Qt::black);
    p.drawPolyline(outline);
    p.end();
    EXPECT_EQ(painted(processed()), expected);
}

TEST_P(HistogramPicture, VisibleColourChannelsMixByAnd)
{
    const int size = GetParam().size;
    const bool isLogarithmic = GetParam().isLogarithmic;
    if (isLogarithmic)
        click("cbLogarithmic");
    click("chG");
    const Bins red = bell(size, 0, 255, 500);
    const Bins blue = bell(size, 0, 255, 800);
    preview(red, red, bell(size, 0, 255, 4000), blue);

    const int step = size / 256;
    const int common = largest(bell(size, 0, 255, 4000));
    const auto outlineOf = [&](const Bins& h) {
        return processedOutline(h, step, isLogarithmic ? largest(h) : common, isLogarithmic);
    };
    const auto picture = [&](const Bins& h, const QColor& pen, const QColor& brush) {
        QImage image(size, 128, QImage::Format_RGB888);
        image.fill(Qt::white);
        QPainter p(&image);
        p.setPen(pen);
        p.setBrush(brush);
        p.drawPolygon(outlineOf(h), Qt::OddEvenFill);
        return image;
    };
    QImage expected(processed().size(), QImage::Format_RGB32);
    expected.fill(Qt::white);
    QPainter p(&expected);
    p.setCompositionMode(QPainter::RasterOp_SourceAndDestination);
    p.drawImage(0, 0, picture(red, QColor(255, 0, 0, 128), QColor(255, 0, 0, 128)));
    p.drawImage(0, 0, picture(blue, Qt::darkBlue, QColor(0, 0, 255, 128)));
    p.setPen(Qt::red);
    p.drawPolyline(outlineOf(red));
    p.setPen(Qt::darkBlue);
    p.drawPolyline(outlineOf(blue));
    p.fillRect(256 * step - 1 + step, 0, size, 128, shade);
    p.end();
    EXPECT_EQ(painted(processed()), expected);
}

INSTANTIATE_TEST_SUITE_P(Forms, HistogramPicture,
                         testing::Values(BoxCase{"Narrow", 256, false},
                                         BoxCase{"NarrowLog", 256, true},
                                         BoxCase{"Wide", 1024, false},
                                         BoxCase{"WideLog", 1024, true},
                                         BoxCase{"Clipped", 4096, true}),
                         [](const auto& row) { return row.param.name; });

TEST_F(HistogramBoxTest, WidthFollowsTheNumberOfBins)
{
    QSignalSpy widths(&box, &HistogramBox::requiredWidth);
    const auto previewSize = [&](int size) {
        preview(Bins(size, 1), Bins(size, 1));
        const int width = box.minimumWidth();
        EXPECT_EQ(box.maximumWidth(), width);
        EXPECT_EQ(raw().width(), width - 130);
        EXPECT_EQ(processed().width(), width - 130);
        return width;
    };
    EXPECT_EQ(previewSize(256), 386);
    EXPECT_EQ(widths.count(), 0);
    EXPECT_EQ(previewSize(1024), 1154);
    EXPECT_EQ(previewSize(1024), 1154);
    EXPECT_EQ(previewSize(256), 386);
    EXPECT_EQ(previewSize(257), 1154);
    EXPECT_EQ(previewSize(4096), 1154);
    const QList<QList<QVariant>> expected{{1024}, {256}, {1024}, {1024}};
    EXPECT_EQ(static_cast<const QList<QList<QVariant>>&>(widths), expected);
}

TEST_F(HistogramBoxTest, ReadOutsTellTheStatisticsOfWhatWasPainted)
{
    Bins h(256);
    h[127] = h[128] = 3;
    preview(h, h);
    EXPECT_EQ(readOuts(""), QStringList({"126", "128", "3", "127.5"}));
    EXPECT_EQ(readOuts("P"), QStringList({"126", "128", "3", "127.5"}));

    preview(Bins(256), Bins(256));
    EXPECT_EQ(readOuts(""), QStringList({"126", "128", "3", "127.5"}));

    Bins wide(1024);
    wide[12] = 7;
    Bins levels(1024);
    levels[10] = levels[20] = 1;
    preview(wide, levels);
    EXPECT_EQ(readOuts(""), QStringList({"11", "12", "2", "12.0"}));
    EXPECT_EQ(readOuts("P"), QStringList({"36", "83", "48", "60.0"}));

    // 2 * 2^31 wraps in the product and not in the count, so the mean tells the 32-bit rule.
    Bins huge(256);
    huge[2] = 1 << 30;
    huge[0] = 1;
    preview(huge, huge);
    EXPECT_EQ(readOuts("")[3], "-2.0");
    EXPECT_EQ(readOuts("P")[3], "2.0");
}

TEST_F(HistogramBoxTest, ChannelSwitchesAreEnabledForColourOnly)
{
    const auto enabled = [this](const char* name) {
        return box.findChild<QCheckBox*>(QLatin1String(name))->isEnabled();
    };
    const Bins h(256, 1);
    EXPECT_TRUE(enabled("chR") && enabled("chG") && enabled("chB"));
    preview(h, h);
    EXPECT_FALSE(enabled("chR") || enabled("chG") || enabled("chB"));
    preview(h, h, h, h);
    EXPECT_TRUE(enabled("chR") && enabled("chG") && enabled("chB"));
    preview(h, h, h);
    EXPECT_FALSE(enabled("chR") || enabled("chG") || enabled("chB"));
}

TEST_F(HistogramBoxTest, ClearedBoxIsWhiteOnAnyPaletteAndReadsNothing)
{
    QPalette dark(Qt::black);
    box.setPalette(dark);
    preview(bell(256, 5, 99, 70), bell(256, 5, 99, 70), bell(256, 50, 99, 70), Bins(256, 3));
    readOuts("");
    box.clearHistogram();
    const QImage grabbed = box.grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (QWidget* const widget : {&raw(), &processed()}) {
        QImage white(widget->size(), QImage::Format_RGB32);
        white.fill(Qt::white);
        EXPECT_EQ(grabbed.copy(widget->geometry()), white) << widget->objectName().toStdString();
    }
    EXPECT_EQ(readOuts("") + readOuts("P"), QStringList({"", "", "", "", "", "", "", ""}));
    EXPECT_FALSE(box.findChild<QCheckBox*>(QStringLiteral("chR"))->isEnabled());
    EXPECT_EQ(box.width(), 386);
}

TEST_F(HistogramBoxTest, HistogramsStayInsideTheBox)
{
    box.show();
    for (const int size : {256, 1024}) {
        preview(Bins(size, 1), Bins(size, 1));
        QCoreApplication::processEvents();
        EXPECT_LE(raw().geometry().right(), box.rect().right());
        EXPECT_LE(processed().geometry().right(), box.rect().right());
    }
}

TEST_F(HistogramBoxTest, SwitchesRequestNoRepaint)
{
    box.show();
    preview(Bins(256, 1), Bins(256, 1), Bins(256, 1), Bins(256, 1));
    const auto* const average = box.findChild<QLineEdit*>(QStringLiteral("txtRawAvgP"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !average->text().isEmpty(); }));
    QSignalSpy repaints(&processed(), SIGNAL(dataBoundsChange(int, int, int, double)));
    click("cbLogarithmic");
    click("chR");
    QCoreApplication::processEvents();
    EXPECT_EQ(repaints.count(), 0);
}

TEST_F(HistogramBoxTest, FrameOfUnchangedSizeAllocatesNothing)
{
    box.show();
    for (const int size : {256, 1024}) {
        Bins bins(size, 1);
        const auto showFrame = [&] {
            box.previewHistogram(size, bins.data(), bins.data(), bins.data(), bins.data());
        };
        showFrame();
        const long before = allocations;
        showFrame();
        showFrame();
        EXPECT_EQ(allocations - before, 0);
    }
}

} // namespace
