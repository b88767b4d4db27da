#pragma once

#include <AppComponents/controls/ISetTexter.h>

#include <QLabel>
#include <QPointer>

/// Shows a slider's value in a label. The slider owns the texter, not the label.
class LabelTexter : public ISetTexter
{
public:
    explicit LabelTexter(QLabel* shownIn)
        : label(shownIn)
    {
    }

    void setText(const QString& text) override
    {
        if (label)
            label->setText(text);
    }

private:
    QPointer<QLabel> label;
};
