#pragma once

#include <AppComponents/controls/IModelViewMapper.h>

/// Maps a model range linearly onto a UI range.
///
/// Either range may be inverted (its minimum above its maximum). Values outside a range are never
/// an error: both mappings limit their result. Usable after the first successful init().
class APPCOMPONENTS_EXPORT LinearScaler : public IModelViewMapper
{
public:
    /// Stores the limits and derives the scale from them.
    /// \throws std::runtime_error "Incorrect scaling limits" if the two ends of a range are equal;
    ///   the limits are stored all the same, while the scale stays the one of the last success.
    void init(double newModelMin, double newModelMax, int newUIMin, int newUIMax);

    int nOfTics() override;
    double getModelMax() override;
    double getModelMin() override;
    int getUIMax() override;
    int getUIMin() override;
    /// Nearest UI position, halves away from zero. With an inverted UI range, and for a value
    /// that is not a number, always getUIMin().
    int Model2UI(double modelValue) override;
    double UI2Model(int uiValue) override;
    /// \throws std::runtime_error as init() does.
    void setModelRange(double min, double max) override;
    /// Always 2.
    int signifDigits(double modelValue) override;

private:
    double modelMin = 0.0;
    double modelMax = 1.0;
    int uiMin = 0;
    int uiMax = 1;

    // The mapping stands apart from the limits, because rejected limits do not change it.
    double modelOrigin = 0.0; ///< model value at UI position uiOrigin
    double modelSpan = 1.0;   ///< model units per uiSpan steps
    double uiOrigin = 0.0;
    double uiSpan = 1.0;
};
