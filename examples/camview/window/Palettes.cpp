#include "Palettes.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

namespace
{

struct Tones {
    QRgb window;
    QRgb base;
    QRgb button;
    QRgb text;
    QRgb faintText;
    QRgb highlight;
    QRgb highlightedText;
};

constexpr Tones light = {0xFFF2F3F5, 0xFFFFFFFF, 0xFFE6E8EB, 0xFF1C1E21,
                         0xFF73777D, 0xFF1F6FB5, 0xFFFFFFFF};
constexpr Tones dark = {0xFF33363B, 0xFF202225, 0xFF41454B, 0xFFE6E7E9,
                        0xFF9498A0, 0xFF4DA3E8, 0xFF101214};

QPalette paletteOf(const Tones& tones)
{
    QPalette palette;
    palette.setColor(QPalette::Window, tones.window);
    palette.setColor(QPalette::Base, tones.base);
    palette.setColor(QPalette::AlternateBase, tones.window);
    palette.setColor(QPalette::Button, tones.button);
    palette.setColor(QPalette::ToolTipBase, tones.base);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, tones.text);
        palette.setColor(QPalette::Disabled, role, tones.faintText);
    }
    palette.setColor(QPalette::PlaceholderText, tones.faintText);
    palette.setColor(QPalette::Highlight, tones.highlight);
    palette.setColor(QPalette::HighlightedText, tones.highlightedText);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, tones.faintText);
    palette.setColor(QPalette::Link, tones.highlight);
    const QColor button(tones.button);
    palette.setColor(QPalette::Light, button.lighter(120));
    palette.setColor(QPalette::Midlight, button.lighter(110));
    palette.setColor(QPalette::Mid, button.darker(125));
    palette.setColor(QPalette::Dark, button.darker(160));
    palette.setColor(QPalette::Shadow, button.darker(220));
    return palette;
}

} // namespace

void applyColorScheme(ColorScheme scheme)
{
    // What the desktop gave must be kept before the first change.
    static const QPalette desktopPalette = QApplication::palette();
    static const QString desktopStyle = QApplication::style()->objectName();

    if (scheme == ColorScheme::System) {
        QApplication::setStyle(desktopStyle);
        QApplication::setPalette(desktopPalette);
        return;
    }
    // Only Fusion takes every colour from the palette.
    QApplication::setPalette(paletteOf(scheme == ColorScheme::Dark ? dark : light));
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
}

QString nameOf(ColorScheme scheme)
{
    switch (scheme) {
    case ColorScheme::Light:
        return QStringLiteral("light");
    case ColorScheme::Dark:
        return QStringLiteral("dark");
    case ColorScheme::System:
        break;
    }
    return QStringLiteral("system");
}

ColorScheme colorSchemeNamed(const QString& name)
{
    if (name == QLatin1String("light"))
        return ColorScheme::Light;
    return name == QLatin1String("dark") ? ColorScheme::Dark : ColorScheme::System;
}
