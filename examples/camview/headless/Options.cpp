#include "Options.h"

#include "cameras/CameraFactory.h"
#include "core/RecordingFiles.h"
#include "core/SettingsFile.h"

#include <AppComponents/frames/RingFrameBuffer.h>
#include <AppComponents/imgproc/ImgCorrectionLimits.h>
#include <AppComponents/imgproc/ProcessingFlags.h>

#include <QCommandLineParser>

#include <cmath>
#include <memory>

namespace
{

// Nobody sees more; every frame's would only slow the processing down.
constexpr std::chrono::milliseconds histogramPeriod(100);

struct OptionText {
    const char* name;
    const char* value; ///< null for a switch
    const char* help;
};

constexpr OptionText optionTexts[] = {
    {"help", nullptr, "Show this text."},
    {"version", nullptr, "Show the version."},
    {"list", nullptr, "List the cameras that genicam:NAME takes."},
    {"headless", nullptr, "Run without a window."},
    {"source", "SOURCE", "Where frames come from (below); sim by default."},
    {"frames", "N", "Stop after N pictures; 10, or all that a file holds."},
    {"duration", "S", "Stop after S seconds."},
    {"output", "DIR", "Write each picture into this folder as PNG; from a window, what is saved."},
    {"record", "FILE", "Record the raw frames into FILE.dat and its companions."},
    {"snapshot", "FILE", "Write the last picture as PNG, and its raw frame beside it."},
    {"settings", "FILE", "Read the image settings from FILE, and write the new ones there."},
    {"log-config", "FILE", "Set up logging from FILE instead of the user's file."},
    {"json", nullptr, "Print the summary as one JSON object."},
    {"region", "X,Y,W,H", "Part of the sensor to read out."},
    {"decimation", "N", "Read out every N-th sample, of a mosaic every N-th cell."},
    {"bits", "N", "Bits per raw sample: 8, 10 or 12."},
    {"exposure", "MS", "Exposure time in milliseconds."},
    {"gain", "DB", "Gain in decibels."},
    {"rate", "FPS", "Run the source at this rate in real time, whatever is dropped."},
    {"mirror-h", nullptr, "Read the sensor out mirrored left to right."},
    {"mirror-v", nullptr, "Read the sensor out mirrored top to bottom."},
    {"average", "N", "Show the mean of the last N frames (1 to 64)."},
    {"method", "M", "0 raw mosaic, 1 grey, 2 to 8 colour reconstruction (default 2)."},
    {"lut", nullptr, "Apply the tone table; the three tone options switch it on, too."},
    {"brightness", "B", "Tone: -0.5 to 0.5."},
    {"contrast", "C", "Tone: 0.25 to 4."},
    {"gamma", "G", "Tone: 1/3 to 3."},
    {"stretch", nullptr, "Spread each picture's own levels over the full range."},
    {"white-balance", nullptr, "Balance the colours of every frame."},
    {"color-correction", "R,G,B,HUE,SAT,LIGHT",
     "Colour gains, hue in degrees, saturation, lightness."},
    {"median", nullptr, "Median-filter the raw data."},
    {"flip-h", nullptr, "Mirror the picture left to right."},
    {"flip-v", nullptr, "Mirror the picture top to bottom."},
    {"mono", nullptr, "Turn a mosaic into grey by the mosaic-to-grey conversion."},
    {"grab", "DIR", "Write pictures of the window into this folder and end."},
};

/// The parsed line with checked access to its values.
class Arguments
{
public:
    explicit Arguments(const QStringList& list)
    {
        parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
        for (const OptionText& text : optionTexts) {
            QCommandLineOption option(text.name, text.help);
            if (text.value)
                option.setValueName(text.value);
            parser.addOption(option);
        }
        if (!parser.parse(QStringList("camview") + list))
            throw UsageError(withoutDot(parser.errorText()));
        if (!parser.positionalArguments().isEmpty())
            throw UsageError(QString("unexpected argument \"%1\"")
                                 .arg(parser.positionalArguments().constFirst()));
        for (const OptionText& text : optionTexts) {
            if (parser.values(text.name).size() > 1)
                throw UsageError(QString("--%1 is given twice").arg(text.name));
        }
    }

    bool has(const char* name) const { return parser.isSet(name); }
    QString text(const char* name) const { return parser.value(name); }

