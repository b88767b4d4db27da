#include "GraphsPanel.h"

#include "CurvePlot.h"

#include <AppComponents/log/CDelayedValueSequenceLog.h>

#include <QHBoxLayout>

namespace
{

constexpr int refreshMs = 100;

/// A ring of values in the order of time.
std::vector<double> inOrder(const CGraphicValues& ring)
{
    const double* begin = ring.getArray();
    const double* end = begin + CGraphicValues::arraySize;
    const double* oldest = begin + ring.getIterStart();
    std::vector<double> values(oldest, end);
    values.insert(values.end(), begin, oldest);
    return values;
}

} // namespace

GraphsPanel::GraphsPanel(QWidget* parent)
    : QWidget(parent)
    , plotLayout(new QHBoxLayout(this))
{
    plotLayout->setContentsMargins(0, 0, 0, 0);
    plotLayout->setSpacing(2);
    CDelayedValueSequenceLog::getInstance().resetPorcesor(this);
    connect(&timer, &QTimer::timeout, this, &GraphsPanel::refresh);
    timer.start(refreshMs);
}

GraphsPanel::~GraphsPanel()
{
    CDelayedValueSequenceLog::getInstance().resetPorcesor(nullptr);
}

void GraphsPanel::process()
{
    // Runs on the writer's thread under the log's lock: the values are fetched later.
    changed = true;
}

CurvePlot* GraphsPanel::plotOf(const std::wstring& name)
{
    CurvePlot*& plot = plots[name];
    if (plot == nullptr) {
        // Streams are named "what, unit".
        const QStringList parts = QString::fromStdWString(name).split(QStringLiteral(", "));
        const QString unit = parts.size() > 1 ? QLatin1Char(' ') + parts.at(1) : QString();
        plot = new CurvePlot(parts.first(), unit, this);
        plotLayout->addWidget(plot);
    }
    return plot;
}

void GraphsPanel::refresh()
{
    if (!isVisible() || !changed.exchange(false))
        return;
    std::map<std::wstring, CGraphicValues> streams;
    CDelayedValueSequenceLog::getInstance().getGraphicsSet(streams);
    for (const auto& [name, ring] : streams)
        plotOf(name)->setValues(ring.isEmpty() ? std::vector<double>() : inOrder(ring));
}
