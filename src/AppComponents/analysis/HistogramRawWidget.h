#pragma once

#include <vector>

#include <QPolygon>
#include <QWidget>

/// Draws the histogram of the raw samples: bin i in pixel column i + 1, never scaled horizontally,
/// over the whole height of the widget. Used only inside HistogramBox.
class HistogramRawWidget : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramRawWidget(QWidget* parent = nullptr);

    /// Copies \p size bins from \p h.
    void setHistogramData(int size, const int* h);
    void clearData();

public slots:
    /// Takes effect at the next repaint, which it does not request.
    void setLogarithmic(bool value);

signals:
    /// Emitted by each repaint that draws bars: the last empty bin below the data (0 if there is
    /// none), the last occupied bin, hi - lo + 1 and the mean bin index weighted by the counts.
    void dataBoundsChange(int lowZeroBound, int hiZeroBound, int range, double avg);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Statistics {
        int lowZero = 0;
        int hiZero = 0;
        double average = 0.0;
    };

    Statistics layOutOutline(int max);
    void draw(QPainter& painter, const Statistics& statistics);

    std::vector<int> bins;
    QPolygon outline; ///< rebuilt by each repaint, kept for its storage
    bool logarithmic = false;
};
