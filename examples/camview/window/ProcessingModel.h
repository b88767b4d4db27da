#pragma once

#include "core/ProcessingSettings.h"

#include <QObject>

/// The one place where the window keeps the way from raw samples to the picture. Panels edit it
/// and follow it; the session is told of every change.
class ProcessingModel : public QObject
{
    Q_OBJECT

public:
    explicit ProcessingModel(QObject* parent = nullptr);

    /// What a camera starts with that was never set up.
    static ProcessingSettings defaults();

    const ProcessingSettings& settings() const { return current; }
    const ImgCorrectionSettings& correction() const { return current.correction; }

    /// Changes part of the settings: \p edit gets them as they are.
    template <typename Edit>
    void change(Edit edit)
    {
        edit(current);
        emit changed(current);
    }

    void setSettings(const ProcessingSettings& settings);

signals:
    void changed(const ProcessingSettings& settings);

private:
    ProcessingSettings current = defaults();
};
