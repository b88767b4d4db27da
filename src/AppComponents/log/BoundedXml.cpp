#include <AppComponents/log/BoundedXml.h>

#include <QHash>
#include <QIODevice>
#include <QRegularExpression>
#include <QTextCodec>
#include <QXmlStreamReader>

#include <algorithm>

namespace
{

constexpr qint64 maxFileSize = qint64(64) << 20;
constexpr int maxAttributes = 100; // a reader compares each with each
constexpr int maxEntityNesting = 100;
constexpr int nowhere = -1;

void cut(QString& text, int position)
{
    if (position == nowhere)
        return;
    text.truncate(position);
    text += QLatin1Char('<');
}

QByteArray readUpTo(QIODevice& device, qint64 size)
{
    constexpr qint64 blockSize = 1 << 16;
    QByteArray bytes;
    while (bytes.size() < size) {
        const QByteArray block = device.read(std::min(blockSize, size - bytes.size()));
        if (block.isEmpty())
            break;
        bytes += block;
    }
    return bytes;
}

// Null if the document names an encoding that is not known.
QTextCodec* codecOf(const QByteArray& bytes)
{
    QXmlStreamReader declaration;
    declaration.addData(bytes.left(1024));
    declaration.readNext();
    const QByteArray declared = declaration.documentEncoding().toLatin1();
    return QTextCodec::codecForUtfText(
        bytes, QTextCodec::codecForName(declared.isEmpty() ? QByteArray("UTF-8") : declared));
}

QString decoded(const QByteArray& bytes)
{
    QTextCodec* const codec = codecOf(bytes);
    if (!codec)
        return {};
    QTextCodec::ConverterState state;
    QString text = codec->toUnicode(bytes.constData(), bytes.size(), &state);
    if (state.invalidChars > 0)
        cut(text, text.indexOf(QChar(QChar::ReplacementCharacter)));
    else if (state.remainingChars > 0)
        cut(text, text.size());
    return text;
}

// The declarations by which a document type makes its own reading expensive.
int findCostlyDeclaration(const QString& text)
{
    static const QRegularExpression costly(QStringLiteral("<!ATTLIST|<!ENTITY\\s+%"));
    return text.contains(QLatin1String("<!DOCTYPE")) ? text.indexOf(costly) : nowhere;
}

// What the references to the entities of a document expand to, in characters.
class EntityExpansion
{
public:
    explicit EntityExpansion(const QXmlStreamEntityDeclarations& declarations)
    {
        for (const QXmlStreamEntityDeclaration& entity : declarations)
            values.insert(entity.name().toString(), entity.value().toString());
    }

    // The first reference that brings the sum of all expansions above the limit.
    int findExcess(const QString& text, int from) const
    {
        qint64 total = 0;
        for (int i = text.indexOf(QLatin1Char('&'), from); i != nowhere;
             i = text.indexOf(QLatin1Char('&'), i + 1)) {
            total += lengthOf(nameAt(text, i), 0);
            if (total > maxXmlExpansion)
                return i;
        }
        return nowhere;
    }

private:
    static QString nameAt(const QString& text, int ampersand)
    {
        constexpr int maxNameLength = 1000;
        const auto name = text.mid(ampersand + 1, maxNameLength);
        return name.left(std::max(0, name.indexOf(QLatin1Char(';'))));
    }

    qint64 lengthOf(const QString& name, int nesting) const
    {
        const auto value = values.constFind(name);
        if (value == values.constEnd())
            return 0;
        const auto known = lengths.constFind(name);
        if (known != lengths.constEnd())
            return *known;
        const qint64 length = nesting < maxEntityNesting && !holdsMarkup(*value)
                                  ? expandedLength(*value, nesting)
                                  : maxXmlExpansion + 1;
        lengths.insert(name, length);
        return length;
    }

    qint64 expandedLength(const QString& value, int nesting) const
    {
        qint64 length = value.size();
        for (int i = value.indexOf(QLatin1Char('&')); i != nowhere && length <= maxXmlExpansion;
             i = value.indexOf(QLatin1Char('&'), i + 1))
            length += lengthOf(nameAt(value, i), nesting + 1);
        return length;
    }

    static bool holdsMarkup(const QString& value)
    {
        static const QRegularExpression markup(QStringLiteral("<|&#0*60;|&#x0*3[cC];"));
        return value.contains(markup);
    }

    QHash<QString, QString> values;
    mutable QHash<QString, qint64> lengths;
};

int findExcessiveExpansion(const QString& text)
{
    if (!text.contains(QLatin1String("<!ENTITY")))
        return nowhere;
    QXmlStreamReader reader(text);
    while (!reader.atEnd() && !reader.isDTD() && !reader.isStartElement())
        reader.readNext();
    if (!reader.isDTD())
        return nowhere;
    return EntityExpansion(reader.entityDeclarations())
        .findExcess(text, static_cast<int>(reader.characterOffset()));
}

// The end of the tag at `start`, or its start if it has too many attributes.
int endOfTag(const QString& text, int start)
{
    int attributes = 0;
    for (int i = start; i != nowhere && i < text.size(); ++i) {
        const QChar character = text[i];
        if (character == QLatin1Char('>'))
            return i;
        if (character != QLatin1Char('"') && character != QLatin1Char('\''))
            continue;
        if (++attributes > maxAttributes)
            return start;
        i = text.indexOf(character, i + 1);
        if (i == nowhere)
            return nowhere;
    }
    return nowhere;
}

int findExcessiveAttributes(const QString& text)
{
    struct Skipped {
        QLatin1String start;
        QLatin1String end;
    };
    static const Skipped skipped[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                                      {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                                      {QLatin1String("<!"), QLatin1String(">")},
                                      {QLatin1String("<?"), QLatin1String("?>")}};
    for (int i = text.indexOf(QLatin1Char('<')); i != nowhere;
         i = text.indexOf(QLatin1Char('<'), i)) {
        const QStringView rest = QStringView(text).mid(i);
        const auto* const section =
            std::find_if(std::begin(skipped), std::end(skipped),
                         [rest](const Skipped& item) { return rest.startsWith(item.start); });
        const int end = section != std::end(skipped)
                            ? text.indexOf(section->end, i + section->start.size())
                            : endOfTag(text, i);
        if (end == i || end == nowhere)
            return end;
        i = end;
    }
    return nowhere;
}

} // namespace

QString readBoundedXml(QIODevice& device)
{
    const QByteArray bytes = readUpTo(device, maxFileSize + 1);
    QString text = decoded(bytes);
    if (bytes.size() > maxFileSize)
        cut(text, text.size());
    cut(text, findCostlyDeclaration(text));
    cut(text, findExcessiveAttributes(text));
    cut(text, findExcessiveExpansion(text));
    return text;
}
