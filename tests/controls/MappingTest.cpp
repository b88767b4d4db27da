#include <AppComponents/controls/ComboBoxSelection.h>
#include <AppComponents/controls/LinearScaler.h>
#include <support/ScaleMapper.h>

#include <climits>
#include <cmath>
#include <ostream>
#include <stdexcept>

#include <QComboBox>
#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

const auto throwsIncorrectLimits =
    testing::ThrowsMessage<std::runtime_error>("Incorrect scaling limits");

struct ScalerCase {
    const char* name;
    double modelMin, modelMax;
    int uiMin, uiMax;
    double modelValue;
    int uiValue;
};

void PrintTo(const ScalerCase& row, std::ostream* out)
{
    *out << row.name;
}

class LinearScalerPosition : public testing::TestWithParam<ScalerCase>
{
};

TEST_P(LinearScalerPosition, IsTheNearestInRange)
{
    const ScalerCase& row = GetParam();
    LinearScaler scaler;
    scaler.init(row.modelMin, row.modelMax, row.uiMin, row.uiMax);
    EXPECT_EQ(scaler.Model2UI(row.modelValue), row.uiValue);
}

INSTANTIATE_TEST_SUITE_P(
    Rounding, LinearScalerPosition,
    testing::Values(ScalerCase{"HalfUp", 0, 1, 0, 99, 0.5, 50},
                    ScalerCase{"HalfAwayFromZero", -10, 10, -10, 10, 2.5, 3},
                    ScalerCase{"NegativeHalfAwayFromZero", -10, 10, -10, 10, -2.5, -3},
                    ScalerCase{"Above", 0, 1, 0, 99, 2.0, 99},
                    ScalerCase{"Below", 0, 1, 0, 99, -0.1, 0},
                    ScalerCase{"FarAbove", 0, 1, 0, 99, 1e300, 99},
                    ScalerCase{"Infinite", 0, 1, 5, 99, -INFINITY, 5},
                    ScalerCase{"NotANumber", 0, 1, 5, 99, NAN, 5},
                    ScalerCase{"InvertedModel", 1, 0, 0, 100, 0.25, 75},
                    ScalerCase{"InvertedUI", 0, 1, 100, 0, 0.25, 100},
                    ScalerCase{"WholeIntegerRange", -1, 1, INT_MIN, INT_MAX, 1, INT_MAX}),
    [](const auto& row) { return row.param.name; });

TEST(LinearScaler, LimitsModelValues)
{
    LinearScaler scaler;
    scaler.init(0.0, 1.0, 0, 99);
    EXPECT_EQ(scaler.UI2Model(120), 1.0);
    EXPECT_EQ(scaler.UI2Model(-1), 0.0);
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
    EXPECT_EQ(scaler.getUIMax(), 5);
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
    EXPECT_EQ(selected(setCmbIndex, 2), 2);
    EXPECT_EQ(selected(setCmbIndex, -1), 0);
    EXPECT_EQ(selected(setCmbIndex, 3), 0);
    EXPECT_EQ(selected(setCmbValue, QStringLiteral("grey")), 2);
    EXPECT_EQ(selected(setCmbValue, QStringLiteral("GREY")), 0);
    EXPECT_EQ(selected(setCmbValue, QStringLiteral("gre")), 0);
    EXPECT_EQ(changes.count(), 0);
}

TEST(ScaleMapper, GoesThereAndBackAtEveryStep)
{
    using Scale = ScaleMapper::Scale;
    for (ScaleMapper mapper : {ScaleMapper(Scale::Linear, 300, -2.0, 7.0, 1.0),
                               ScaleMapper(Scale::Logarithmic, 300, 0.01, 1000.0, 40.0)})
        for (const bool isLimited : {false, true}) {
            mapper.limitToSubrange(isLimited);
            EXPECT_EQ(mapper.UI2Model(mapper.getUIMin()), mapper.getModelMin());
            EXPECT_EQ(mapper.UI2Model(mapper.getUIMax()),
                      isLimited ? mapper.getModelDefault() : mapper.getModelMax());
            for (int ui = mapper.getUIMin(); ui <= mapper.getUIMax(); ++ui)
                ASSERT_EQ(mapper.Model2UI(mapper.UI2Model(ui)), ui);
        }
}

TEST(ScaleMapper, StepsByEqualFactorsOnTheLogarithmicScale)
{
    ScaleMapper mapper(ScaleMapper::Scale::Logarithmic, 30, 1.0, 1000.0, 10.0);
    EXPECT_NEAR(mapper.UI2Model(10), 10.0, 1e-9);
    EXPECT_EQ(mapper.Model2UI(100.0), 20);
    EXPECT_EQ(mapper.signifDigits(1.0), 1);
    EXPECT_EQ(mapper.signifDigits(900.0), 0);
    mapper.limitToSubrange(true);
    EXPECT_EQ(mapper.getUIMax(), 10);
    EXPECT_EQ(mapper.Model2UI(500.0), 10);
    EXPECT_THAT([&] { mapper.setModelRange(0.0, 5.0, 1.0); }, throwsIncorrectLimits);
    EXPECT_EQ(mapper.getModelMax(), 1000.0);
}

} // namespace
