#pragma once

#include <AppComponents/imgproc/ImgCorrectionSettings.h>

#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Keeps what the user has set, one folder per camera:
///   image.xml    the correction settings, in the library's settings file
///   window.json  everything else, as the window's panels hand it over
/// Each file is written whole or not at all. A file that does not read is kept aside under a
/// name that says so, and the rest is loaded.
class SettingsStore
{
public:
    struct Content {
        ImgCorrectionSettings image;
        QJsonObject window;
        /// One line for the user for each file that was damaged.
        QStringList complaints;
    };

    /// \param root   the folder of all cameras; created by the first save
    /// \param camera the camera's name, in any characters
    SettingsStore(const QString& root, const QString& camera);

    /// The place of settings for this user.
    static QString defaultRoot();

    QString folder() const { return path; }

    /// What was saved last; \p defaults where nothing was.
    Content load(const ImgCorrectionSettings& defaults = {}) const;

    /// \return an empty text, or one line for the user why nothing was saved
    QString save(const Content& content) const;

private:
    QString fileName(const char* name) const;
    QString loadImage(ImgCorrectionSettings& settings) const;
    QString loadWindow(QJsonObject& window) const;

    QString path;
};