    QString nonEmpty(const char* name) const
    {
        if (text(name).isEmpty())
            throw UsageError(QString("--%1 needs a value").arg(name));
        return text(name);
    }

    qint64 integer(const char* name, qint64 smallest, qint64 largest) const
    {
        bool ok = false;
        const qint64 value = text(name).toLongLong(&ok);
        if (!ok || value < smallest || value > largest)
            throw UsageError(QString("--%1 %2 is not a whole number from %3 to %4")
                                 .arg(name, text(name))
                                 .arg(smallest)
                                 .arg(largest));
        return value;
    }

    double number(const char* name, double smallest, double largest) const
    {
        bool ok = false;
        const double value = text(name).toDouble(&ok);
        if (!ok || !(value >= smallest && value <= largest))
            throw UsageError(QString("--%1 %2 is not a number from %3 to %4")
                                 .arg(name, text(name))
                                 .arg(smallest)
                                 .arg(largest));
        return value;
    }

    QVector<double> numbers(const char* name, int count) const
    {
        QVector<double> values;
        for (const QString& part : text(name).split(',')) {
            bool ok = false;
            values.append(part.trimmed().toDouble(&ok));
            if (!ok || !std::isfinite(values.constLast()))
                throw UsageError(QString("--%1: \"%2\" is not a number").arg(name, part));
        }
        if (values.size() != count)
            throw UsageError(QString("--%1 takes %2 numbers with commas between, not %3")
                                 .arg(name)
                                 .arg(count)
                                 .arg(values.size()));
        return values;
    }

private:
    static QString withoutDot(QString text)
    {
        if (text.endsWith('.'))
            text.chop(1);
        return text;
    }

    QCommandLineParser parser;
};

SensorRegion regionFrom(const Arguments& arguments)
{
    const QVector<double> values = arguments.numbers("region", 4);
    for (const double value : values) {
        if (value < 0 || value > 1e6 || value != std::floor(value))
            throw UsageError("--region takes whole numbers, none of them negative");
    }
    if (values[2] < 1 || values[3] < 1)
        throw UsageError("--region must not be empty");
    return {int(values[0]), int(values[1]), int(values[2]), int(values[3])};
}

CameraWishes cameraFrom(const Arguments& arguments)
{
    CameraWishes wishes;
    if (arguments.has("region"))
        wishes.region = regionFrom(arguments);
    if (arguments.has("decimation"))
        wishes.decimation = int(arguments.integer("decimation", 1, 64));
    if (arguments.has("bits")) {
        wishes.bitDepth = int(arguments.integer("bits", 8, 12));
        if (*wishes.bitDepth % 2 != 0)
            throw UsageError("--bits must be 8, 10 or 12");
    }
    if (arguments.has("exposure"))
        wishes.exposureMs = arguments.number("exposure", 0.01, 10000);
    if (arguments.has("gain"))
        wishes.gainDb = arguments.number("gain", 0, 48);
    if (arguments.has("rate"))
        wishes.frameRate = arguments.number("rate", 0.1, 10000);
    if (arguments.has("mirror-h"))
        wishes.mirrorH = true;
    if (arguments.has("mirror-v"))
        wishes.mirrorV = true;
    return wishes;
}

void readTone(const Arguments& arguments, ImgCorrectionSettings& correction)
{
    const ImgCorrectionLimits limits;
    const bool lut = arguments.has("lut") || arguments.has("brightness") ||
                     arguments.has("contrast") || arguments.has("gamma");
    if (lut)
        correction.setFlag(CS_APPLY_LUT, true);
    if (arguments.has("brightness"))
        correction.brightness =
            arguments.number("brightness", limits.brightnessMin, limits.brightnessMax);
    if (arguments.has("contrast"))
        correction.contrast = arguments.number("contrast", limits.contrastMin, limits.contrastMax);
    if (arguments.has("gamma"))
        correction.gamma = arguments.number("gamma", limits.gammaMin, limits.gammaMax);
}

void readColour(const Arguments& arguments, ImgCorrectionSettings& correction)
{
    if (arguments.has("white-balance"))
        correction.setFlag(CS_AUTO_WHITE_BALANCE, true);
    if (!arguments.has("color-correction"))
        return;
    const QVector<double> values = arguments.numbers("color-correction", 6);
    correction.setFlag(CS_COLOR_CORRECTION, true);
    correction.colorCorrectionRed = values[0];
    correction.colorCorrectionGreen = values[1];
    correction.colorCorrectionBlue = values[2];
    correction.colorCorrectionHue = values[3];
    correction.colorCorrectionSaturation = values[4];
    correction.colorCorrectionLightness = values[5];
}

// A file that is not there yet is written when the run ends.
void readSettingsFile(const QString& fileName, ImgCorrectionSettings& correction)
{
    if (!QFile::exists(fileName))
        return;
    if (!isSettingsFile(fileName) || !ImgCorrectionSettings::readSettings(fileName, correction))
        throw UsageError(QString("%1: not a settings file, or damaged").arg(fileName));
}

void readProcessing(const Arguments& arguments, ProcessingSettings& settings)
{
    ImgCorrectionSettings& correction = settings.correction;
    if (arguments.has("settings"))
        readSettingsFile(arguments.nonEmpty("settings"), correction);
    if (arguments.has("method"))
        correction.colorReconstructionMethod = int(arguments.integer("method", 0, 8));
    readTone(arguments, correction);
    readColour(arguments, correction);
    if (arguments.has("median"))
        correction.setFlag(CS_MEDIAN_FILTER, true);
    if (arguments.has("flip-h"))
        correction.flipH = true;
    if (arguments.has("flip-v"))
        correction.flipV = true;
    if (arguments.has("average"))
        settings.averageFrames = int(arguments.integer("average", 1, RingFrameBuffer::maxFrames));
    if (arguments.has("stretch"))
        settings.autoStretch = true;
    if (arguments.has("mono"))
        settings.greyFromMosaic = true;
}

ProcessingSettings headlessDefaults()
{
    ProcessingSettings settings;
    settings.histogramPeriod = histogramPeriod;
    settings.correction.colorReconstructionMethod = 2;
    return settings;
}

} // namespace

