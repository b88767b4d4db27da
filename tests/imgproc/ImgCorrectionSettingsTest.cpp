#include <AppComponents/imgproc/ImgCorrectionSettings.h>
#include <AppComponents/log/CLogAccessor.h>
#include <AppComponents/log/CTextLog.h>

#include <gmock/gmock.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <limits>
#include <stdexcept>
#include <tuple>

namespace
{

class LineCollector : public CTextLog
{
public:
    QString text;

protected:
    void writeInternal(const wchar_t* chunk, int length) override
    {
        text += QString::fromWCharArray(chunk, length);
    }
};

// Known to defLog as long as the program runs; each test starts with it empty.
LineCollector& collector()
{
    static LineCollector log;
    defLog.addLog(&log);
    return log;
}

auto fieldsOf(const ImgCorrectionSettings& s)
{
    return std::tie(s.colorReconstructionMethod, s.flags, s.brightness, s.contrast, s.gamma,
                    s.flipV, s.flipH, s.whiteBalanceValue, s.colorCorrectionGreen,
                    s.colorCorrectionRed, s.colorCorrectionBlue, s.colorCorrectionHue,
                    s.colorCorrectionSaturation, s.colorCorrectionLightness);
}

class SettingsTest : public testing::Test
{
protected:
    SettingsTest() { collector().text.clear(); }

    QString path(const char* name = "settings.xml") const { return folder.filePath(name); }

