#include "support/files/PropertyList.h"

#include "support/files/Log.h"
#include "support/files/PropertyListBinary.h"
#include "support/files/PropertyListXml.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

QVariant plainValue(const QVariant &value, int depth);

QVariant plainList(const QVariantList &items, int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return {};
    }
    QVariantList result;
    result.reserve(items.size());
    for (const QVariant &item : items) {
        if (QVariant plain = plainValue(item, depth); plain.isValid()) {
            result.append(std::move(plain));
        }
    }
    return result;
}

QVariant plainMap(const QVariantMap &items, int depth)
{
    if (depth > PropertyList::maximumDepth) {
        return {};
    }
    QVariantMap result;
    for (auto item = items.cbegin(); item != items.cend(); ++item) {
        const QVariant plain = plainValue(item.value(), depth);
        if (plain.isValid() && PropertyList::canHold(item.key())) {
            result.insert(item.key(), plain);
        }
    }
    return result;
}

QVariant plainDate(const QDateTime &date)
{
    // Years of more than four digits have no text form; the text has no fractions of a second.
    const QString text = date.toUTC().toString(Qt::ISODate);
    return text.isEmpty() ? QVariant() : QVariant(QDateTime::fromString(text, Qt::ISODate));
}

QVariant plainValue(const QVariant &value, int depth)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::LongLong:
    case QMetaType::Double:
    case QMetaType::QByteArray:
        return value;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return value.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const auto number = static_cast<qlonglong>(value.toULongLong());
        return number >= 0 ? QVariant(number) : QVariant();
    }
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QString:
        return PropertyList::canHold(value.toString()) ? value : QVariant();
    case QMetaType::QDateTime:
        return plainDate(value.toDateTime());
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return plainList(value.toList(), depth + 1);
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return plainMap(value.toMap(), depth + 1);
    default:
        return {};
    }
}

QString failureToWrite(const QString &path, const QByteArray &data, FileReplacement::Former former)
{
    if (data.isEmpty()) {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the value is no property list"));
    }
    if (data.size() > PropertyList::maximumSize) {
        return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "too large"));
    }
    return FileReplacement::replace(path, data, former);
}

bool haveSameBytes(const QString &path, const QString &otherPath)
{
    const QFileInfo info(path);
    const QFileInfo other(otherPath);
    if (!info.isFile() || !other.isFile() || info.size() != other.size()) {
        return false;
    }
    QFile file(path);
    QFile otherFile(otherPath);
    return file.open(QIODevice::ReadOnly) && otherFile.open(QIODevice::ReadOnly)
        && file.readAll() == otherFile.readAll();
}

} // namespace

std::optional<QVariant> PropertyList::fromData(const QByteArray &data, QString *error)
{
    if (data.size() <= maximumSize) {
        return isBinary(data) ? fromBinary(data, error) : fromXml(data, error);
    }
    if (error) {
        *error = QStringLiteral("too large");
    }
    return {};
}

bool PropertyList::canHold(const QString &text)
{
    // Exactly the characters that an XML document may contain.
    const auto isAllowed = [](QChar c) {
        return c >= u' ' ? c < QChar(0xFFFE) : (c == u'\t' || c == u'\n' || c == u'\r');
    };
    return std::all_of(text.cbegin(), text.cend(), isAllowed) && text.isValidUtf16();
}

QVariant PropertyList::plain(const QVariant &value)
{
    return plainValue(value, 0);
}

QByteArray PropertyList::toXml(const QVariant &value)
{
    const QVariant held = plain(value);
    return held.isValid() ? plainToXml(held) : QByteArray();
}

PropertyList::Document PropertyList::readFile(const QString &path, qint64 largest)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    // Opening a pipe would wait for its other end.
    if (!info.isFile()) {
        return { State::Damaged, {}, QStringLiteral("not a regular file") };
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        const State state = QFileInfo::exists(path) ? State::Damaged : State::Absent;
        return { state, {}, file.errorString() };
    }
    // A read reserves what it asks for. A file that grows meanwhile is read on.
    const qint64 size = file.size();
    QByteArray data = size > largest ? QByteArray() : file.read(size + 1);
    if (data.size() > size) {
        data += file.read(largest + 1 - data.size());
    }
    if (size > largest || data.size() > largest) {
        return { State::Damaged, {}, QStringLiteral("too large") };
    }
    if (file.error() != QFileDevice::NoError) {
        return { State::Damaged, {}, file.errorString() };
    }
    QString error;
    const std::optional<QVariant> value = fromData(data, &error);
    if (!value) {
        return { State::Damaged, {}, error };
    }
    return { State::Read, *value, {} };
}

bool PropertyList::writeFile(
    const QString &path, const QVariant &value, Former former, QString *error)
{
    const QString reason = failureToWrite(path, toXml(value), former);
    if (reason.isEmpty()) {
        return true;
    }
    qCWarning(lcSupport, "cannot write %s: %s", qUtf8Printable(path), qUtf8Printable(reason));
    if (error) {
        *error = reason;
    }
    return false;
}

bool PropertyList::setAside(const QString &path, const QString &reason)
{
    QString target = path + QStringLiteral(".damaged");
    bool isKept = false;
    for (int number = 2; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++number) {
        isKept = haveSameBytes(path, target);
        if (isKept) {
            break;
        }
        target = QStringLiteral("%1.damaged.%2").arg(path).arg(number);
    }
    QFile file(path);
    if (isKept ? file.remove() : file.rename(target)) {
        qCWarning(lcSupport, "set aside as %s, since it is damaged: %s", qUtf8Printable(target),
            qUtf8Printable(reason));
        return true;
    }
    qCWarning(lcSupport, "cannot set aside the damaged %s (%s): %s", qUtf8Printable(path),
        qUtf8Printable(reason), qUtf8Printable(file.errorString()));
    return false;
}
