#include "support/files/PropertyListXml.h"

#include "support/files/PropertyList.h"

#include <QDateTime>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <utility>

namespace {

// Only the outermost element has any attribute of its own.
constexpr int mostAttributes = 16;

// An XML parser compares each attribute of an element with every other one, so they are counted
// before it sees them. In an encoding wider than a byte the letters of markup are ASCII as well.
bool hasManyAttributes(QByteArray data)
{
    data.removeIf([](char c) { return c == '\0'; });
    for (qsizetype at = data.indexOf('<'); at >= 0; at = data.indexOf('<', at)) {
        ++at;
        // Nothing in these is taken for the beginning of a quotation.
        for (const auto &[start, end] :
            { std::pair("!--", "-->"), std::pair("![CDATA[", "]]>"), std::pair("?", "?>") }) {
            if (QByteArrayView(data).sliced(at).startsWith(start)) {
                at = data.indexOf(end, at + qsizetype(qstrlen(start)));
                break;
            }
        }
        int attributes = 0;
        char quote = '\0';
        for (; at >= 0 && at < data.size() && (quote != '\0' || data[at] != '>'); ++at) {
            const char c = data[at];
            if (quote == '\0' ? c == '"' || c == '\'' : c == quote) {
                quote = quote == '\0' ? c : '\0';
            }
            attributes += quote == '\0' && c == '=' ? 1 : 0;
        }
        if (attributes > mostAttributes) {
            return true;
        }
        if (at < 0) {
            break;
        }
    }
    return false;
}

class XmlReader
{
public:
    explicit XmlReader(const QByteArray &data)
        : _xml(data)
    { }

    std::optional<QVariant> read();
    QString error() const;

private:
    bool nextChild();
    QVariant value(int depth);
    QVariant array(int depth);
    QVariant dictionary(int depth);
    QVariant flag(bool isTrue);
    QVariant integer();
    QVariant real();
    QVariant date();
    QVariant data();
    QString text();
    QVariant refuse(const QString &reason);

    QXmlStreamReader _xml;
};

std::optional<QVariant> XmlReader::read()
{
    if (nextChild() && _xml.name() != u"plist") {
        refuse(QStringLiteral("the document is no property list"));
    }
    QVariant root;
    if (nextChild()) {
        root = value(0);
    } else {
        refuse(QStringLiteral("there is no value"));
    }
    if (!_xml.hasError() && nextChild()) {
        refuse(QStringLiteral("there is more than one value"));
    }
    while (!_xml.atEnd()) {
        _xml.readNext();
    }
    return _xml.hasError() ? std::nullopt : std::optional<QVariant>(root);
}

QString XmlReader::error() const
{
    return QStringLiteral("line %1: %2").arg(_xml.lineNumber()).arg(_xml.errorString());
}

// Goes to the next child element; false at the end of the parent and after an error.
bool XmlReader::nextChild()
{
    while (!_xml.hasError() && !_xml.atEnd()) {
        _xml.readNext();
        if (_xml.isStartElement()) {
            return true;
        }
        if (_xml.isEndElement()) {
            return false;
        }
        // Entities and attributes of the document's own would let a small file grow without limit.
        if (_xml.isDTD() && _xml.text().contains(u'[')) {
            refuse(QStringLiteral("the document declares something"));
        }
        if ((_xml.isCharacters() && !_xml.isWhitespace()) || _xml.isEntityReference()) {
            refuse(QStringLiteral("there is text between two elements"));
        }
    }
    return false;
}

QVariant XmlReader::value(int depth)
{
    const QStringView tag = _xml.name();
    if (tag == u"string") {
        return text();
    }
    if (tag == u"array") {
        return array(depth + 1);
    }
    if (tag == u"dict") {
        return dictionary(depth + 1);
    }
    if (tag == u"true" || tag == u"false") {
        return flag(tag == u"true");
    }
    if (tag == u"integer") {
        return integer();
    }
    if (tag == u"real") {
        return real();
    }
    if (tag == u"date") {
        return date();
    }
    if (tag == u"data") {
        return data();
    }
    return refuse(QStringLiteral("<%1> has no place here").arg(tag));
}

QVariant XmlReader::array(int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return refuse(QStringLiteral("nested too deep"));
    }
    QVariantList items;
    while (nextChild()) {
        items.append(value(depth));
    }
    return items;
}

QVariant XmlReader::dictionary(int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return refuse(QStringLiteral("nested too deep"));
    }
    QVariantMap items;
    while (nextChild()) {
        if (_xml.name() != u"key") {
            return refuse(QStringLiteral("a value without a key"));
        }
        const QString key = text();
        if (!_xml.hasError() && !nextChild()) {
            return refuse(QStringLiteral("a key without a value"));
        }
        items.insert(key, value(depth));
    }
    return items;
}