    QByteArray saved(const ImgCorrectionSettings& settings) const
    {
        EXPECT_TRUE(ImgCorrectionSettings::saveSettings(path(), settings));
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // What a record that differs from the defaults everywhere becomes by reading `document`.
    ImgCorrectionSettings read(const QByteArray& document) const
    {
        QFile file(path());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(document);
        file.close();
        ImgCorrectionSettings settings = unusual();
        EXPECT_TRUE(ImgCorrectionSettings::readSettings(path(), settings));
        return settings;
    }

    static ImgCorrectionSettings unusual()
    {
        ImgCorrectionSettings s;
        std::tie(s.colorReconstructionMethod, s.flags, s.flipV, s.flipH, s.whiteBalanceValue) =
            std::make_tuple(5, std::numeric_limits<int>::min() | 0x10000, true, true, -7);
        std::tie(s.brightness, s.contrast, s.gamma) = std::make_tuple(-0.25, 1.5, 0.5);
        std::tie(s.colorCorrectionGreen, s.colorCorrectionRed, s.colorCorrectionBlue) =
            std::make_tuple(2.0, 3.0, 4.0);
        std::tie(s.colorCorrectionHue, s.colorCorrectionSaturation, s.colorCorrectionLightness) =
            std::make_tuple(-90.0, 0.5, 1e-7);
        return s;
    }

    QTemporaryDir folder;
};

class ThrowingDevice : public QIODevice
{
protected:
    qint64 readData(char*, qint64) override { throw std::runtime_error("read"); }
    qint64 writeData(const char*, qint64) override { throw std::runtime_error("write"); }
};

const QRegularExpression oneErrorLine("^xmlReader\\.hasError: 0x[0-9a-f]+\n$");

struct Hostile {
    const char* name;
    QByteArray document; // holds a Gamma of 2.5 before its fault and one of 9 behind it
};

class HostileSettings : public SettingsTest, public testing::WithParamInterface<Hostile>
{
};

const QByteArray start = "<ImgCorrectionSettings><Gamma>2.5</Gamma>";
const QByteArray end = "<Gamma>9</Gamma></ImgCorrectionSettings>";

} // namespace

TEST_F(SettingsTest, WritesTheDefaultsInTheOrderOfTheFile)
{
    QString expected = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ImgCorrectionSettings>\n";
    for (const char* const field :
         {"ColorReconstructionMethod 0", "imageProcFlags 0", "Brightness 0", "Contrast 1",
          "Gamma 1", "FlipImageVertically 0", "FlipImageHorizontally 0", "WhiteBalanceValue 0",
          "ColorCorrectionGreen 1", "ColorCorrectionRed 1", "ColorCorrectionBlue 1",
          "ColorCorrectionHue 0", "ColorCorrectionSaturation 1", "ColorCorrectionLightness 1"}) {
        const QStringList words = QString(field).split(' ');
        expected += QString("    <%1>%2</%1>\n").arg(words[0], words[1]);
    }
    EXPECT_EQ(QString(saved({})), expected + "</ImgCorrectionSettings>\n");
}

TEST_F(SettingsTest, EveryFieldSurvivesTheFile)
{
    const QByteArray document = saved(unusual());
    EXPECT_TRUE(document.contains("<imageProcFlags>-2147418112</imageProcFlags>"));
    EXPECT_TRUE(document.contains("<ColorCorrectionLightness>1e-07</"));
    ImgCorrectionSettings settings;
    EXPECT_TRUE(ImgCorrectionSettings::readSettings(path(), settings));
    EXPECT_EQ(fieldsOf(settings), fieldsOf(unusual()));

    settings.contrast = 1.23456789;
    settings.gamma = 0.333333333333333;
    const QByteArray shortened = saved(settings);
    EXPECT_TRUE(shortened.contains("<Contrast>1.23457</Contrast>"));
    EXPECT_TRUE(shortened.contains("<Gamma>0.333333</Gamma>"));
}

TEST_F(SettingsTest, ReadsOnlyWhatIsThereAtAnyDepthTheLastWins)
{
    ImgCorrectionSettings expected = unusual();
    expected.gamma = 2.5;
    EXPECT_EQ(fieldsOf(read("<ImgCorrectionSettings><Gamma>2.5</Gamma></ImgCorrectionSettings>")),
              fieldsOf(expected));
    EXPECT_EQ(fieldsOf(read("<x><Gamma>1</Gamma><y><Unknown>7</Unknown><z>"
                            "<Gamma a='1'> 2.<!-- -->5 </Gamma></z></y></x>\r\n")),
              fieldsOf(expected));
    EXPECT_EQ(fieldsOf(read("<!DOCTYPE x [<!ENTITY g '<Gamma>2.5</Gamma>'><!ATTLIST x a CDATA ''>]>"
                            "<s:x xmlns:s='urn'><s:Gamma>1</s:Gamma>&g;</s:x>")),
              fieldsOf(expected));
    EXPECT_EQ(collector().text, "");
}

TEST_F(SettingsTest, ATextThatIsNoNumberGivesZero)
{
    const ImgCorrectionSettings settings =
        read("<x><Brightness>abc</Brightness><Contrast>1,5</Contrast><Gamma/>"
             "<imageProcFlags>0x10</imageProcFlags><WhiteBalanceValue>2147483648"
             "</WhiteBalanceValue><FlipImageVertically>true</FlipImageVertically>"
             "<FlipImageHorizontally>-2</FlipImageHorizontally></x>");
    EXPECT_EQ(std::make_tuple(settings.brightness, settings.contrast, settings.gamma),
              std::make_tuple(0.0, 0.0, 0.0));
    EXPECT_EQ(std::make_tuple(settings.flags, settings.whiteBalanceValue), std::make_tuple(0, 0));
    EXPECT_FALSE(settings.flipV);
    EXPECT_TRUE(settings.flipH);
    EXPECT_EQ(collector().text, "");
}

TEST_P(HostileSettings, GiveWhatStandsBeforeTheFaultAndOneLine)
{
    ImgCorrectionSettings expected = unusual();
    expected.gamma = 2.5;
    EXPECT_EQ(fieldsOf(read(GetParam().document)), fieldsOf(expected));
    EXPECT_TRUE(oneErrorLine.match(collector().text).hasMatch()) << collector().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Documents, HostileSettings,
    testing::Values(Hostile{"Truncated", start}, Hostile{"CutInATag", start + "<Contrast>1</Contr"},
                    Hostile{"CutInAText", start + "<Contrast>1"},
                    Hostile{"ChildInAField", start + "<Contrast>1<x/></Contrast>" + end},
                    Hostile{"WrongEndTag", start + "<Contrast>1</Brightness>" + end},
                    Hostile{"InvalidUtf8", start + "<Contrast>1\xFF</Contrast>" + end},
                    Hostile{"NestedTooDeeply", start + QByteArray("<a>").repeated(1000) + end},
                    Hostile{"NestedAMillionDeep",
                            start + QByteArray("<a>").repeated(1000000) + end},
                    Hostile{"UndeclaredEntity", start + "<Contrast>&x;</Contrast>" + end},
                    Hostile{"UndeclaredPrefix", start + "<x:Contrast>1</x:Contrast>" + end},
                    Hostile{"EntityOfTooMuchText", "<!DOCTYPE x [<!ENTITY e '" +
                                                       QByteArray(4000, 'x') + "'>]>" + start +
                                                       QByteArray("&e;").repeated(1000000) + end},
                    Hostile{"HugeUnclosedAttribute", start + "<a b='" + QByteArray(10 << 20, 'x')}),
    [](const auto& row) { return row.param.name; });

TEST_F(SettingsTest, FilesThatCannotBeOpenedGiveFalseAndOneLine)
{
    ImgCorrectionSettings settings = unusual();
    for (const QString& name : {path("missing.xml"), folder.path()}) {
        collector().text.clear();
        EXPECT_FALSE(ImgCorrectionSettings::readSettings(name, settings));
        EXPECT_EQ(collector().text,
                  "VideoSettings::saveSettings error reading settings: " + name + "\n");
    }
    EXPECT_EQ(fieldsOf(settings), fieldsOf(unusual()));

    collector().text.clear();
    EXPECT_FALSE(ImgCorrectionSettings::saveSettings(folder.path(), settings));
    EXPECT_TRUE(collector().text.startsWith(
        "ImgCorrectionSettings::saveSettings error writing settings to file: " + folder.path() +
        "; Error: "))
        << collector().text.toStdString();
    EXPECT_EQ(collector().text.count('\n'), 1);
}

TEST_F(SettingsTest, ExceptionsOfADeviceGiveFalseAndDoNotPass)
{
    ThrowingDevice device;
    ASSERT_TRUE(device.open(QIODevice::ReadWrite | QIODevice::Unbuffered));
    QXmlStreamWriter writer(&device);
    EXPECT_FALSE(ImgCorrectionSettings::saveSettings(writer, {}));
    EXPECT_EQ(collector().text, "VideoSettings::saveSettings cannot write settings: \n");

    collector().text.clear();
    QXmlStreamReader reader(&device);
    ImgCorrectionSettings settings;
    EXPECT_FALSE(ImgCorrectionSettings::readSettings(reader, settings));
    EXPECT_EQ(collector().text, "ImgCorrectionSettings::readSettings cannot read settings: \n");
}

TEST(ImgCorrectionSettings, FillDefaultResetsTheGroupsAlone)
{
    ImgCorrectionSettings s;
    std::tie(s.colorReconstructionMethod, s.flags, s.brightness, s.flipH) =
        std::make_tuple(9, 9, 9.0, true);
    std::tie(s.whiteBalanceValue, s.colorCorrectionHue) = std::make_tuple(9, 9.0);
    ImgCorrectionSettings expected = s;
    const auto reset = [&s](int groups) {
        ImgCorrectionSettings::fillDefault(s, static_cast<ImgCorrectionSettings::Group>(groups));
        return fieldsOf(s);
    };
    EXPECT_EQ(reset(0), fieldsOf(expected));
    std::tie(expected.brightness, expected.flipH, expected.colorCorrectionHue) =
        std::make_tuple(0.0, false, 0.0);
    EXPECT_EQ(reset(5), fieldsOf(expected));
    expected.whiteBalanceValue = 0;
    EXPECT_EQ(reset(2), fieldsOf(expected));
}
