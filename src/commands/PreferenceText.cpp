#include "commands/PreferenceText.h"

#include "catalogue/files/PreferenceRanges.h"
#include "support/Shapes.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>

namespace {

std::optional<QVariant> boolean(const QString &text)
{
    const QString lower = text.toLower();
    if (lower == QLatin1String("true") || lower == QLatin1String("yes")
        || lower == QLatin1String("1")) {
        return true;
    }
    if (lower == QLatin1String("false") || lower == QLatin1String("no")
        || lower == QLatin1String("0")) {
        return false;
    }
    return std::nullopt;
}

bool isColor(const QVariant &value)
{
    return colorFromText(value.toString()).isValid();
}

std::optional<QVariant> fromJson(const QString &text, bool isArrayWanted)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (document.isNull() || document.isArray() != isArrayWanted) {
        return std::nullopt;
    }
    return document.toVariant();
}

std::optional<QVariant> valueFromText(const QString &text, const QVariant &registeredDefault)
{
    bool isValid = false;
    switch (registeredDefault.typeId()) {
    case QMetaType::Bool:
        return boolean(text);
    case QMetaType::Int:
    case QMetaType::LongLong: {
        const qlonglong number = text.toLongLong(&isValid);
        return isValid ? std::optional<QVariant>(number) : std::nullopt;
    }
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = text.toDouble(&isValid);
        return isValid && std::isfinite(number) ? std::optional<QVariant>(number) : std::nullopt;
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return fromJson(text, true);
    case QMetaType::QVariantMap:
        return fromJson(text, false);
    default:
        return isColor(registeredDefault) && !isColor(text) ? std::nullopt
                                                            : std::optional<QVariant>(text);
    }
}

} // namespace

std::optional<QVariant> preferenceFromText(
    const QString &key, const QString &text, const QVariant &registeredDefault)
{
    const std::optional<QVariant> value = valueFromText(text, registeredDefault);
    return value && PreferenceRanges::holds(key, value->toDouble()) ? value : std::nullopt;
}

QString preferenceRefusal(
    const QString &key, const QString &text, const QVariant &registeredDefault)
{
    const QString refusal = QStringLiteral("%1 cannot be %2").arg(key, text);
    if (const auto range = PreferenceRanges::rangeOf(key)) {
        return refusal
            + QStringLiteral(": it is a number from %1 to %2").arg(range->least).arg(range->most);
    }
    return isColor(registeredDefault)
        ? refusal + QStringLiteral(": a colour is #rrggbb or #rrggbbaa")
        : refusal;
}

QString preferenceText(const QVariant &value)
{
    const QJsonValue json = QJsonValue::fromVariant(value);
    if (json.isArray()) {
        return QString::fromUtf8(QJsonDocument(json.toArray()).toJson(QJsonDocument::Compact));
    }
    if (json.isObject()) {
        return QString::fromUtf8(QJsonDocument(json.toObject()).toJson(QJsonDocument::Compact));
    }
    return value.toString();
}
