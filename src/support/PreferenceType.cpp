#include "support/PreferenceType.h"

#include <cmath>

namespace {

QVariant toBoolean(const QVariant &value)
{
    if (value.typeId() == QMetaType::LongLong) {
        const qlonglong number = value.toLongLong();
        return number == 0 || number == 1 ? QVariant(number == 1) : QVariant();
    }
    if (value.typeId() != QMetaType::QString) {
        return {};
    }
    const QString word = value.toString().trimmed().toLower();
    if (word == u"true" || word == u"yes") {
        return true;
    }
    return word == u"false" || word == u"no" ? QVariant(false) : QVariant();
}

QVariant toInteger(const QVariant &value)
{
    if (value.typeId() == QMetaType::Double) {
        const double number = value.toDouble();
        // 2^63, the first number above the integers; NaN fails the comparison.
        const bool fits = std::abs(number) < 9223372036854775808.0 && std::trunc(number) == number;
        return fits ? QVariant(static_cast<qlonglong>(number)) : QVariant();
    }
    bool isNumber = false;
    const qlonglong number = value.toString().toLongLong(&isNumber);
    return isNumber && value.typeId() == QMetaType::QString ? QVariant(number) : QVariant();
}

QVariant toReal(const QVariant &value)
{
    bool isNumber = false;
    double number = 0;
    if (value.typeId() == QMetaType::QString) {
        number = value.toString().toDouble(&isNumber);
    } else if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Double) {
        number = value.toDouble(&isNumber);
    }
    return isNumber && std::isfinite(number) ? QVariant(number) : QVariant();
}

} // namespace

QVariant PreferenceType::converted(const QVariant &value, const QVariant &like)
{
    if (!like.isValid()) {
        return value;
    }
    if (like.typeId() == QMetaType::Double) {
        return toReal(value);
    }
    if (value.typeId() == like.typeId()) {
        return value;
    }
    if (like.typeId() == QMetaType::Bool) {
        return toBoolean(value);
    }
    if (like.typeId() == QMetaType::LongLong) {
        return toInteger(value);
    }
    return {};
}

bool PreferenceType::same(const QVariant &value, const QVariant &other)
{
    return value.typeId() == other.typeId() && value == other;
}

QString PreferenceType::name(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return QStringLiteral("boolean");
    case QMetaType::LongLong:
        return QStringLiteral("integer");
    case QMetaType::Double:
        return QStringLiteral("real");
    case QMetaType::QString:
        return QStringLiteral("string");
    case QMetaType::QVariantList:
        return QStringLiteral("array");
    case QMetaType::QVariantMap:
        return QStringLiteral("dictionary");
    case QMetaType::QDateTime:
        return QStringLiteral("date");
    case QMetaType::QByteArray:
        return QStringLiteral("data");
    default:
        return QString::fromLatin1(value.typeName());
    }
}

QString PreferenceType::described(const QVariant &value)
{
    constexpr qsizetype longest = 40;
    const QString content =
        value.typeId() == QMetaType::QByteArray ? QString() : value.toString().simplified();
    if (content.isEmpty() || content.size() > longest) {
        return name(value);
    }
    return QStringLiteral("%1 \"%2\"").arg(name(value), content);
}
