#include "HelpPage.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace
{

struct Gesture {
    const char* what;
    const char* does;
};

constexpr Gesture gestures[] = {
    {"Drag the fitted picture", "moves the camera's region; the scene follows the mouse"},
    {"Shift-drag", "selects a new region"},
    {"Drag the zoomed picture", "scrolls"},
    {"Wheel, + and -", "zoom"},
    {"Move the pointer", "shows sensor position, raw value and colour"},
    {"Click", "picks the colour under the pointer"},
    {"Double click", "switches full screen"},
    {"Drag a ruler's end", "measures; the Measurements panel takes its pixels by keyboard"},
    {"Drag the measured area or a corner", "moves or resizes it"},
    {"Drag on the sensor map", "moves or resizes the region; a click beside it centres it"},
    {"Escape", "hides the ruler, leaves full screen"},
    {"Tab and Shift+Tab, F6", "walk through the controls; F6 goes back to the picture"},
    {"Shift held at the start", "starts with default settings; the saved ones stay"},
};

QString row(const QString& left, const QString& right)
{
    return QStringLiteral("<tr><td style='padding-right:18px'><b>%1</b></td><td>%2</td></tr>")
        .arg(left.toHtmlEscaped(), right.toHtmlEscaped());
}

} // namespace

QString HelpPage::html(const std::vector<QAction*>& actions)
{
    QString rows;
    for (const QAction* action : actions)
        if (!action->shortcut().isEmpty())
            rows += row(action->shortcut().toString(QKeySequence::NativeText),
                        action->text().remove(QLatin1Char('&')).remove(QStringLiteral("…")));
    QString mouse;
    for (const Gesture& gesture : gestures)
        mouse += row(tr(gesture.what), tr(gesture.does));
    return QStringLiteral("<h3>%1</h3><table>%2</table><h3>%3</h3><table>%4</table>")
        .arg(tr("Shortcuts"), rows, tr("Mouse and keys"), mouse);
}

HelpPage::HelpPage(const std::vector<QAction*>& actions, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Controls and shortcuts"));
    auto* text = new QTextBrowser(this);
    text->setHtml(html(actions));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    resize(560, 640);
}
