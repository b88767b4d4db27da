#pragma once

/// \file
/// What the tests of the view widgets share: pictures, viewports of an exact size and the mouse.

#include <QApplication>
#include <QGraphicsView>
#include <QImage>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

inline QImage plainPicture(int width, int height, QColor color = Qt::green)
{
    QImage picture(width, height, QImage::Format_RGB888);
    picture.fill(color);
    return picture;
}

/// Shows the view with a viewport, what remains beside the scroll bars, of the given size.
inline void showWithViewport(QGraphicsView& view, QSize size)
{
    view.show();
    for (int round = 0; round < 2; ++round) {
        QCoreApplication::processEvents();
        view.resize(view.size() + size - view.viewport()->size());
    }
    QCoreApplication::processEvents();
}

/// Mouse events of one widget, with the button and the modifiers as the window system reports
/// them.
struct Mouse {
    QWidget* widget;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    Qt::MouseButtons held = Qt::NoButton;

    void press(QPointF at) { send(QEvent::MouseButtonPress, at, held = Qt::LeftButton); }
    void move(QPointF to) { send(QEvent::MouseMove, to, held); }
    void release(QPointF at) { send(QEvent::MouseButtonRelease, at, held = Qt::NoButton); }
    void drag(QPointF from, QPointF to)
    {
        press(from);
        move(to);
        release(to);
    }

private:
    void send(QEvent::Type type, QPointF at, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, widget->mapToGlobal(at.toPoint()),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                          modifiers);
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(widget, &event);
    }
};
