#include "SliderTestSupport.h"

#include <AppComponents/controls/DoubleSliderView.h>
#include <support/ScaleMapper.h>

#include <stdexcept>

#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

/// Logs the calls that depend on each other.
class LoggingMapper : public ScaleMapper
{
public:
    using ScaleMapper::ScaleMapper;

    void limitToSubrange(bool limit) override
    {
        ScaleMapper::limitToSubrange(limit);
        log << (limit ? "limit" : "unlimit");
    }
    double UI2Model(int position) override
    {
        log << QStringLiteral("at %1").arg(position);
        return ScaleMapper::UI2Model(position);
    }
    int signifDigits(double value) override
    {
        log << QStringLiteral("digits of %1").arg(value);
        return ScaleMapper::signifDigits(value);
    }

    QStringList log;
};

/// A view over 0 ... 2 in steps of 0.01, default 1, beside its spin box.
class DoubleSliderViewTest : public testing::Test
{
protected:
    DoubleSliderViewTest()
    {
        auto* const layout = new QHBoxLayout(&window);
        layout->addWidget(view);
        layout->addWidget(spinBox);
        view->setOrientation(Qt::Horizontal);
        view->setMinimumWidth(300);
        view->setTooltipTemplate(QStringLiteral("%1 .. %2 (%3)"));
        view->setModelValuePresenter(spinBox);
        view->setMapper(mapper);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    Emissions emissions() { return emissionsOf(commits); }

    void turnWheel(int angle)
    {
        const QPoint middle = view->rect().center();
        QWheelEvent wheel(middle, view->mapToGlobal(middle), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view, &wheel);
        EXPECT_TRUE(wheel.isAccepted());
    }

    QWidget window;
    DoubleSliderView* view = new DoubleSliderView(&window);
    QDoubleSpinBox* spinBox = new QDoubleSpinBox(&window);
    QSharedPointer<ScaleMapper> mapper =
        QSharedPointer<ScaleMapper>::create(ScaleMapper::Scale::Linear, 200, 0.0, 2.0, 1.0);
    QSignalSpy commits{view, &DoubleSliderView::modelValueChanged};
    QSignalSpy typed{spinBox, SIGNAL(valueChanged(double))};
};

TEST_F(DoubleSliderViewTest, MapperLaysOutSliderTooltipAndSpinBoxSilently)
{
    view->setValue(50);
    emissions();
    view->setMapper(
        QSharedPointer<ScaleMapper>::create(ScaleMapper::Scale::Linear, 4, 10.0, 50.0, 30.0));
    EXPECT_EQ(view->maximum(), 4);
    EXPECT_EQ(view->toolTip(), "10 .. 50 (30)");
    EXPECT_EQ(spinBox->toolTip(), view->toolTip());
    EXPECT_EQ(spinBox->maximum(), 50);
    EXPECT_EQ(spinBox->decimals(), 0);
    EXPECT_EQ(spinBox->value(), view->getModelValue());
    EXPECT_EQ(emissions(), Emissions());
    EXPECT_EQ(typed.count(), 0);
}

TEST_F(DoubleSliderViewTest, TypedValueIsAnnouncedAsTypedAndShownAsMapped)
{
    spinBox->setFocus();
    spinBox->setDecimals(3);
    spinBox->selectAll();
    QTest::keyClicks(spinBox, "1.234");
    QTest::keyClick(spinBox, Qt::Key_Return);
    EXPECT_EQ(view->value(), 123);
    EXPECT_EQ(spinBox->text(), QLocale().toString(1.23, 'f', 2));
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(emissions(), (Emissions{{1.234}}));
}

TEST_F(DoubleSliderViewTest, KeysAndWheelCommitAtOnce)
{
    QTest::keyClick(view, Qt::Key_Right);
    EXPECT_EQ(emissions(), (Emissions{{0.01}}));
    turnWheel(-120);
    EXPECT_EQ(emissions(), (Emissions{{0.0}}));
    turnWheel(-120);
    EXPECT_EQ(emissions(), Emissions());
}

TEST_F(DoubleSliderViewTest, HeldHandleIsCommittedTwiceByTheTimerOnlyWhenItMoved)
{
    view->setDelay(1);
    view->setSliderDown(true);
    QTest::qWait(30);
    EXPECT_EQ(emissions(), Emissions());
    view->setSliderPosition(150);
    EXPECT_EQ(spinBox->value(), 1.5);
    ASSERT_TRUE(commits.wait());
    QTest::qWait(30);
    view->setSliderDown(false);
    EXPECT_EQ(emissions(), (Emissions{{1.5}, {1.5}}));
    view->setSliderPosition(50);
    QTest::qWait(30);
    EXPECT_EQ(emissions(), Emissions()) << "the release has stopped the timer";
}

TEST_F(DoubleSliderViewTest, SettersAreSilentAndKeepTheBlockedState)
{
    view->setModelValue(0.666);
    EXPECT_EQ(view->value(), 67);
    view->resetModelValueToDefault();
    EXPECT_EQ(view->getModelValue(), 1.0);
    view->setModelRange(0.0, 4.0);
    EXPECT_EQ(view->getModelValue(), 2.0) << "the handle stays";
    EXPECT_EQ(spinBox->value(), 2.0);
    EXPECT_EQ(view->toolTip(), "0.00 .. 4.00 (1.00)");
    view->blockSignals(true);
    view->setModelRange(0.0, 8.0, 3.0);
    EXPECT_TRUE(view->signalsBlocked());
    EXPECT_EQ(view->getDefaultModelValue(), 3.0);
    EXPECT_EQ(emissions(), Emissions());
    EXPECT_EQ(typed.count(), 0);
}

TEST_F(DoubleSliderViewTest, SubrangeLimitsSliderAndSpinBox)
{
    view->setModelValue(1.5);
    view->limitToSubrange(true);
    EXPECT_EQ(view->maximum(), 100);
    EXPECT_EQ(view->getModelValue(), 1.0);
    EXPECT_EQ(view->pageStep(), 1);
    EXPECT_EQ(spinBox->maximum(), 1.0);
    view->setToolTip(QStringLiteral("kept"));
    view->limitToSubrange(true);
    view->setModelRange(0.0, 2.0, 1.0);
    EXPECT_EQ(view->toolTip(), "kept");
    view->limitToSubrange(false);
    EXPECT_EQ(view->getModelValue(), 1.0);
    EXPECT_EQ(spinBox->maximum(), 2.0);
    EXPECT_EQ(emissions(), Emissions());
}

TEST_F(DoubleSliderViewTest, MarksTheDefaultAtItsPosition)
{
    const double span = view->width() - 8;
    EXPECT_TRUE(isMarkedAt(*view, span * 0.5 + 4));
    view->setModelRange(0.0, 2.0, 0.506);
    EXPECT_TRUE(isMarkedAt(*view, span * 51 / 200.0 + 4));
    view->limitToSubrange(true);
    EXPECT_TRUE(isMarkedAt(*view, span + 4));
    view->setShowDefaultModelValue(false);
    EXPECT_FALSE(isMarkedAt(*view, span + 4));
}

TEST_F(DoubleSliderViewTest, OnlyASpinBoxForDoublesCanPresent)
{
    QLabel label;
    EXPECT_THAT([&] { view->setModelValuePresenter(&label); },
                testing::ThrowsMessage<std::runtime_error>(
                    "DoubleSliderView - not appropriate QWidget provided"));
    EXPECT_THROW(view->setModelValuePresenter(nullptr), std::runtime_error);
    view->setModelValue(1.25);
    EXPECT_EQ(spinBox->value(), 1.25);
}

TEST_F(DoubleSliderViewTest, OutlivesItsPresenter)
{
    delete spinBox;
    view->setModelValue(1.25);
    view->changeToolip();
    view->limitToSubrange(true);
    QTest::keyClick(view, Qt::Key_Left);
    EXPECT_EQ(emissions(), (Emissions{{0.99}}));
    QDoubleSpinBox replacement;
    view->setModelValuePresenter(&replacement);
    EXPECT_EQ(replacement.value(), 0.99);
    delete view;
    replacement.setValue(0.5);
}

TEST(DoubleSliderView, AsksItsMapperInOrder)
{
    DoubleSliderView view(nullptr);
    const auto mapper =
        QSharedPointer<LoggingMapper>::create(ScaleMapper::Scale::Linear, 200, 0.0, 2.0, 1.0);
    view.setMapper(mapper);
    view.setValue(150);
    mapper->log.clear();
    view.setModelRange(0.0, 4.0, 2.0);
    EXPECT_EQ(mapper->log.join(", "), "at 150, unlimit, at 150, digits of 2, digits of 4, "
                                      "digits of 0, at 150, at 150");
    mapper->log.clear();
    view.limitToSubrange(true);
    EXPECT_EQ(mapper->log.join(", "),
              "limit, at 150, at 100, digits of 2, digits of 4, digits of 0, at 100");
}

TEST(DoubleSliderView, IsAnOrdinarySliderWithoutAMapper)
{
    DoubleSliderView view(nullptr);
    QDoubleSpinBox spinBox;
    spinBox.setValue(5.0);
    view.setModelValuePresenter(&spinBox);
    QSignalSpy commits(&view, &DoubleSliderView::modelValueChanged);
    view.setModelValue(3.0);
    view.setModelRange(1.0, 2.0, 1.5);
    view.setModelRange(1.0, 2.0);
    view.limitToSubrange(true);
    view.resetModelValueToDefault();
    QTest::keyClick(&view, Qt::Key_Up);
    EXPECT_EQ(spinBox.value(), 5.0);
    EXPECT_EQ(emissionsOf(commits), (Emissions{{0.0}}));
}

} // namespace
