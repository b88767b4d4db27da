// Repaints of the analysis widgets at the width of the wide histogram box. A frame rate of 60 a
// second within a tenth of one core leaves 1.66 ms for a repaint of both histograms.

#include "support/BenchmarkSupport.h"

#include <AppComponents/analysis/HistogramBox.h>
#include <AppComponents/analysis/LUTPlot.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>

#include <cmath>
#include <vector>

namespace
{

constexpr int binCount = 1024;
constexpr int levelCount = 256;
constexpr int boxHeight = 440;

struct Form {
    bool isColour;
    bool isLogarithmic;
};

/// A bell over the first \p levels bins with the jitter of counted samples.
std::vector<int> noisyBell(int levels, double centre)
{
    const auto noise = bench::randomSamples<unsigned char>(binCount, 255);
    std::vector<int> bins(binCount);
    for (int i = 0; i < levels; ++i) {
        const double distance = (i / static_cast<double>(levels) - centre) / 0.15;
        bins[i] = static_cast<int>(5000 * std::exp(-distance * distance)) * (256 + noise[i]) / 512;
    }
    return bins;
}

void repaintHistograms(benchmark::State& state, Form form)
{
    HistogramBox box;
    box.resize(box.width(), boxHeight);
    box.show();
    if (form.isLogarithmic)
        box.findChild<QCheckBox*>(QStringLiteral("cbLogarithmic"))->click();
    std::vector<int> raw = noisyBell(binCount, 0.4);
    std::vector<int> red = noisyBell(levelCount, 0.6);
    std::vector<int> green = noisyBell(levelCount, 0.5);
    std::vector<int> blue = noisyBell(levelCount, 0.3);
    const auto showFrame = [&] {
        box.previewHistogram(binCount, raw.data(), red.data(),
                             form.isColour ? green.data() : nullptr,
                             form.isColour ? blue.data() : nullptr);
        QCoreApplication::processEvents();
    };
    showFrame();
    auto* const readOut = box.findChild<QLineEdit*>(QStringLiteral("txtRawMaxP"));
    for (auto _ : state) {
        readOut->clear();
        showFrame();
        if (readOut->text().isEmpty())
            state.SkipWithError("not repainted");
    }
}

void repaintPlot(benchmark::State& state)
{
    LUTPlot plot;
    plot.resize(1154, 200);
    plot.show();
    std::vector<unsigned char> table(4096);
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<unsigned char>(i >> 4);
    for (auto _ : state) {
        plot.setLUTData(table.data(), static_cast<int>(table.size()));
        QCoreApplication::processEvents();
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const auto registerHistograms = [](const char* name, Form form) {
        benchmark::RegisterBenchmark(name, repaintHistograms, form)->Unit(benchmark::kMicrosecond);
    };
    registerHistograms("histogram_repaint/ours/1154x440", {true, false});
    registerHistograms("histogram_repaint_log/ours/1154x440", {true, true});
    registerHistograms("histogram_repaint_grey/ours/1154x440", {false, false});
    benchmark::RegisterBenchmark("lut_repaint/ours/1154x200", repaintPlot)
        ->Unit(benchmark::kMicrosecond);
    return bench::runBenchmarks(argc, argv);
}
