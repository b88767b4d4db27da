#pragma once

#include <memory>

#include <QSlider>
#include <QTimer>

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/controls/LinearScaler.h>

class ISetTexter;

/// A slider that edits a floating-point model value, spread linearly over its integer range.
///
/// A value that the user sets is announced (committed) by modelValueChanged() only when the handle
/// is released or when the user has paused for getDelay() milliseconds; setters never announce. An
/// optional texter follows the handle at once. GUI thread only.
///
/// The integer range must never be a single position: the slot that follows a change of the range
/// throws std::runtime_error "Incorrect scaling limits" then.
class APPCOMPONENTS_EXPORT DoubleSlider : public QSlider
{
    Q_OBJECT

public:
    /// Model range 0.0 ... 1.0, no delay, no marker.
    explicit DoubleSlider(QWidget* parent = nullptr);
    ~DoubleSlider() override;

    /// Spreads \p min ... \p max over the integer range and shows both in the tooltip. The handle
    /// stays where it is.
    /// \throws std::runtime_error "Incorrect scaling limits" if the ends are equal or the integer
    ///   range is a single position; the slider's signals stay blocked then.
    void setModelRange(double min, double max);
    /// The same with a default value, which the tooltip shows too.
    void setModelRange(double min, double max, double def);
    double getMinModelValue();
    double getMaxModelValue();

    /// Moves the handle to the position nearest to \p value without announcing it. Afterwards the
    /// slider's signals are unblocked, whatever they were.
    void setModelValue(double value);
    /// The model value of the current position.
    double getModelValue();

    void setDefaultModelValue(double value);
    double getDefaultModelValue();
    void resetModelValueToDefault();
    /// Whether the default value is marked above the groove, from the next repaint on.
    void setShowDefaultModelValue(bool show);
    bool getShowDefaultModelValue();

    /// Pause in milliseconds after which a moved value is committed.
    void setDelay(int milliseconds);
    int getDelay();

    /// Sets the tick interval to the position of \p interval, taken as a model value; this is the
    /// intended step count only where model and integer range both start at 0.
    void setModelTickInterval(double interval);

    /// Shows the model value in \p texter, through \p format or, without one, with six significant
    /// digits. The slider owns the texter until another one, or null, takes its place.
    void setModelValueViewer(ISetTexter* texter, QString (*format)(double));

public slots:
    void sliderChange(SliderChange change) override;
    void actionWasTriggered(int);
    /// Commits a position that differs from the last committed one; while the handle is held, only
    /// the pause takes the present getDelay(). For the application to connect. Hides the signal of
    /// the same name: connections to the signal name QAbstractSlider.
    void sliderMoved(int);
    void sliderRangeChanged(int minValue, int maxValue);
    /// Takes the position as committed and starts the pause. For the application to connect.
    void sliderWasPressed();
    void sliderWasReleased();
    void timerTimeOut();

signals:
    /// The user has set \p modelValue, at the position \p value.
    void modelValueChanged(double modelValue, int value);
    /// Never emitted.
    void timeLeftToChange(int valMs);

protected:
    void paintEvent(QPaintEvent* event) override;

    /// Distance in pixels of the handle at position \p value from the start of the groove.
    int rangeValueToPixelPos(int value) const;

private:
    void commit();
    void setSilently(double modelValue);

    LinearScaler scaler;
    int delay = 0;
    double defaultModelValue = 0.0;
    QString (*viewerFormat)(double) = nullptr;
    int lastCommittedPosition = 0;
    std::unique_ptr<ISetTexter> texter;
    bool showDefaultModelValue = false;
    QTimer commitTimer;
};
