#include "HistogramPanel.h"

#include <AppComponents/analysis/HistogramBox.h>

#include <QScrollBar>

namespace
{

constexpr int narrowBins = 256;

/// Adds up neighbouring bins until 256 are left.
void narrow(const std::vector<int>& bins, std::vector<int>& result)
{
    const std::size_t step = bins.size() / narrowBins;
    result.assign(narrowBins, 0);
    for (std::size_t i = 0; i < narrowBins * step; ++i)
        result[i / step] += bins[i];
}

} // namespace

HistogramPanel::HistogramPanel(QWidget* parent)
    : QScrollArea(parent)
    , box(new HistogramBox)
{
    setWidget(box);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    connect(box, &HistogramBox::requiredWidth, this, &HistogramPanel::adoptWidth);
    adoptWidth(narrowBins);
}

void HistogramPanel::adoptWidth(int)
{
    // The narrow box is shown whole; the wide one is wider than many a screen and scrolls.
    const int bar = verticalScrollBar()->sizeHint().width();
    setMinimumWidth(std::min(box->minimumWidth(), 386) + bar);
}

void HistogramPanel::showHistograms(const Histograms& newest)
{
    // The box copies the arrays and does not write to them.
    const auto writable = [](const std::vector<int>& bins) {
        return const_cast<int*>(bins.data());
    };
    const bool reduce = !wide && newest.raw.size() > narrowBins;
    if (reduce)
        narrow(newest.raw, narrowed);
    const std::vector<int>& raw = reduce ? narrowed : newest.raw;
    int* second = newest.colour ? writable(newest.channels[1]) : nullptr;
    int* third = newest.colour ? writable(newest.channels[2]) : nullptr;
    box->previewHistogram(static_cast<int>(raw.size()), writable(raw), writable(newest.channels[0]),
                          second, third);
}

void HistogramPanel::clear()
{
    box->clearHistogram();
}
