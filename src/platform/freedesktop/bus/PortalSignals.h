// What a portal tells of itself, of a session and of a question that it was asked. Signals of other
// types never get here; QtDBus drops them.

#pragma once

#include <QDBusAbstractInterface>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QVariantMap>

// A shortcut as portals describe it.
struct PortalBinding
{
    QString id;
    QVariantMap properties;
};

inline QDBusArgument &operator<<(QDBusArgument &argument, const PortalBinding &binding)
{
    argument.beginStructure();
    argument << binding.id << binding.properties;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, PortalBinding &binding)
{
    argument.beginStructure();
    argument >> binding.id >> binding.properties;
    argument.endStructure();
    return argument;
}

// Of any program that sends them: to name one here makes QtDBus ask the bus after it, and wait. The
// message says who it was.
class ShortcutSignals final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    ShortcutSignals(const QString &path, const QDBusConnection &bus, QObject *parent)
        : QDBusAbstractInterface({}, path, "org.freedesktop.portal.GlobalShortcuts", bus, parent)
    { }

Q_SIGNALS:
    // NOLINTBEGIN(readability-identifier-naming)
    void Activated(const QDBusObjectPath &session, const QString &id, qulonglong time,
        const QVariantMap &options, const QDBusMessage &message);
    void Deactivated(const QDBusObjectPath &session, const QString &id, qulonglong time,
        const QVariantMap &options, const QDBusMessage &message);
    void ShortcutsChanged(const QDBusObjectPath &session, const QList<PortalBinding> &shortcuts,
        const QDBusMessage &message);
    // NOLINTEND(readability-identifier-naming)
};

class SessionSignals final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    SessionSignals(const QString &path, const QDBusConnection &bus, QObject *parent)
        : QDBusAbstractInterface({}, path, "org.freedesktop.portal.Session", bus, parent)
    { }

Q_SIGNALS:
    // NOLINTNEXTLINE(readability-identifier-naming)
    void Closed(const QVariantMap &details, const QDBusMessage &message);
};

class RequestSignals final : public QDBusAbstractInterface
{
    Q_OBJECT

public:
    RequestSignals(const QString &path, const QDBusConnection &bus, QObject *parent)
        : QDBusAbstractInterface({}, path, "org.freedesktop.portal.Request", bus, parent)
    { }

Q_SIGNALS:
    // NOLINTNEXTLINE(readability-identifier-naming)
    void Response(uint response, const QVariantMap &results, const QDBusMessage &message);
};
