#pragma once

#include <QToolBar>

class PlaybackControl;
class QAction;
class QComboBox;

/// Chooses the source, and steers a source that replays something.
class SourceBar : public QToolBar
{
    Q_OBJECT

public:
    explicit SourceBar(QWidget* parent = nullptr);

    void setSource(const QString& source);
    QString source() const;
    /// Takes the controls of the open source; null hides them.
    void setPlayback(PlaybackControl* control);

    QAction* pauseAction() { return pause; }
    QAction* stepAction() { return step; }
    QAction* loopAction() { return loop; }

public slots:
    /// Leads the keyboard to the source.
    void focusSource();
    /// Adds the cameras that are there now to the list.
    void findCameras();

signals:
    void openRequested(const QString& source);
    void camerasFound(int count);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillSources();

    QComboBox* sources;
    QAction* find;
    QAction* pause;
    QAction* step;
    QAction* loop;
    PlaybackControl* playback = nullptr;
};
