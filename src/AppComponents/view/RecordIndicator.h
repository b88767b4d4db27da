#pragma once

#include <QElapsedTimer>
#include <QGraphicsObject>
#include <QGraphicsTextItem>
#include <QString>
#include <QTimer>

#include <AppComponents/AppComponentsExport.h>

/// A blinking record icon with a title and the running recording time, drawn at its own size
/// whatever the zoom.
///
/// The icons are resources of the application: ":/svg/icons/but-record.svg" and
/// ":/svg/icons/empty.svg"; where they are missing, the text "failed to load" stands in. GUI
/// thread only.
class APPCOMPONENTS_EXPORT RecordIndicator : public QGraphicsObject
{
    Q_OBJECT

public:
    explicit RecordIndicator(QGraphicsItem* parent = nullptr);
    ~RecordIndicator() override;

    /// Shows the indicator and counts the time from zero, also when it was running already.
    void start();

    /// Hides the indicator; its last text stays.
    void stop();

    /// Sets the text beside the icon.
    void setTitle(QString newTitle);

    /// Renders icon, title and time anew.
    void refresh();

    QRectF boundingRect() const override;

    /// Draws nothing: the text is an item of its own.
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

protected slots:
    void timerTimeOut();

private:
    int elapsedMs = 0;
    QTimer timer;
    QGraphicsTextItem textItem{this};
    QString title;
    QElapsedTimer clock; // monotonic: a change of the wall clock must not show in the time
    bool blinkOn = true;
};
