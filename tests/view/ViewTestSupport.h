#pragma once

/// \file
/// What the tests of the view widgets share: pictures and mouse events on the viewport.

#include <QAbstractScrollArea>
#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

inline QImage plainPicture(int width, int height, QColor color = Qt::green)
{
    QImage picture(width, height, QImage::Format_RGB888);
    picture.fill(color);
    return picture;
}

/// Mouse events of one widget, with the button and the modifiers as the window system reports
/// them.
class Mouse
{
public:
    explicit Mouse(QWidget* target)
        : widget(target)
    {
    }

    void press(QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, modifiers);
        buttons = Qt::LeftButton;
    }
    void move(QPointF to, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        send(QEvent::MouseMove, to, Qt::NoButton, buttons, modifiers);
    }
    void release(QPointF at, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        buttons = Qt::NoButton;
        send(QEvent::MouseButtonRelease, at, Qt::LeftButton, buttons, modifiers);
    }

private:
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held,
              Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent event(type, at, widget->mapToGlobal(at.toPoint()), button, held, modifiers);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(widget, &event);
    }

    QWidget* widget;
    Qt::MouseButtons buttons = Qt::NoButton;
};
