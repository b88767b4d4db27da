#pragma once

#include <AppComponents/AppComponentsExport.h>
#include <AppComponents/imgproc/ProcessingFlags.h>

#include <cstdint>

class QString;
class QXmlStreamReader;
class QXmlStreamWriter;

/// The user's choices of image correction, a plain value that is stored in a small XML file.
///
/// The file has the root element "ImgCorrectionSettings" with one child per field. Failures are
/// told by a return value and through `defLog`; nothing is thrown.
class APPCOMPONENTS_EXPORT ImgCorrectionSettings
{
public:
    /// Groups of fields, combined with bitwise or. `colorReconstructionMethod` and `flags` belong
    /// to none.
    enum Group : int {
        ToneGroup = 1,           ///< brightness, contrast, gamma and the flips
        WhiteBalanceGroup = 2,   ///< whiteBalanceValue
        ColorCorrectionGroup = 4 ///< the six colour correction fields
    };

    std::int32_t colorReconstructionMethod = 0;
    std::int32_t flags = 0; ///< CamStateFlag bits, others kept
    double brightness = 0.0;
    double contrast = 1.0;
    double gamma = 1.0;
    bool flipV = false;
    bool flipH = false;
    std::int32_t whiteBalanceValue = 0; ///< for the application; the processor does not use it
    double colorCorrectionGreen = 1.0;
    double colorCorrectionRed = 1.0;
    double colorCorrectionBlue = 1.0;
    double colorCorrectionHue = 0.0; ///< degrees
    double colorCorrectionSaturation = 1.0;
    double colorCorrectionLightness = 1.0;

    /// Gives the fields of \p groups their default values.
    static void fillDefault(ImgCorrectionSettings& settings, Group groups);

    /// Adds the bits of \p flag to `flags`, or removes them.
    void setFlag(CamStateFlag flag, bool on);

    /// Whether all bits of \p flag are set in `flags`.
    bool isFlagSet(CamStateFlag flag) const;

    /// Writes \p settings as a whole document, indented.
    /// \return false if writing threw an exception
    static bool saveSettings(QXmlStreamWriter& writer, const ImgCorrectionSettings& settings);

    /// Writes \p settings to a file, truncating it.
    /// \return false if the file could not be opened or writing threw an exception
    static bool saveSettings(const QString& fileName, const ImgCorrectionSettings& settings);

    /// Reads the fields whose elements the document holds, at any depth up to 1,000 levels, and
    /// leaves the others unchanged; clears the reader. A text that is no number gives 0. What
    /// stands before an error in the document is kept. The reader's device should be bounded.
    /// \return false if reading threw an exception
    static bool readSettings(QXmlStreamReader& reader, ImgCorrectionSettings& settings);

    /// Reads the settings from a file, of which the part within the bounds of a document that a
    /// person could have written: 64 MiB, entities that expand to 1 MiB.
    /// \return false if the file could not be opened or reading threw an exception
    static bool readSettings(const QString& fileName, ImgCorrectionSettings& settings);
};

/// Both groups.
constexpr ImgCorrectionSettings::Group operator|(ImgCorrectionSettings::Group a,
                                                 ImgCorrectionSettings::Group b)
{
    return static_cast<ImgCorrectionSettings::Group>(static_cast<int>(a) | static_cast<int>(b));
}
