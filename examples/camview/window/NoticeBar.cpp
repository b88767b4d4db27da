#include "NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent)
    , label(new QLabel(this))
{
    // Dark on amber in every scheme.
    setStyleSheet(QStringLiteral("NoticeBar { background: #f2c14e; } "
                                 "QLabel, QToolButton { color: #221a00; background: none; }"));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText); // names of files and cameras may hold anything
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* close = new QToolButton(this);
    close->setText(QStringLiteral("✕"));
    close->setAutoRaise(true);
    close->setAccessibleName(tr("Close the notice"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(label, 1);
    layout->addWidget(close);
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    hide();
}

void NoticeBar::showNotice(const QString& text)
{
    label->setText(text);
    setAccessibleName(text);
    setVisible(!text.isEmpty());
}

QString NoticeBar::notice() const
{
    return isHidden() ? QString() : label->text();
}
