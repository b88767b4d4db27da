#pragma once

#include <AppComponents/controls/IModelViewSubrangeMapper.h>

/// Spreads a model range over a number of slider steps, evenly or by equal factors.
///
/// Limited to the sub-range, the slider keeps the size of its steps and ends at the one of the
/// default value.
class ScaleMapper : public IModelViewSubrangeMapper
{
public:
    enum class Scale {
        Linear,
        Logarithmic, ///< for ranges above zero that span decades, such as an exposure time
    };

    /// \param newSteps number of slider steps over the whole range, at least 1
    /// \throws std::runtime_error as setModelRange() does
    ScaleMapper(Scale newScale, int newSteps, double min, double max, double defaultValue);

    int nOfTics() override;
    double getModelMax() override;
    double getModelMin() override;
    int getUIMax() override;
    int getUIMin() override;
    int Model2UI(double modelValue) override;
    double UI2Model(int uiValue) override;
    /// Keeps the default value as far as the new range holds it.
    void setModelRange(double min, double max) override;
    /// \throws std::runtime_error "Incorrect scaling limits" unless min < max and, on a logarithmic
    ///   scale, 0 < min; the mapper stays as it was. A default outside the range is limited to it.
    void setModelRange(double min, double max, double defaultValue) override;
    /// So many decimals that neighbouring steps differ at \p modelValue, six at most.
    int signifDigits(double modelValue) override;

    bool isLimitedToSubrange() override;
    double getModelDefault() override;
    void limitToSubrange(bool limit) override;

private:
    double exactPosition(double modelValue) const;
    int wholeRangePosition(double modelValue) const;

    Scale scale;
    int steps;
    double modelMin = 0.0;
    double modelMax = 1.0;
    double modelDefault = 0.0;
    bool limited = false;
};
