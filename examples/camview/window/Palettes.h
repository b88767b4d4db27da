#pragma once

#include <QString>

/// How the window is coloured.
enum class ColorScheme { System, Light, Dark };

/// Applies a scheme to the whole application. System is what the desktop gave at the start.
void applyColorScheme(ColorScheme scheme);

/// The name under which a scheme is stored, and back; an unknown name is System.
QString nameOf(ColorScheme scheme);
ColorScheme colorSchemeNamed(const QString& name);
