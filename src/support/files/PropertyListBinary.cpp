#include "support/files/PropertyListBinary.h"

#include "support/files/PropertyList.h"

#include <QByteArrayView>
#include <QDateTime>
#include <QStringDecoder>
#include <QTimeZone>

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;
// An object that hangs in more than one place counts each time, here and in the size. Writers let
// texts hang in several places, never lists: then each reference has a byte of its own in the data.
constexpr int maximumReferences = 1'000'000;
// Of the texts with each written out where it hangs, times the size of the data.
constexpr qint64 maximumGrowth = 64;
// Seconds from 1970 to 2001, where the dates of a binary property list begin.
constexpr double epoch = 978'307'200;

// The layout: a header, the objects, a table of their offsets, and a trailer that describes the
// table. Numbers are big-endian. An object begins with a byte of its kind and, below that, its
// size.
class BinaryReader
{
public:
    explicit BinaryReader(const QByteArray &data)
        : _data(data)
    { }

    std::optional<QVariant> read();
    QString error() const { return _error; }

private:
    enum Kind {
        Simple = 0x0,
        Integer = 0x1,
        Real = 0x2,
        Date = 0x3,
        Data = 0x4,
        Ascii = 0x5,
        Utf16 = 0x6,
        Array = 0xA,
        Dictionary = 0xD
    };

    QByteArrayView bytes(quint64 offset, quint64 size);
    quint64 number(quint64 offset, quint64 width);
    QVariant object(quint64 reference, int depth);
    QVariant integer(quint64 offset, quint64 exponent);
    QVariant real(quint64 offset, quint64 exponent);
    QVariant date(quint64 offset);
    QVariant counted(Kind kind, quint64 offset, int depth);
    QVariant text(const QString &text);
    QVariant array(quint64 offset, quint64 count, int depth);
    QVariant dictionary(quint64 offset, quint64 count, int depth);
    QVariant refuse(const QString &reason);

    const QByteArray &_data;
    QString _error;
    quint64 _offsetWidth = 0;
    quint64 _referenceWidth = 0;
    quint64 _objects = 0;
    quint64 _offsetTable = 0;
    int _references = 0;
    qint64 _size = 0;
};

std::optional<QVariant> BinaryReader::read()
{
    const quint64 size = _data.size();
    if (!_data.startsWith("bplist00") || size < headerSize + trailerSize) {
        refuse(QStringLiteral("cut short, or of another version"));
        return {};
    }
    const quint64 trailer = size - trailerSize;
    _offsetWidth = number(trailer + 6, 1);
    _referenceWidth = number(trailer + 7, 1);
    _objects = number(trailer + 8, 8);
    _offsetTable = number(trailer + 24, 8);
    if (_offsetWidth < 1 || _offsetWidth > 8 || _referenceWidth < 1 || _referenceWidth > 8
        || _objects > size || _offsetTable > trailer
        || trailer - _offsetTable < _objects * _offsetWidth) {
        refuse(QStringLiteral("broken trailer"));
        return {};
    }
    const QVariant root = object(number(trailer + 16, 8), 0);
    return _error.isEmpty() ? std::optional<QVariant>(root) : std::nullopt;
}

// Empty, and refused, when any of it lies outside.
QByteArrayView BinaryReader::bytes(quint64 offset, quint64 size)
{
    const quint64 available = _data.size();
    if (offset > available || size > available - offset) {
        refuse(QStringLiteral("cut short"));
        return {};
    }
    return QByteArrayView(_data).sliced(
        static_cast<qsizetype>(offset), static_cast<qsizetype>(size));
}

quint64 BinaryReader::number(quint64 offset, quint64 width)
{
    quint64 result = 0;
    for (const char byte : bytes(offset, width)) {
        result = result << 8 | static_cast<uchar>(byte);
    }
    return result;
}

QVariant BinaryReader::object(quint64 reference, int depth)
{
    if (reference >= _objects) {
        return refuse(QStringLiteral("a reference to nothing"));
    }
    if (++_references > std::min<qint64>(maximumReferences, _data.size())) {
        return refuse(QStringLiteral("too many references"));
    }
    const quint64 offset = number(_offsetTable + reference * _offsetWidth, _offsetWidth);
    const quint64 marker = number(offset, 1);
    const auto kind = static_cast<Kind>(marker >> 4);
    switch (kind) {
    case Simple:
        return marker == 8 || marker == 9 ? QVariant(marker == 9)
                                          : refuse(QStringLiteral("an object without a value"));
    case Integer:
        return integer(offset + 1, marker & 15);
    case Real:
        return real(offset + 1, marker & 15);
    case Date:
        return date(offset + 1);
    default:
        return counted(kind, offset, depth);
    }
}

