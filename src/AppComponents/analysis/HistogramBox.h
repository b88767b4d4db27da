#pragma once

#include <memory>

#include <QWidget>

#include <AppComponents/AppComponentsExport.h>

class HistogramBoxForm;

/// A panel of fixed width that shows the histogram of the raw samples and the one of the processed
/// 8-bit picture, with their statistics, a logarithmic scale and switches of the colour channels.
///
/// The statistics are gathered while the histograms are painted, so the read-outs follow at the
/// next repaint. The switches take effect at the next repaint too, which previewHistogram()
/// requests. GUI thread only.
class APPCOMPONENTS_EXPORT HistogramBox : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramBox(QWidget* parent = nullptr);
    ~HistogramBox() override;

public slots:
    /// Shows a new pair of histograms; all arrays are copied before the call returns.
    /// Up to 256 bins take the narrow form (histograms 256 pixels wide), more the wide one (1024).
    /// \param size number of bins of each array, at least 256
    /// \param h raw histogram, not null
    /// \param h1, h2, h3 histograms of the processed picture, null for an absent channel: a grey
    ///   picture has only \p h1, a colour picture red, green and blue
    void previewHistogram(int size, int* h, int* h1, int* h2, int* h3);
    /// Empties histograms and read-outs; the form keeps its width.
    void clearHistogram();

signals:
    /// Each histogram now takes \p width pixels, 256 or 1024.
    void requiredWidth(int width);

protected:
    void paintEvent(QPaintEvent* event) override;

private slots:
    // Connected by the object names of the painters.
    void on_wgtHistogram_dataBoundsChange(int lowZeroBound, int hiZeroBound, int range, double avg);
    void on_wgtProcessedHistogram_dataBoundsChange(int lowZeroBound, int hiZeroBound, int range,
                                                   double avg);
    void onSetColorHistVisibility();

private:
    void togleHistSize(int size);
    void enableChannelSwitches(bool enable);

    std::unique_ptr<HistogramBoxForm> form;
    int histogramSize;
};