QVariant XmlReader::flag(bool isTrue)
{
    if (!text().trimmed().isEmpty()) {
        return refuse(QStringLiteral("a boolean with text"));
    }
    return isTrue;
}

QVariant XmlReader::integer()
{
    const QString number = text().trimmed();
    const bool isHexadecimal = number.startsWith(u"0x", Qt::CaseInsensitive);
    bool isValid = false;
    const qlonglong result = number.toLongLong(&isValid, isHexadecimal ? 16 : 10);
    return isValid ? QVariant(result) : refuse(QStringLiteral("no valid integer"));
}

QVariant XmlReader::real()
{
    bool isValid = false;
    const double result = text().trimmed().toDouble(&isValid);
    return isValid ? QVariant(result) : refuse(QStringLiteral("no valid real number"));
}

QVariant XmlReader::date()
{
    const QDateTime result = QDateTime::fromString(text().trimmed(), Qt::ISODate);
    if (!result.isValid() || result.timeSpec() != Qt::UTC) {
        return refuse(QStringLiteral("no valid date"));
    }
    return result;
}

QVariant XmlReader::data()
{
    const QByteArray base64 = text().simplified().remove(u' ').toLatin1();
    const auto result = QByteArray::fromBase64Encoding(
        base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return result ? QVariant(result.decoded) : refuse(QStringLiteral("no valid base64 data"));
}

// The text of the current element to its end. QXmlStreamReader::readElementText() would pass over
// an entity that is not declared.
QString XmlReader::text()
{
    QString result;
    while (!_xml.hasError() && !_xml.atEnd()) {
        _xml.readNext();
        if (_xml.isEndElement()) {
            return result;
        }
        if (_xml.isCharacters()) {
            result += _xml.text();
        } else if (!_xml.isComment() && !_xml.isProcessingInstruction()) {
            refuse(QStringLiteral("something other than text"));
        }
    }
    return {};
}

// The first reason stays: what follows from it says less.
QVariant XmlReader::refuse(const QString &reason)
{
    if (!_xml.hasError()) {
        _xml.raiseError(reason);
    }
    return {};
}

void writeText(QXmlStreamWriter &xml, const QString &tag, const QString &text)
{
    // A bare carriage return would read back as a line feed.
    const QStringList parts = text.split(u'\r');
    xml.writeStartElement(tag);
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            xml.writeEntityReference(QStringLiteral("#13"));
        }
        xml.writeCharacters(parts[i]);
    }
    xml.writeEndElement();
}

void writeValue(QXmlStreamWriter &xml, const QVariant &value);

void writeArray(QXmlStreamWriter &xml, const QVariantList &items)
{
    xml.writeStartElement(QStringLiteral("array"));
    for (const QVariant &item : items) {
        writeValue(xml, item);
    }
    xml.writeEndElement();
}

void writeDictionary(QXmlStreamWriter &xml, const QVariantMap &items)
{
    xml.writeStartElement(QStringLiteral("dict"));
    for (auto item = items.cbegin(); item != items.cend(); ++item) {
        writeText(xml, QStringLiteral("key"), item.key());
        writeValue(xml, item.value());
    }
    xml.writeEndElement();
}

void writeValue(QXmlStreamWriter &xml, const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantList:
        return writeArray(xml, value.toList());
    case QMetaType::QVariantMap:
        return writeDictionary(xml, value.toMap());
    case QMetaType::Bool:
        return xml.writeEmptyElement(
            value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
    case QMetaType::LongLong:
        return xml.writeTextElement(QStringLiteral("integer"), QString::number(value.toLongLong()));
    case QMetaType::Double:
        return xml.writeTextElement(QStringLiteral("real"),
            QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest));
    case QMetaType::QDateTime:
        return xml.writeTextElement(
            QStringLiteral("date"), value.toDateTime().toString(Qt::ISODate));
    case QMetaType::QByteArray:
        return xml.writeTextElement(
            QStringLiteral("data"), QString::fromLatin1(value.toByteArray().toBase64()));
    default:
        return writeText(xml, QStringLiteral("string"), value.toString());
    }
}

} // namespace

std::optional<QVariant> PropertyList::fromXml(const QByteArray &data, QString *error)
{
    if (hasManyAttributes(data)) {
        if (error) {
            *error = QStringLiteral("too many attributes");
        }
        return {};
    }
    XmlReader reader(data);
    std::optional<QVariant> value = reader.read();
    if (!value && error) {
        *error = reader.error();
    }
    return value;
}

QByteArray PropertyList::plainToXml(const QVariant &value)
{
    QByteArray data;
    QXmlStreamWriter xml(&data);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(-1); // One tab a level.
    xml.writeStartDocument();
    xml.writeDTD(QStringLiteral("\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
                                "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"));
    xml.writeStartElement(QStringLiteral("plist"));
    xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writeValue(xml, value);
    xml.writeEndDocument();
    return data;
}
