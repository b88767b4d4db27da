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
constexpr int maxDocumentType = 1 << 14; // characters
constexpr qint64 maxTagCost = qint64(1) << 26;
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

// The next '<' that begins neither a comment nor a processing instruction nor a CDATA section.
int findTag(const QString& text, int from)
{
    static const struct {
        QLatin1String start;
        QLatin1String end;
    } skipped[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                   {QLatin1String("<?"), QLatin1String("?>")},
                   {QLatin1String("<![CDATA["), QLatin1String("]]>")}};
    for (;;) {
        const int start = text.indexOf(QLatin1Char('<'), from);
        if (start == nowhere)
            return nowhere;
        const auto* const section =
            std::find_if(std::begin(skipped), std::end(skipped), [&](const auto& candidate) {
                return text.midRef(start).startsWith(candidate.start);
            });
        if (section == std::end(skipped))
            return start;
        from = text.indexOf(section->end, start + section->start.size());
        if (from == nowhere)
            return nowhere;
    }
}

struct DocumentType {
    int end = 0;
    QXmlStreamEntityDeclarations entities;
    qint64 declarations = 0; // at most, of what a reader compares with each tag and attribute
    bool isExcessive = false;
};

DocumentType readDocumentType(const QString& text, int start)
{
    DocumentType type;
    type.declarations = text.count(QLatin1String("xmlns"));
    if (start == nowhere || !text.midRef(start).startsWith(QLatin1String("<!DOCTYPE")))
        return type;
    // Of this length it cannot hold many references, each of which Qt bounds by default.
    QXmlStreamReader reader(text.mid(start, maxDocumentType));
    while (!reader.atEnd() && !reader.isDTD())
        reader.readNext();
    type.isExcessive = reader.hasError();
    type.end = start + static_cast<int>(reader.characterOffset());
    type.entities = reader.entityDeclarations();
    if (reader.text().contains(QLatin1String("<!ATTLIST")))
        type.declarations += reader.text().size(); // parameter entities expanded
    return type;
}

// What the references to the entities of a document cost: a character each, or in markup, what a
// tag costs that is all attributes.
class EntityExpansion
{
public:
    explicit EntityExpansion(const DocumentType& type)
        : declarations(type.declarations)
    {
        for (const QXmlStreamEntityDeclaration& entity : type.entities) {
            QString& value = values[entity.name().toString()];
            if (value.isNull()) // the first declaration of a name is the one that counts
                value = entity.value().toString();
        }
    }

    // The first reference behind `from` that brings the sum of all costs above the limit.
    int findExcess(const QString& text, int from) const
    {
        qint64 cost = 0;
        return findExcess(text, from, 0, cost);
    }

private:
    int findExcess(const QString& text, int from, int nesting, qint64& cost) const
    {
        for (int i = text.indexOf(QLatin1Char('&'), from); i != nowhere;) {
            const int next = text.indexOf(QLatin1Char('&'), i + 1);
            const int end = next == nowhere ? text.size() : next;
            const QStringRef rest = text.midRef(i + 1, end - i - 1);
            cost += costOf(rest.left(rest.indexOf(QLatin1Char(';'))).toString(), nesting);
            if (cost > maxXmlExpansion)
                return i;
            i = next;
        }
        return nowhere;
    }

    qint64 costOf(const QString& name, int nesting) const
    {
        const auto value = values.constFind(name);
        if (value == values.constEnd())
            return 0;
        const auto known = costs.constFind(name);
        if (known != costs.constEnd())
            return *known;
        qint64 cost = nesting < maxEntityNesting ? value->size() : excessive;
        if (cost < excessive)
            findExcess(*value, 0, nesting + 1, cost);
        if (holdsMarkup(*value))
            cost *= cost + declarations;
        cost = std::min(cost, excessive);
        costs.insert(name, cost);
        return cost;
    }

    static bool holdsMarkup(const QString& value)
    {
        static const QRegularExpression markup(QStringLiteral("<|&#0*60;|&#x0*3[cC];"));
        return value.contains(markup);
    }

    static constexpr qint64 excessive = maxXmlExpansion + 1;

    qint64 declarations;
    QHash<QString, QString> values;
    mutable QHash<QString, qint64> costs;
};

// The end of the tag at `start`, or of the text.
int endOfTag(const QString& text, int start, qint64& attributes)
{
    int i = start;
    for (; i < text.size() && text[i] != QLatin1Char('>'); ++i) {
        if (text[i] != QLatin1Char('"') && text[i] != QLatin1Char('\''))
            continue;
        ++attributes;
        i = text.indexOf(text[i], i + 1);
        if (i == nowhere)
            return text.size();
    }
    return i;
}

// The first tag that brings the sum of all costs above the limit: a reader compares each
// attribute of a tag with each other one, and with all that the document declares.
int findCostlyTag(const QString& text, int from, qint64 declarations)
{
    qint64 cost = 0;
    for (int tag = findTag(text, from); tag != nowhere; tag = findTag(text, from)) {
        qint64 attributes = 0;
        from = endOfTag(text, tag, attributes);
        cost += (attributes + 1) * (attributes + declarations);
        if (cost > maxTagCost)
            return tag;
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
    const int start = findTag(text, 0);
    const DocumentType type = readDocumentType(text, start);
    cut(text, type.isExcessive ? start : findCostlyTag(text, type.end, type.declarations));
    cut(text, EntityExpansion(type).findExcess(text, type.end));
    return text;
}
