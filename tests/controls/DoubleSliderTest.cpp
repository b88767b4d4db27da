#include "SliderTestSupport.h"

#include <AppComponents/controls/DoubleSlider.h>
#include <AppComponents/controls/ISetTexter.h>

#include <stdexcept>

#include <gtest/gtest.h>

namespace
{

/// Logs what it shows, and its end.
class LoggingTexter : public ISetTexter
{
public:
    explicit LoggingTexter(QStringList& target)
        : log(target)
    {
    }
    ~LoggingTexter() override { log << "gone"; }
    void setText(const QString& text) override { log << text; }

private:
    QStringList& log;
};

class DoubleSliderTest : public testing::Test
{
protected:
    DoubleSliderTest()
    {
        slider.setOrientation(Qt::Horizontal);
        slider.setRange(0, 100);
        slider.resize(300, 30);
        slider.show();
    }

    Emissions emissions() { return emissionsOf(commits); }

    DoubleSlider slider{nullptr};
    QSignalSpy commits{&slider, &DoubleSlider::modelValueChanged};
};

TEST_F(DoubleSliderTest, KeyStepsAreCommittedOnceAfterThePause)
{
    slider.setDelay(100);
    for (int i = 0; i < 5; ++i)
        QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(emissions(), Emissions());
    ASSERT_TRUE(commits.wait());
    slider.setValue(50);
    QTest::qWait(250);
    EXPECT_EQ(emissions(), (Emissions{{0.05, 5}})) << "the commit has ended the wait";
}

TEST_F(DoubleSliderTest, DragIsCommittedByTheReleaseAndByTheMovesOfTheApplication)
{
    slider.setDelay(100);
    slider.setSliderDown(true);
    slider.setSliderPosition(40);
    slider.sliderMoved(40);
    EXPECT_EQ(emissions(), Emissions());
    slider.setSliderDown(false);
    EXPECT_EQ(emissions(), (Emissions{{0.4, 40}}));
    slider.setValue(20);
    slider.sliderMoved(20);
    EXPECT_EQ(emissions(), (Emissions{{0.2, 20}}));
    slider.setValue(0);
    QTest::qWait(250);
    EXPECT_EQ(emissions(), Emissions()) << "the release has ended the wait";
}

TEST_F(DoubleSliderTest, SettersMoveTheHandleSilently)
{
    QSignalSpy values(&slider, &QSlider::valueChanged);
    slider.setRange(0, 99);
    slider.blockSignals(true);
    slider.setModelValue(0.25);
    EXPECT_FALSE(slider.signalsBlocked());
    EXPECT_EQ(slider.value(), 25);
    slider.sliderWasReleased();
    slider.setDefaultModelValue(5.0);
    slider.resetModelValueToDefault();
    EXPECT_EQ(slider.getModelValue(), 1.0);
    slider.sliderWasReleased();
    EXPECT_EQ(emissions(), Emissions());
    EXPECT_EQ(values.count(), 0);
}

TEST_F(DoubleSliderTest, ModelRangeIsSpreadOverAnyIntegerRange)
{
    slider.setModelRange(0.0, 2.0);
    EXPECT_EQ(slider.toolTip(), "Min: 0.00, max: 2.00");
    slider.setModelRange(0.5, 2.0, 1.0);
    EXPECT_EQ(slider.toolTip(), "Min: 0.50, max: 2.00, default: 1.00");
    EXPECT_EQ(slider.getModelValue(), 0.5);
    slider.setRange(-10, 5);
    slider.setValue(0);
    EXPECT_DOUBLE_EQ(slider.getModelValue(), 1.5);
    slider.setModelTickInterval(0.6);
    EXPECT_EQ(slider.tickInterval(), 0) << "a model value, at position -9";
    slider.setModelTickInterval(1.8);
    EXPECT_EQ(slider.tickInterval(), 3);
}

TEST_F(DoubleSliderTest, RejectedRangesThrowAndLeaveTheSignalsBlocked)
{
    EXPECT_THROW(slider.setModelRange(1.0, 1.0, 1.0), std::runtime_error);
    EXPECT_TRUE(slider.signalsBlocked());
    EXPECT_EQ(slider.toolTip(), QString());
    slider.blockSignals(false);
    slider.setModelRange(0.0, 1.0);
    EXPECT_THROW(slider.setRange(7, 7), std::runtime_error);
}

TEST_F(DoubleSliderTest, TexterFollowsAtOnceAndIsOwned)
{
    QStringList log;
    {
        DoubleSlider owner(nullptr);
        owner.setValue(33);
        auto* const texter = new LoggingTexter(log);
        owner.setModelValueViewer(texter, nullptr);
        owner.setModelValueViewer(texter, [](double v) { return QString::number(v, 'f', 1); });
        owner.setModelValue(1.0);
        owner.setModelValueViewer(new LoggingTexter(log), nullptr);
        owner.setModelValueViewer(nullptr, nullptr);
        owner.setModelValueViewer(new LoggingTexter(log), nullptr);
    }
    EXPECT_EQ(log, QStringList({"0.333333", "0.3", "1.0", "gone", "1", "gone", "1", "gone"}));
}

TEST_F(DoubleSliderTest, MarksTheDefaultInsideTheModelRange)
{
    slider.setModelRange(-1.0, 1.0, 0.5);
    const double x = 292 * 0.75 + 4;
    EXPECT_FALSE(isMarkedAt(slider, x));
    slider.setShowDefaultModelValue(true);
    EXPECT_TRUE(isMarkedAt(slider, x) && !isMarkedAt(slider, x - 5) && !isMarkedAt(slider, x + 5));
    slider.setDefaultModelValue(1.5);
    EXPECT_FALSE(isMarkedAt(slider, 295));
}

} // namespace
