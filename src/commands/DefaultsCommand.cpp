#include "commands/Commands.h"
#include "commands/Output.h"
#include "commands/PreferenceText.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"

#include <QJsonObject>
#include <QJsonValue>

namespace {

constexpr int WrongUse = 2;

int unknownKey(const QString &key)
{
    return Output::fail(QStringLiteral("no such preference: %1").arg(key), WrongUse);
}

bool isUnknown(const QString &key)
{
    return !UserDefaults::standard().defaultForKey(key).isValid();
}

int setPreference(const QString &key, const QString &text)
{
    UserDefaults &defaults = UserDefaults::standard();
    const QVariant registered = defaults.defaultForKey(key);
    const auto value = preferenceFromText(key, text, registered);
    if (!value) {
        return Output::fail(preferenceRefusal(key, text, registered), WrongUse);
    }
    return defaults.setObject(key, *value) && defaults.synchronize() ? 0 : 1;
}

int printPreferences(const QStringList &keys, bool isJson)
{
    const UserDefaults &defaults = UserDefaults::standard();
    QJsonObject object;
    QStringList lines;
    for (const QString &key : keys) {
        const QVariant value = defaults.objectForKey(key);
        const QVariant registered = defaults.defaultForKey(key);
        object.insert(key,
            QJsonObject { { QStringLiteral("value"), QJsonValue::fromVariant(value) },
                { QStringLiteral("default"), QJsonValue::fromVariant(registered) } });
        QString line = key + QStringLiteral(" = ") + preferenceText(value);
        if (value != registered) {
            line += QStringLiteral("  (default %1)").arg(preferenceText(registered));
        }
        lines.append(line);
    }
    const bool isPrinted =
        isJson ? Output::printJson(QJsonDocument(object)) : Output::printLines(lines);
    return isPrinted ? 0 : 1;
}

} // namespace

int Commands::defaults(const Invocation &invocation, const Desktop &desktop)
{
    UserDefaults &defaults = UserDefaults::standard();
    const bool isChange = invocation.resetKey || invocation.value;
    if (isChange && desktop.searchPaths().configurationFolder().isEmpty()) {
        return Output::fail(QStringLiteral("this desktop has no folder for preferences"));
    }
    if (invocation.resetKey) {
        if (isUnknown(*invocation.resetKey)) {
            return unknownKey(*invocation.resetKey);
        }
        defaults.removeObject(*invocation.resetKey);
        return defaults.synchronize() ? 0 : 1;
    }
    if (!invocation.key) {
        return printPreferences(defaults.registeredKeys(), invocation.isJson);
    }
    if (isUnknown(*invocation.key)) {
        return unknownKey(*invocation.key);
    }
    return invocation.value ? setPreference(*invocation.key, *invocation.value)
                            : printPreferences({ *invocation.key }, invocation.isJson);
}
