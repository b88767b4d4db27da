#include <AppComponents/imgproc/ImgCorrectionSettings.h>

#include <AppComponents/log/BoundedXml.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/DiagnosticPrinting.h>

#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstddef>
#include <variant>

namespace
{

using Settings = ImgCorrectionSettings;
using Integer = std::int32_t Settings::*;
using Real = double Settings::*;
using Switch = bool Settings::*;

// QLatin1String counts the characters at run time unless it is told their number.
template <std::size_t size>
constexpr QLatin1String latin1(const char (&text)[size])
{
    return QLatin1String(text, static_cast<int>(size) - 1);
}

constexpr QLatin1String rootName = latin1("ImgCorrectionSettings");

struct Field {
    QLatin1String name;
    std::variant<Integer, Real, Switch> member;
};

// In the order of the file.
constexpr Field fields[] = {
    {latin1("ColorReconstructionMethod"), &Settings::colorReconstructionMethod},
    {latin1("imageProcFlags"), &Settings::flags},
    {latin1("Brightness"), &Settings::brightness},
    {latin1("Contrast"), &Settings::contrast},
    {latin1("Gamma"), &Settings::gamma},
    {latin1("FlipImageVertically"), &Settings::flipV},
    {latin1("FlipImageHorizontally"), &Settings::flipH},
    {latin1("WhiteBalanceValue"), &Settings::whiteBalanceValue},
    {latin1("ColorCorrectionGreen"), &Settings::colorCorrectionGreen},
    {latin1("ColorCorrectionRed"), &Settings::colorCorrectionRed},
    {latin1("ColorCorrectionBlue"), &Settings::colorCorrectionBlue},
    {latin1("ColorCorrectionHue"), &Settings::colorCorrectionHue},
    {latin1("ColorCorrectionSaturation"), &Settings::colorCorrectionSaturation},
    {latin1("ColorCorrectionLightness"), &Settings::colorCorrectionLightness},
};

struct TextOf {
    const Settings& settings;

    QString operator()(Integer member) const { return QString::number(settings.*member); }
    QString operator()(Real member) const { return QString::number(settings.*member, 'g', 6); }
    QString operator()(Switch member) const { return QString::number(settings.*member ? 1 : 0); }
};

struct StoreText {
    Settings& settings;
    const QString& text;

    void operator()(Integer member) const { settings.*member = text.toInt(); }
    void operator()(Real member) const { settings.*member = text.toDouble(); }
    void operator()(Switch member) const { settings.*member = text.toInt() != 0; }
};

std::wostream& logLine()
{
    return defLog(AllLogType);
}

void writeDocument(QXmlStreamWriter& writer, const Settings& settings)
{
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(rootName);
    for (const Field& field : fields)
        writer.writeTextElement(field.name, std::visit(TextOf{settings}, field.member));
    writer.writeEndElement();
    writer.writeEndDocument();
}

void readField(QXmlStreamReader& reader, Settings& settings)
{
    const auto* const field = std::find_if(
        std::begin(fields), std::end(fields),
        [name = reader.name()](const Field& candidate) { return candidate.name == name; });
    if (field == std::end(fields))
        return;
    const QString text = reader.readElementText();
    if (!reader.hasError())
        std::visit(StoreText{settings, text}, field->member);
}

void readDocument(QXmlStreamReader& reader, Settings& settings)
{
    int depth = 0;
    while (!reader.atEnd() && !reader.hasError()) {
        reader.readNext();
        if (reader.isStartElement()) {
            if (++depth > maxXmlDepth)
                reader.raiseError(QStringLiteral("nested too deeply"));
            else if (reader.name() != rootName)
                readField(reader, settings);
        }
        if (reader.isEndElement()) // also the end of the field just read
            --depth;
    }
}

void logCannotRead()
{
    logLine() << L"ImgCorrectionSettings::readSettings cannot read settings: " << std::endl;
}

// The address and not the text: what reads these logs knows the line in this form.
void logReaderError(const QXmlStreamReader& reader)
{
    if (!reader.hasError())
        return;
    const QString text = reader.errorString();
    logLine() << L"xmlReader.hasError: " << static_cast<const void*>(text.constData()) << std::endl;
}

} // namespace

void ImgCorrectionSettings::fillDefault(ImgCorrectionSettings& settings, Group groups)
{
    static const ImgCorrectionSettings defaults;
    if (groups & ToneGroup) {
        settings.brightness = defaults.brightness;
        settings.contrast = defaults.contrast;
        settings.gamma = defaults.gamma;
        settings.flipV = defaults.flipV;
        settings.flipH = defaults.flipH;
    }
    if (groups & WhiteBalanceGroup)
        settings.whiteBalanceValue = defaults.whiteBalanceValue;
    if (groups & ColorCorrectionGroup) {
        settings.colorCorrectionGreen = defaults.colorCorrectionGreen;
        settings.colorCorrectionRed = defaults.colorCorrectionRed;
        settings.colorCorrectionBlue = defaults.colorCorrectionBlue;
        settings.colorCorrectionHue = defaults.colorCorrectionHue;
        settings.colorCorrectionSaturation = defaults.colorCorrectionSaturation;
        settings.colorCorrectionLightness = defaults.colorCorrectionLightness;
    }
}

void ImgCorrectionSettings::setFlag(CamStateFlag flag, bool on)
{
    if (on)
        flags |= static_cast<std::int32_t>(flag);
    else
        flags &= ~static_cast<std::int32_t>(flag);
}

bool ImgCorrectionSettings::isFlagSet(CamStateFlag flag) const
{
    const auto bits = static_cast<std::int32_t>(flag);
    return (flags & bits) == bits;
}

bool ImgCorrectionSettings::saveSettings(QXmlStreamWriter& writer,
                                         const ImgCorrectionSettings& settings)
{
    try {
        writeDocument(writer, settings);
        return true;
    } catch (...) {
        logLine() << L"VideoSettings::saveSettings cannot write settings: " << std::endl;
        if (writer.hasError())
            logLine() << L"xmlWriter.hasError " << std::endl;
        return false;
    }
}

bool ImgCorrectionSettings::saveSettings(const QString& fileName,
                                         const ImgCorrectionSettings& settings)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        logLine() << L"ImgCorrectionSettings::saveSettings error writing settings to file: "
                  << fileName << L"; Error: " << file.errorString() << std::endl;
        return false;
    }
    QXmlStreamWriter writer(&file);
    return saveSettings(writer, settings);
}

bool ImgCorrectionSettings::readSettings(QXmlStreamReader& reader, ImgCorrectionSettings& settings)
{
    try {
        readDocument(reader, settings);
        logReaderError(reader);
        reader.clear();
        return true;
    } catch (...) {
        logCannotRead();
        logReaderError(reader);
        return false;
    }
}

bool ImgCorrectionSettings::readSettings(const QString& fileName, ImgCorrectionSettings& settings)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        logLine() << L"VideoSettings::saveSettings error reading settings: " << fileName
                  << std::endl;
        return false;
    }
    QXmlStreamReader reader;
    reader.setEntityExpansionLimit(maxXmlExpansion);
    try {
        reader.addData(readBoundedXml(file));
    } catch (...) { // the memory does not suffice
        logCannotRead();
        return false;
    }
    return readSettings(reader, settings);
}
