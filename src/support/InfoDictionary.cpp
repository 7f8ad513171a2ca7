#include "support/InfoDictionary.h"

#include "support/PreferenceType.h"
#include "support/files/Log.h"
#include "support/files/PropertyList.h"

#include <QFile>

namespace {

QVariantMap compiledValues()
{
    QFile resource(QStringLiteral(":/Info.plist"));
    if (!resource.open(QIODevice::ReadOnly)) {
        return {};
    }
    return PropertyList::fromData(resource.readAll()).value_or(QVariant()).toMap();
}

// Keys that the program reads and that only a file can give. They are all addresses.
bool isKnownString(const QString &key)
{
    return key == QLatin1String("OTHomeURL") || key == QLatin1String("OFSubmitFeedbackURL")
        || key == QLatin1String("SUFeedURL");
}

} // namespace

InfoDictionary::InfoDictionary(const QString &overridingFile)
    : _values(compiledValues())
{
    if (overridingFile.isEmpty()) {
        return;
    }
    PropertyList::Document document = PropertyList::readFile(overridingFile);
    if (document.state == PropertyList::State::Read
        && document.value.typeId() != QMetaType::QVariantMap) {
        document = { PropertyList::State::Damaged, {}, QStringLiteral("not a dictionary") };
    }
    if (document.state == PropertyList::State::Damaged) {
        qCWarning(lcSupport, "cannot read %s: %s", qUtf8Printable(overridingFile),
            qUtf8Printable(document.error));
        return;
    }
    const QVariantMap values = document.value.toMap();
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        overrideKey(value.key(), value.value(), overridingFile);
    }
}

void InfoDictionary::overrideKey(const QString &key, const QVariant &value, const QString &path)
{
    const QVariant like = isKnownString(key) ? QVariant(QString()) : _values.value(key);
    const QVariant converted = PreferenceType::converted(value, like);
    if (converted.isValid()) {
        _values.insert(key, converted);
        return;
    }
    qCWarning(lcSupport, "%s: %s: %s cannot stand for %s and is not used", qUtf8Printable(path),
        qUtf8Printable(key), qUtf8Printable(PreferenceType::described(value)),
        qUtf8Printable(PreferenceType::name(like)));
}

QString InfoDictionary::stringForKey(const QString &key) const
{
    return PreferenceType::converted(objectForKey(key), QString()).toString();
}

bool InfoDictionary::boolForKey(const QString &key) const
{
    return PreferenceType::converted(objectForKey(key), false).toBool();
}

QString InfoDictionary::bundleIdentifier() const
{
    return stringForKey(QStringLiteral("CFBundleIdentifier"));
}
