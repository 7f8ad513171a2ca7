#include "shell/DesktopChecks.h"

#include "support/files/PropertyList.h"

#include <QVariantMap>

namespace {

bool isMissingOrEmpty(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return value.toMap().isEmpty();
    case QMetaType::QVariantList:
        return value.toList().isEmpty();
    case QMetaType::QString:
        return value.toString().isEmpty();
    case QMetaType::QByteArray:
        return value.toByteArray().isEmpty();
    default:
        return !value.isValid();
    }
}

} // namespace

bool DesktopChecks::isOrtuHappyWithMissionControl(
    const QString &libraryPreferencesFolder, const QString &bundleIdentifier)
{
    // What cannot be read is silent too: a half-written file of another program's is none of ours.
    const QVariantMap desktop =
        PropertyList::readFile(libraryPreferencesFolder + QStringLiteral("/com.apple.spaces.plist"))
            .value.toMap();
    if (isMissingOrEmpty(desktop.value(QStringLiteral("spaces")))) {
        return true;
    }
    const QVariantMap bindings = desktop.value(QStringLiteral("app-bindings")).toMap();
    const QVariant binding =
        bindings.value(bundleIdentifier, bindings.value(bundleIdentifier.toLower()));
    return binding == QVariant(QStringLiteral("AllSpaces"));
}
