#pragma once

#include <memory>

#include <QBasicTimer>
#include <QPointer>
#include <QSharedPointer>
#include <QSlider>

#include <AppComponents/AppComponentsExport.h>

class IModelViewSubrangeMapper;
class ISetValuer;

/// A slider that edits a floating-point model value through a mapper of the application and keeps
/// a spin box, its presenter, in step with the handle.
///
/// A value that the user sets is announced (committed) by modelValueChanged(): at once for keys,
/// page clicks and the wheel, every getDelay() milliseconds and on release for a drag, and with the
/// typed value itself for an edit in the spin box. Setters never announce. Without a mapper the
/// view is an ordinary slider whose model values are 0.0. GUI thread only.
///
/// Errors of the mapper pass through to the caller.
class APPCOMPONENTS_EXPORT DoubleSliderView : public QSlider
{
    Q_OBJECT

public:
    /// No mapper, no presenter, no delay; the default marker is shown; tracking is off.
    explicit DoubleSliderView(QWidget* parent = nullptr);
    ~DoubleSliderView() override;

    /// Shares \p newMapper and lays out range, tooltip and presenter by it, announcing nothing.
    void setMapper(QSharedPointer<IModelViewSubrangeMapper> newMapper);

    /// Presents the value in \p widget, a QDoubleSpinBox, which is not owned. It takes its value
    /// and decimals at once, its range and tooltip at the next resetSlider(). A previous spin box
    /// stays connected.
    /// \throws std::runtime_error "DoubleSliderView - not appropriate QWidget provided" for any
    ///   other widget and for null; the previous presenter stays.
    void setModelValuePresenter(QWidget* widget);

    /// Hands a new model range to the mapper and lays the view out anew. The handle keeps its
    /// position, whose model value is another one now.
    void setModelRange(double min, double max);
    /// The same with a default value; does nothing if all three are what the mapper has already.
    void setModelRange(double min, double max, double def);

    /// Moves the handle to the position nearest to \p value without announcing it.
    void setModelValue(double value);
    double getModelValue();
    double getMinModelValue();
    double getMaxModelValue();
    double getDefaultModelValue();
    void resetModelValueToDefault();

    /// Limits slider and presenter to the values from the minimum to the default.
    void limitToSubrange(bool limit);

    /// Whether the default value is marked above the groove, from the next repaint on.
    void setShowDefaultModelValue(bool show);
    bool getShowDefaultModelValue();

    /// Period in milliseconds of the commits while the handle is held.
    void setDelay(int milliseconds);
    int getDelay();

    /// Template of the tooltip with %1 = minimum, %2 = maximum, %3 = default; takes effect at the
    /// next changeToolip().
    void setTooltipTemplate(QString newTemplate);
    /// Builds the tooltip of the view and of its presenter.
    void changeToolip();
    /// Lays out the slider and its presenter by the mapper, keeping the model value.
    void resetSlider();
    /// Sets the decimals and the range of the presenter by the mapper.
    void resetValuer();

public slots:
    void sliderChange(SliderChange change) override;
    void sliderWasPressed();
    void sliderWasReleased();
    void sliderWasMoved(int position);
    void valuerEditingFinished();

signals:
    /// The user has set \p modelValue.
    void modelValueChanged(double modelValue);
    /// Never emitted.
    void timeLeftToChange(int valMs);

protected:
    /// Commits the position of the held handle if it has moved since the last commit. Listeners
    /// are told twice: by the change of the value and by the commit.
    void raiseModelValueChanged();
    void setPresentersValue(int position);
    void setPresentersValue();
    /// Distance in pixels of the handle at position \p value from the start of the groove.
    int rangeValueToPixelPos(int value) const;

    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    /// Never lets the wheel pass to the parent, not even at the ends of the range.
    void wheelEvent(QWheelEvent* event) override;

private:
    ISetValuer* liveValuer() const;
    double maxEditableValue() const;

    int delay = 0;
    std::unique_ptr<ISetValuer> valuer;
    QPointer<QWidget> presenter;
    QSharedPointer<IModelViewSubrangeMapper> mapper;
    bool showDefaultModelValue = true;
    bool limited = false;
    QBasicTimer commitTimer;
    int lastCommittedPosition = 0;
    QString tooltipTemplate;
};