CameraSettings CameraWishes::appliedTo(CameraSettings settings) const
{
    settings.region = region.value_or(settings.region);
    settings.decimation = decimation.value_or(settings.decimation);
    settings.bitDepth = bitDepth.value_or(settings.bitDepth);
    settings.exposureMs = exposureMs.value_or(settings.exposureMs);
    settings.gainDb = gainDb.value_or(settings.gainDb);
    settings.frameRate = frameRate.value_or(settings.frameRate);
    settings.mirrorH = mirrorH.value_or(settings.mirrorH);
    settings.mirrorV = mirrorV.value_or(settings.mirrorV);
    return settings;
}

Options parseOptions(const QStringList& list)
{
    const auto parsed = std::make_shared<const Arguments>(list);
    const Arguments& arguments = *parsed;
    Options options;
    options.help = arguments.has("help");
    options.version = arguments.has("version");
    options.listCameras = arguments.has("list");
    options.headless = arguments.has("headless");
    options.json = arguments.has("json");
    if (arguments.has("source"))
        options.source = arguments.nonEmpty("source");
    if (arguments.has("frames"))
        options.frames = std::uint64_t(arguments.integer("frames", 1, 1000000000));
    if (arguments.has("duration"))
        options.durationS = arguments.number("duration", 0.01, 1e6);
    if (arguments.has("output"))
        options.outputFolder = arguments.nonEmpty("output");
    if (arguments.has("record"))
        options.recordName = recordingBaseOf(arguments.nonEmpty("record"));
    if (arguments.has("snapshot"))
        options.snapshotName = arguments.nonEmpty("snapshot");
    if (arguments.has("log-config"))
        options.logConfigFile = arguments.nonEmpty("log-config");
    if (arguments.has("settings"))
        options.settingsFile = arguments.nonEmpty("settings");
    options.camera = cameraFrom(arguments);
    options.adjustProcessing = [parsed](ProcessingSettings& settings) {
        readProcessing(*parsed, settings);
    };
    options.processing = headlessDefaults();
    options.adjustProcessing(options.processing);
    if (arguments.has("grab"))
        options.grabFolder = arguments.nonEmpty("grab");
    return options;
}

QString optionsHelp()
{
    QString help = "Usage: camview [options]\n\nOptions:\n";
    for (const OptionText& text : optionTexts) {
        const QString name = QString("--%1 %2").arg(text.name, text.value ? text.value : "");
        help += QString("  %1  %2\n").arg(name.trimmed(), -24).arg(text.help);
    }
    return help + "\nSources:\n" + sourceHelp();
}
