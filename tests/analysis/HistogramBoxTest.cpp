#include <AppComponents/analysis/HistogramBox.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include <QCheckBox>
#include <QLineEdit>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{

using Bins = std::vector<int>;

constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb grey = qRgb(160, 160, 164);
constexpr QRgb black = qRgb(0, 0, 0);
constexpr QRgb shade = qRgb(223, 228, 234);

/// Bins 100 ... 199 hold 50, but the last of them 100.
Bins plateau(int size)
{
    Bins bins(size);
    std::fill(bins.begin() + 100, bins.begin() + 199, 50);
    bins[199] = 100;
    return bins;
}

class HistogramBoxTest : public testing::Test
{
protected:
    template <typename T = QWidget>
    T& child(const char* name)
    {
        return *box.findChild<T*>(QLatin1String(name));
    }
    QWidget& raw() { return child("wgtHistogram"); }
    QWidget& processed() { return child("wgtProcessedHistogram"); }
    void click(const char* name) { child<QCheckBox>(name).click(); }

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

    HistogramBox box{nullptr};
};

/// Expects a chart of plateau() whose chart is \p height high, in columns of \p step pixels.
void expectPlateau(const QImage& image, int height, int step, double fraction)
{
    const int top = height - static_cast<int>(fraction * height);
    const int inside = 150 * step;
    EXPECT_EQ(image.pixel(inside, top - 2), white);
    EXPECT_EQ(image.pixel(inside, top), black);
    EXPECT_EQ(image.pixel(inside, top + 1), grey);
    EXPECT_EQ(image.pixel(200 * step, 0), black) << "the largest bin is as high as the chart";
    EXPECT_EQ(image.pixel(0, 0), shade);
    EXPECT_EQ(image.pixel(99 * step - 2, 0), shade);
    EXPECT_EQ(image.pixel(99 * step - 1, 0), white);
    EXPECT_EQ(image.pixel(201 * step, 0), shade);
}

TEST_F(HistogramBoxTest, GreyChartsFillRawToTheHeightAndProcessedToTheTopRows)
{
    for (const int size : {256, 1024}) {
        for (const bool isLogarithmic : {false, true}) {
            SCOPED_TRACE(testing::Message() << size << (isLogarithmic ? " logarithmic" : ""));
            const double fraction = isLogarithmic ? std::log(50.5) / std::log(100.0) : 0.5;
            preview(plateau(size), plateau(size));
            expectPlateau(painted(raw()), raw().height(), 1, fraction);
            expectPlateau(painted(processed()), 128, size / 256, fraction);
            EXPECT_EQ(painted(processed()).pixel(230, 130), white);
            click("cbLogarithmic");
        }
    }
}

TEST_F(HistogramBoxTest, VisibleColourChannelsMixByAnd)
{
    click("chG");
    preview(Bins(256, 1), Bins(256, 100), Bins(256, 100), Bins(256, 50));
    const QImage linear = painted(processed());
    EXPECT_EQ(linear.pixel(128, 0), qRgb(255, 0, 0));
    EXPECT_EQ(linear.pixel(128, 30), qRgb(255, 127, 127));
    EXPECT_EQ(linear.pixel(128, 100), qRgb(127, 127, 127));

    click("chR");
    click("cbLogarithmic");
    EXPECT_EQ(painted(processed()).pixel(128, 30), qRgb(127, 127, 255))
        << "each logarithmic channel takes the whole height";
}

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
    EXPECT_EQ(previewSize(256), 386);
    EXPECT_EQ(previewSize(257), 1154);
    EXPECT_LE(processed().geometry().right(), box.rect().right());
    EXPECT_EQ(QList<QVariantList>(widths), (QList<QVariantList>{{1024}, {256}, {1024}}));
}

TEST_F(HistogramBoxTest, ReadOutsTellTheStatisticsOfWhatWasPainted)
{
    Bins h(256);
    h[127] = h[128] = 3;
    preview(h, h);
    EXPECT_EQ(readOuts(""), QStringList({"126", "128", "3", "127.5"}));
    preview(Bins(256), Bins(256));
    EXPECT_EQ(readOuts(""), QStringList({"126", "128", "3", "127.5"}));

    Bins wide(1024);
    wide[12] = 7;
    Bins levels(1024);
    levels[10] = levels[20] = 1;
    preview(wide, levels);
    EXPECT_EQ(readOuts(""), QStringList({"11", "12", "2", "12.0"}));
    EXPECT_EQ(readOuts("P"), QStringList({"36", "83", "48", "60.0"}));

    // 2 * 2^30 wraps in the raw product only, so the means tell the 32-bit rule.
    Bins huge(256);
    huge[2] = 1 << 30;
    preview(huge, huge);
    EXPECT_EQ(readOuts("")[3], "-2.0");
    EXPECT_EQ(readOuts("P")[3], "2.0");
}

TEST_F(HistogramBoxTest, ClearedBoxIsWhiteOnAnyPaletteAndReadsNothing)
{
    box.setPalette(QPalette(Qt::black));
    const Bins h = plateau(256);
    preview(h, h, h, h);
    EXPECT_TRUE(child("chR").isEnabled() && child("chG").isEnabled() && child("chB").isEnabled());
    readOuts("");
    box.clearHistogram();
    const QImage grabbed = box.grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (QWidget* const widget : {&raw(), &processed()}) {
        QImage empty(widget->size(), QImage::Format_RGB32);
        empty.fill(Qt::white);
        EXPECT_EQ(grabbed.copy(widget->geometry()), empty) << widget->objectName().toStdString();
    }
    EXPECT_EQ(readOuts("") + readOuts("P"), QStringList({"", "", "", "", "", "", "", ""}));
    EXPECT_FALSE(child("chR").isEnabled());
    preview(h, h, h);
    EXPECT_FALSE(child("chR").isEnabled() || child("chG").isEnabled() || child("chB").isEnabled());
}

} // namespace
