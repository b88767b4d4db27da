#pragma once

class QPainter;
class QRect;
class QSlider;
class QStyleOptionSlider;

/// Draws the marker of a default value: a grey triangle whose tip stands just above the middle of
/// \p area, at \p fraction of its width less a margin at either end.
void drawDefaultMarker(QPainter& painter, const QRect& area, double fraction);

/// Pixel position of \p value along the groove that the style of \p slider lays out for \p option,
/// measured from the groove's start to the handle's start.
int sliderValueToPixelPos(const QSlider& slider, const QStyleOptionSlider& option, int value);
