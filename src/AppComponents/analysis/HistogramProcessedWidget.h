#pragma once

#include <array>
#include <vector>

#include <QImage>
#include <QPolygon>
#include <QWidget>

/// Draws the histogram of the processed picture, grey or of three colour channels, in the top 128
/// pixel rows. Used only inside HistogramBox.
///
/// Everything is combined with what lies beneath by AND, so that overlapping channels mix towards
/// grey: the parent provides a white ground.
class HistogramProcessedWidget : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramProcessedWidget(QWidget* parent = nullptr);

    /// Copies the bins of the channels that are not null, \p size (at least 256) each; an absent
    /// channel keeps its bins, extended by empty ones.
    void setHistogramData(int size, const int* h1, const int* h2, const int* h3);
    void clearData();
    /// Whether all three channels were given.
    bool isColor() const;

public slots:
    /// Takes effect at the next repaint, which it does not request.
    void setChanelVisibility(bool h1, bool h2, bool h3);
    /// Takes effect at the next repaint, which it does not request.
    void setLogarithmic(bool value);

signals:
    /// Emitted by each repaint that draws bars: in display pixels, the last empty level below the
    /// data (0 if there is none), the end of the last occupied level, hi - lo + 1 and the mean
    /// level weighted by the counts of all present channels.
    void dataBoundsChange(int lowZeroBound, int hiZeroBound, int range, double avg);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Channel {
        std::vector<int> bins;
        QImage picture;
        QPolygon outline; ///< rebuilt by each repaint, kept for its storage
        bool isPresent = false;
        bool isVisible = true;
    };
    struct Statistics {
        int lo = 0;
        int hi = 0;
        double average = 0.0;
    };

    int binCount() const;
    int step() const;
    bool isShown(const Channel& channel) const;
    int largestValue() const;
    void layOutOutlines(int largest);
    void layOutOutline(Channel& channel, int max) const;
    Statistics statistics() const;
    void drawChannelPictures(QPainter& painter);
    void drawOutlines(QPainter& painter) const;
    void shadeEmptyEnds(QPainter& painter, const Statistics& bounds) const;

    std::array<Channel, 3> channels;
    bool logarithmic = false;
};
