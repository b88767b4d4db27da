#include "Gallery.h"

#include <AppComponents/analysis/HistogramBox.h>
#include <AppComponents/analysis/LUTPlot.h>

#include <QCheckBox>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int rawLevels8Bit = 256;
constexpr int rawLevels10Bit = 1024;

struct Peak {
    double level; ///< share of full scale
    double width;
    double height; ///< samples of the level in the middle
};

struct Histograms {
    std::vector<int> raw, red, green, blue;
};

// A slide of cells: a broad peak of the cells, a high one of the background.
std::vector<int> binsOf(const std::vector<Peak>& peaks, int bins, int levels)
{
    std::vector<int> result(static_cast<std::size_t>(bins));
    for (int i = 0; i < levels; ++i)
        for (const Peak& peak : peaks) {
            const double distance = ((i + 0.5) / levels - peak.level) / peak.width;
            result[i] += static_cast<int>(peak.height * std::exp(-distance * distance));
        }
    return result;
}

Histograms histogramsOfCells(int rawLevels)
{
    return {binsOf({{0.25, 0.10, 900}, {0.55, 0.06, 2600}}, rawLevels, rawLevels),
            binsOf({{0.40, 0.14, 1100}, {0.82, 0.05, 2900}}, rawLevels, 256),
            binsOf({{0.30, 0.10, 1300}, {0.74, 0.05, 3000}}, rawLevels, 256),
            binsOf({{0.48, 0.12, 1200}, {0.68, 0.06, 2600}}, rawLevels, 256)};
}

std::unique_ptr<QWidget> createBox()
{
    auto box = std::make_unique<HistogramBox>();
    box->resize(box->width(), 440);
    return box;
}

std::unique_ptr<QWidget> createWideBox()
{
    std::unique_ptr<QWidget> box = createBox();
    std::vector<int> empty(rawLevels10Bit);
    static_cast<HistogramBox&>(*box).previewHistogram(rawLevels10Bit, empty.data(), empty.data(),
                                                      nullptr, nullptr);
    return box;
}

void click(QWidget& box, const char* checkBox)
{
    box.findChild<QCheckBox*>(QLatin1String(checkBox))->click();
}

void showHistograms(QWidget& widget, int rawLevels, bool isColour)
{
    Histograms h = histogramsOfCells(rawLevels);
    static_cast<HistogramBox&>(widget).previewHistogram(rawLevels, h.raw.data(), h.red.data(),
                                                        isColour ? h.green.data() : nullptr,
                                                        isColour ? h.blue.data() : nullptr);
    widget.grab(); // painting fills in the read-outs
}

std::function<void(QWidget&)> histograms(int rawLevels, bool isColour,
                                         const std::vector<const char*>& clicks = {})
{
    return [=](QWidget& box) {
        for (const char* const checkBox : clicks)
            click(box, checkBox);
        showHistograms(box, rawLevels, isColour);
    };
}

void clearBox(QWidget& box)
{
    showHistograms(box, rawLevels8Bit, true);
    static_cast<HistogramBox&>(box).clearHistogram();
}

/// A plot of \p entries levels of \p curve, which maps 0 ... 1 onto 0 ... 1.
std::function<std::unique_ptr<QWidget>()> plotOf(int entries, double (*curve)(double))
{
    return [=] {
        std::vector<unsigned char> table;
        table.reserve(static_cast<std::size_t>(entries));
        for (int i = 0; i < entries; ++i)
            table.push_back(static_cast<unsigned char>(
                std::lround(255 * std::clamp(curve(i / (entries - 1.0)), 0.0, 1.0))));
        auto plot = std::make_unique<LUTPlot>();
        plot->resize(256, 100);
        plot->setLUTData(table.data(), entries);
        return plot;
    };
}

double identity(double level)
{
    return level;
}

double brightenShadows(double level)
{
    return std::pow(level, 0.45);
}

double steepen(double level)
{
    return 3 * (level - 0.5) + 0.5;
}

} // namespace

Pages analysisPages()
{
    return {
        {QStringLiteral("histogram-grey-256"), createBox, histograms(rawLevels8Bit, false)},
        {QStringLiteral("histogram-grey-256-log"), createBox,
         histograms(rawLevels8Bit, false, {"cbLogarithmic"})},
        {QStringLiteral("histogram-colour-256"), createBox, histograms(rawLevels8Bit, true)},
        {QStringLiteral("histogram-colour-256-log"), createBox,
         histograms(rawLevels8Bit, true, {"cbLogarithmic"})},
        {QStringLiteral("histogram-colour-red-only"), createBox,
         histograms(rawLevels8Bit, true, {"chG", "chB"})},
        {QStringLiteral("histogram-grey-1024"), createWideBox, histograms(rawLevels10Bit, false)},
        {QStringLiteral("histogram-colour-1024"), createWideBox, histograms(rawLevels10Bit, true)},
        {QStringLiteral("histogram-colour-1024-log"), createWideBox,
         histograms(rawLevels10Bit, true, {"cbLogarithmic"})},
        {QStringLiteral("histogram-cleared"), createBox, clearBox},
        {QStringLiteral("lut-identity"), plotOf(256, identity), nullptr},
        {QStringLiteral("lut-gamma"), plotOf(4096, brightenShadows), nullptr},
        {QStringLiteral("lut-contrast"), plotOf(4096, steepen), nullptr},
    };
}
