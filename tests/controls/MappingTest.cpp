#include <AppComponents/controls/ComboBoxSelection.h>
#include <AppComponents/controls/LinearScaler.h>

#include <climits>
#include <cmath>
#include <stdexcept>

#include <QComboBox>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

const auto throwsIncorrectLimits =
    testing::ThrowsMessage<std::runtime_error>("Incorrect scaling limits");

TEST(LinearScaler, TakesTheNearestPositionInRange)
{
    struct {
        double modelMin, modelMax;
        int uiMin, uiMax;
        double modelValue;
        int uiValue;
    } const cases[] = {{0, 1, 0, 99, 0.5, 50},       {-10, 10, -10, 10, 2.5, 3},
                       {-10, 10, -10, 10, -2.5, -3}, {0, 1, 0, 99, 2.0, 99},
                       {0, 1, 0, 99, 1e300, 99},     {0, 1, 5, 99, -INFINITY, 5},
                       {0, 1, 5, 99, NAN, 5},        {1, 0, 0, 100, 0.25, 75},
                       {0, 1, 100, 0, 0.25, 100},    {-1, 1, INT_MIN, INT_MAX, 1, INT_MAX}};
    for (const auto& row : cases) {
        LinearScaler scaler;
        scaler.init(row.modelMin, row.modelMax, row.uiMin, row.uiMax);
        EXPECT_EQ(scaler.Model2UI(row.modelValue), row.uiValue)
            << row.modelValue << " on " << row.uiMin;
    }
}

TEST(LinearScaler, LimitsModelValues)
{
    LinearScaler scaler;
    scaler.init(0.0, 1.0, 0, 99);
    EXPECT_EQ(scaler.UI2Model(120), 1.0);
    EXPECT_EQ(scaler.nOfTics(), 99);
    scaler.init(0.0, 1.0, 0, 100);
    scaler.setModelRange(2.0, 4.0);
    EXPECT_EQ(scaler.UI2Model(50), 3.0);
    scaler.init(1.0, 0.0, 0, 100);
    EXPECT_EQ(scaler.UI2Model(75), 1.0) << "with an inverted range the lower bound wins";
}

TEST(LinearScaler, RejectedLimitsAreStoredWithoutTheirScale)
{
    LinearScaler scaler;
    scaler.init(0.0, 1.0, 0, 100);
    EXPECT_THAT([&] { scaler.init(0.0, 1.0, 5, 5); }, throwsIncorrectLimits);
    EXPECT_EQ(scaler.getUIMin(), 5);
    EXPECT_EQ(scaler.UI2Model(25), 0.25);

    scaler.init(0.0, 1.0, 0, 100);
    EXPECT_THAT([&] { scaler.setModelRange(0.75, 0.75); }, throwsIncorrectLimits);
    EXPECT_EQ(scaler.getModelMin(), 0.75);
    EXPECT_EQ(scaler.Model2UI(0.25), 25);
    EXPECT_EQ(scaler.UI2Model(25), 0.75);
}

TEST(ComboBoxSelection, SelectsSilentlyAndFallsBackToTheFirstEntry)
{
    QComboBox box;
    box.addItems({"Off", "Grey", "grey"});
    QSignalSpy changes(&box, SIGNAL(currentIndexChanged(int)));
    const auto selected = [&](auto select, auto what) {
        box.blockSignals(true);
        box.setCurrentIndex(1);
        select(&box, what);
        EXPECT_FALSE(box.signalsBlocked());
        return box.currentIndex();
    };
    EXPECT_EQ(selected(setCmbIndex, -1), 0);
    EXPECT_EQ(selected(setCmbIndex, 3), 0);
    EXPECT_EQ(selected(setCmbValue, QStringLiteral("grey")), 2);
    EXPECT_EQ(selected(setCmbValue, QStringLiteral("GREY")), 0);
    EXPECT_EQ(changes.count(), 0);
}

} // namespace