QVariant BinaryReader::integer(quint64 offset, quint64 exponent)
{
    // Sixteen bytes are written for what is too large for eight, which alone have a sign.
    if (exponent > 3) {
        return refuse(QStringLiteral("an integer out of range"));
    }
    return static_cast<qlonglong>(number(offset, quint64(1) << exponent));
}

QVariant BinaryReader::real(quint64 offset, quint64 exponent)
{
    if (exponent == 2) {
        return double(std::bit_cast<float>(static_cast<quint32>(number(offset, 4))));
    }
    return exponent == 3 ? QVariant(std::bit_cast<double>(number(offset, 8)))
                         : refuse(QStringLiteral("a real number of unknown size"));
}

QVariant BinaryReader::date(quint64 offset)
{
    constexpr double range = 1e12; // Some 30,000 years.
    const auto seconds = std::bit_cast<double>(number(offset, 8));
    if (!(std::abs(seconds) < range)) {
        return refuse(QStringLiteral("a date out of range"));
    }
    const auto milliseconds = static_cast<qint64>(std::llround((seconds + epoch) * 1000));
    return QDateTime::fromMSecsSinceEpoch(milliseconds, QTimeZone::utc());
}

// What has a count: in the marker itself or, when that is full, as an integer behind it.
QVariant BinaryReader::counted(Kind kind, quint64 offset, int depth)
{
    quint64 count = number(offset, 1) & 15;
    quint64 contents = offset + 1;
    if (count == 15) {
        const quint64 width = quint64(1) << (number(contents, 1) & 3);
        count = number(contents + 1, width);
        contents += 1 + width;
    }
    if (count > static_cast<quint64>(_data.size())) {
        return refuse(QStringLiteral("cut short"));
    }
    if (kind == Array) {
        return array(contents, count, depth + 1);
    }
    if (kind == Dictionary) {
        return dictionary(contents, count, depth + 1);
    }
    const QByteArrayView content = bytes(contents, kind == Utf16 ? count * 2 : count);
    _size += content.size();
    if (_size > std::min(PropertyList::maximumSize, maximumGrowth * _data.size())) {
        return refuse(QStringLiteral("too large"));
    }
    switch (kind) {
    case Data:
        return content.toByteArray();
    case Ascii:
        return text(QString::fromLatin1(content));
    case Utf16:
        return text(
            QStringDecoder(QStringDecoder::Utf16BE, QStringDecoder::Flag::Stateless)(content));
    default:
        return refuse(QStringLiteral("an object of unknown kind"));
    }
}

QVariant BinaryReader::text(const QString &text)
{
    const bool isText = text.isValidUtf16() && !text.contains(QChar(QChar::Null));
    return isText ? QVariant(text) : refuse(QStringLiteral("a string that is no text"));
}

QVariant BinaryReader::array(quint64 offset, quint64 count, int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return refuse(QStringLiteral("nested too deep"));
    }
    QVariantList items;
    for (quint64 i = 0; i < count && _error.isEmpty(); ++i) {
        const quint64 item = number(offset + i * _referenceWidth, _referenceWidth);
        items.append(object(item, depth));
    }
    return items;
}

// All the keys come first, then all the values.
QVariant BinaryReader::dictionary(quint64 offset, quint64 count, int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return refuse(QStringLiteral("nested too deep"));
    }
    QVariantMap items;
    for (quint64 i = 0; i < count && _error.isEmpty(); ++i) {
        const QVariant key = object(number(offset + i * _referenceWidth, _referenceWidth), depth);
        if (key.typeId() != QMetaType::QString) {
            return refuse(QStringLiteral("a key that is no string"));
        }
        const quint64 value = number(offset + (count + i) * _referenceWidth, _referenceWidth);
        items.insert(key.toString(), object(value, depth));
    }
    return items;
}

// The first reason stays: what follows from it says less.
QVariant BinaryReader::refuse(const QString &reason)
{
    if (_error.isEmpty()) {
        _error = reason;
    }
    return {};
}

} // namespace

bool PropertyList::isBinary(const QByteArray &data)
{
    return data.startsWith("bplist");
}

std::optional<QVariant> PropertyList::fromBinary(const QByteArray &data, QString *error)
{
    BinaryReader reader(data);
    std::optional<QVariant> value = reader.read();
    if (!value && error) {
        *error = reader.error();
    }
    return value;
}
