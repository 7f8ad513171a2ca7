#include "platform/freedesktop/bus/InstanceMessage.h"

#include <QVariantList>

#include <array>

namespace {

using Verb = InstanceRequest::Verb;

struct Action
{
    Verb verb;
    const char *name;
};
constexpr std::array actions {
    Action { Verb::Toggle, "toggle" },
    Action { Verb::Show, "show" },
    Action { Verb::Hide, "hide" },
    Action { Verb::Preferences, "preferences" },
    Action { Verb::Rescan, "rescan" },
    Action { Verb::Quit, "quit" },
};

constexpr QLatin1String startupIdKey("desktop-startup-id");
constexpr QLatin1String tokenKey("activation-token");
constexpr QLatin1String timeMark("_TIME");
constexpr qsizetype longestId = 1000;

QString actionOf(Verb verb)
{
    for (const Action &action : actions) {
        if (action.verb == verb) {
            return QLatin1String(action.name);
        }
    }
    return {};
}

// An identifier cannot be told from a token, so one goes as both.
QVariantMap platformDataOf(const ActivationStamp &stamp)
{
    QString startupId = stamp.startupId;
    QString token = stamp.startupId;
    if (startupId.isEmpty() && stamp.time != 0) {
        startupId = timeMark + QString::number(stamp.time);
    } else if (startupId.isEmpty()) {
        startupId = qEnvironmentVariable("DESKTOP_STARTUP_ID");
        token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN");
    }
    QVariantMap data;
    if (!startupId.isEmpty()) {
        data.insert(startupIdKey, startupId);
    }
    if (!token.isEmpty()) {
        data.insert(tokenKey, token);
    }
    return data;
}

QString identifierIn(const QVariantMap &data, QLatin1String key)
{
    const QVariant value = data.value(key);
    const QString text = value.userType() == QMetaType::QString ? value.toString() : QString();
    return text.size() <= longestId ? text : QString();
}

QDBusMessage emptyCall(const char *interface, const QString &method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(QLatin1String(InstanceMessage::service),
        QLatin1String(InstanceMessage::path), QLatin1String(interface), method);
    call.setAutoStartService(false);
    return call;
}

} // namespace

QDBusMessage InstanceMessage::callFor(const InstanceRequest &request)
{
    if (request.verb == Verb::Status) {
        return emptyCall(ownInterface, QStringLiteral("Status"));
    }
    const QVariantMap platformData = platformDataOf(request.stamp);
    if (request.verb == Verb::Activate) {
        return emptyCall(applicationInterface, QStringLiteral("Activate")) << platformData;
    }
    if (request.verb == Verb::Open) {
        QStringList uris;
        for (const QUrl &file : request.files) {
            uris.append(file.toString(QUrl::FullyEncoded));
        }
        return emptyCall(applicationInterface, QStringLiteral("Open")) << uris << platformData;
    }
    return emptyCall(applicationInterface, QStringLiteral("ActivateAction"))
        << actionOf(request.verb) << QVariantList() << platformData;
}

std::optional<Verb> InstanceMessage::verbOf(const QString &action)
{
    for (const Action &known : actions) {
        if (action == QLatin1String(known.name)) {
            return known.verb;
        }
    }
    return {};
}

QList<QUrl> InstanceMessage::filesOf(const QStringList &uris)
{
    QList<QUrl> files;
    for (const QString &uri : uris) {
        const QUrl file(uri, QUrl::StrictMode);
        if (file.isValid() && !file.isRelative()) {
            files.append(file);
        }
    }
    return files;
}

// The time stands at the end of an identifier:
// https://specifications.freedesktop.org/startup-notification-spec/startup-notification-latest.txt
ActivationStamp InstanceMessage::stampOf(const QVariantMap &platformData)
{
    ActivationStamp stamp;
    stamp.startupId = identifierIn(platformData, startupIdKey);
    if (stamp.startupId.isEmpty()) {
        stamp.startupId = identifierIn(platformData, tokenKey);
    }
    const qsizetype mark = stamp.startupId.lastIndexOf(timeMark);
    if (mark >= 0) {
        stamp.time = QStringView(stamp.startupId).mid(mark + timeMark.size()).toUInt();
    }
    if (mark == 0) {
        stamp.startupId.clear();
    }
    return stamp;
}
