#pragma once

#include <QFrame>

class QLabel;

/// A strip above the picture that tells the user what went wrong, until it is closed or nothing
/// is wrong any more. Unlike a dialogue it never stands in the way.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent = nullptr);

    void showNotice(const QString& text);
    QString notice() const;

private:
    QLabel* label;
};
