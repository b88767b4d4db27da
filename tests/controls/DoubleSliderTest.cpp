#include "SliderTestSupport.h"

#include <AppComponents/controls/DoubleSlider.h>
#include <AppComponents/controls/ISetTexter.h>

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

const auto throwsIncorrectLimits =
    testing::ThrowsMessage<std::runtime_error>("Incorrect scaling limits");

struct TexterLog {
    QStringList texts;
    int destroyed = 0;
};

class LoggingTexter : public ISetTexter
{
public:
    explicit LoggingTexter(TexterLog& target)
        : log(target)
    {
    }
    ~LoggingTexter() override { ++log.destroyed; }
    void setText(const QString& text) override { log.texts << text; }

private:
    TexterLog& log;
};

class OpenSlider : public DoubleSlider
{
public:
    using DoubleSlider::DoubleSlider;
    using DoubleSlider::rangeValueToPixelPos;
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

    OpenSlider slider{nullptr};
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

TEST_F(DoubleSliderTest, ActionThatChangesNothingKeepsWaitingForAChange)
{
    QTest::keyClick(&slider, Qt::Key_Home);
    QTest::qWait(20);
    EXPECT_EQ(emissions(), Emissions());
    slider.setValue(10);
    ASSERT_TRUE(commits.wait());
    EXPECT_EQ(emissions(), (Emissions{{0.1, 10}}));
}

TEST_F(DoubleSliderTest, WithoutADelayAKeyStepIsCommittedByTheNextPassOfTheLoop)
{
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(emissions(), Emissions());
    ASSERT_TRUE(commits.wait());
    EXPECT_EQ(emissions(), (Emissions{{1.0, 100}}));
}

TEST_F(DoubleSliderTest, DragIsCommittedByTheRelease)
{
    slider.setDelay(100);
    pressHandle(slider);
    dragHandle(slider, 60);
    dragHandle(slider, 60);
    const int position = slider.value();
    EXPECT_GT(position, 20);
    EXPECT_EQ(emissions(), Emissions());
    releaseHandle(slider);
    EXPECT_EQ(emissions(), (Emissions{{slider.getModelValue(), position}}));
    pressHandle(slider);
    releaseHandle(slider);
    slider.setValue(0);
    QTest::qWait(250);
    EXPECT_EQ(emissions(), Emissions()) << "the release has ended the wait";
}

TEST_F(DoubleSliderTest, HeldHandleIsCommittedAfterThePauseAndNotAgainByTheRelease)
{
    slider.setDelay(1);
    pressHandle(slider);
    dragHandle(slider, 60);
    ASSERT_TRUE(commits.wait());
    releaseHandle(slider);
    QTest::qWait(50);
    EXPECT_EQ(emissions(), (Emissions{{slider.getModelValue(), slider.value()}}));
}

TEST_F(DoubleSliderTest, SlotsForTheApplicationCommitUnlessTheHandleIsHeld)
{
    slider.setValue(10);
    slider.setSliderDown(true);
    slider.sliderMoved(10);
    EXPECT_EQ(emissions(), Emissions());
    slider.sliderWasPressed();
    slider.setSliderDown(false);
    EXPECT_EQ(emissions(), Emissions()) << "the press has taken the position as committed";
    slider.setValue(20);
    slider.sliderMoved(20);
    slider.sliderMoved(20);
    EXPECT_EQ(emissions(), (Emissions{{0.2, 20}}));
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
    EXPECT_THAT([&] { slider.setModelRange(1.0, 1.0, 1.0); }, throwsIncorrectLimits);
    EXPECT_TRUE(slider.signalsBlocked());
    EXPECT_EQ(slider.toolTip(), QString());
    slider.blockSignals(false);
    slider.setModelRange(0.0, 1.0);
    EXPECT_THAT([&] { slider.setRange(7, 7); }, throwsIncorrectLimits);
}

TEST_F(DoubleSliderTest, TexterFollowsAtOnceAndIsOwned)
{
    TexterLog first;
    TexterLog second;
    {
        DoubleSlider owner(nullptr);
        owner.setValue(33);
        auto* const texter = new LoggingTexter(first);
        owner.setModelValueViewer(texter, nullptr);
        owner.setModelValueViewer(texter, [](double v) { return QString::number(v, 'f', 1); });
        owner.setModelValue(1.0);
        EXPECT_EQ(first.texts, QStringList({"0.333333", "0.3", "1.0"}));
        EXPECT_EQ(first.destroyed, 0);

        owner.setModelValueViewer(new LoggingTexter(second), nullptr);
        EXPECT_EQ(first.destroyed, 1);
        owner.setModelValueViewer(nullptr, nullptr);
        EXPECT_EQ(second.destroyed, 1);
        owner.setModelValueViewer(new LoggingTexter(second), nullptr);
    }
    EXPECT_EQ(first.texts.size(), 3);
    EXPECT_EQ(second.destroyed, 2);
}

TEST_F(DoubleSliderTest, MarksTheDefaultInsideTheModelRange)
{
    slider.setModelRange(-1.0, 1.0, 0.5);
    const QImage plain = pictureOf(slider);
    slider.setShowDefaultModelValue(true);
    EXPECT_EQ(pictureOf(slider), withMarker(plain, 292 * 0.75 + 4));
    slider.setDefaultModelValue(1.5);
    EXPECT_EQ(pictureOf(slider), plain);
}

TEST_F(DoubleSliderTest, PixelPositionsFollowTheHandle)
{
    const int start = handleOf(slider).left();
    for (const int value : {0, 30, 100}) {
        slider.setValue(value);
        EXPECT_EQ(start + slider.rangeValueToPixelPos(value), handleOf(slider).left());
    }
}

} // namespace
