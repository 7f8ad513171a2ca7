#include "platform/freedesktop/bus/PortalShortcut.h"

#include "platform/freedesktop/bus/PortalSignals.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QRandomGenerator>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

const QString root = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
constexpr const char *sessionInterface = "org.freedesktop.portal.Session";
constexpr const char *requestInterface = "org.freedesktop.portal.Request";

// Ours among the shortcuts of the session. The desktop remembers by it which key the user chose.
const QString id = QStringLiteral("toggle");

// Always the same: where the portal cannot name the program, Plasma keeps the user's choice of a
// key under this name.
const QString sessionToken = QStringLiteral("ortu");

// One that no other program can guess.
QString newToken()
{
    return QStringLiteral("ortu") + QString::number(QRandomGenerator::global()->generate64(), 16);
}

// Of the portal that has just ended, or has no such ability.
bool isAbsence(const QDBusMessage &reply)
{
    const QString error = reply.errorName();
    return error.startsWith(QLatin1String("org.freedesktop.DBus.Error.Unknown"))
        || error == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown");
}

} // namespace

PortalShortcut::PortalShortcut(QString trigger)
    : _trigger(std::move(trigger))
{
    qDBusRegisterMetaType<PortalBinding>();
    qDBusRegisterMetaType<QList<PortalBinding>>();
    introduce();
}

PortalShortcut::~PortalShortcut()
{
    close(_request, requestInterface);
    close(_session, sessionInterface);
}

QString PortalShortcut::absence()
{
    return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "Wayland gives no program such a key"));
}

// Which program we are: portals since 1.21 serve no program that they cannot name. Older ones know
// no such call and find out by themselves. Either way the call starts a portal that does not run.
void PortalShortcut::introduce()
{
    call(QStringLiteral("org.freedesktop.host.portal.Registry"), QStringLiteral("Register"),
        { QStringLiteral("org.ortu.Ortu"), QVariantMap() },
        [this](const QDBusMessage &) { findOwner(); });
}

// Whether there is a portal, and its own name on the bus, from which alone everything else is
// taken. Qt 6.8 does not say who sent a reply, so the bus is asked.
void PortalShortcut::findOwner()
{
    QDBusMessage question = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("GetNameOwner"));
    question << portal;
    send(question, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            Q_EMIT failed(absence());
            return;
        }
        _owner = reply.arguments().value(0).toString();
        createSession();
    });
}

void PortalShortcut::createSession()
{
    _session = pathFor("session", sessionToken);
    listen();
    request(QStringLiteral("CreateSession"), {},
        { { QStringLiteral("session_handle_token"), sessionToken } },
        [this](const QVariantMap &results) {
            if (results.value(QStringLiteral("session_handle")).toString() == _session) {
                bindShortcut();
            } else {
                Q_EMIT failed(QStringLiteral(
                    QT_TRANSLATE_NOOP("Reason", "the desktop's answer makes no sense")));
            }
        });
}

void PortalShortcut::bindShortcut()
{
    PortalBinding binding { id, { { QStringLiteral("description"), tr("Show or hide Ortu") } } };
    if (!_trigger.isEmpty()) {
        binding.properties.insert(QStringLiteral("preferred_trigger"), _trigger);
    }
    request(QStringLiteral("BindShortcuts"),
        { QVariant::fromValue(QDBusObjectPath(_session)),
            QVariant::fromValue(QList<PortalBinding> { binding }), QString() },
        {}, [this](const QVariantMap &results) {
            const auto shortcuts =
                results.value(QStringLiteral("shortcuts")).value<QDBusArgument>();
            if (shortcuts.currentSignature() == QLatin1String("a(sa{sv})")) {
                takeShortcuts(qdbus_cast<QList<PortalBinding>>(shortcuts));
            } else {
                Q_EMIT failed(QStringLiteral(
                    QT_TRANSLATE_NOOP("Reason", "the desktop's answer makes no sense")));
            }
        });
}

// What is not among them the user, or the desktop, did not want.
void PortalShortcut::takeShortcuts(const QList<PortalBinding> &shortcuts)
{
    const auto isOurs = [](const PortalBinding &binding) { return binding.id == id; };
    if (std::any_of(shortcuts.begin(), shortcuts.end(), isOurs)) {
        Q_EMIT bound();
    } else {
        Q_EMIT failed(
            QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the desktop has assigned no key")));
    }
}

// Before anything is asked, so that no signal is missed.
void PortalShortcut::listen()
{
    const auto isOurs = [this](const QDBusObjectPath &session, const QDBusMessage &message) {
        return session.path() == _session && message.service() == _owner;
    };
    const auto *const shortcuts = new ShortcutSignals(root, _bus.get(), this);
    connect(shortcuts, &ShortcutSignals::Activated, this,
        [=, this](const QDBusObjectPath &session, const QString &shortcut, qulonglong time,
            const QVariantMap &options, const QDBusMessage &message) {
            if (isOurs(session, message) && shortcut == id) {
                Q_EMIT activated(time, options);
            }
        });
    connect(shortcuts, &ShortcutSignals::Deactivated, this,
        [=, this](const QDBusObjectPath &session, const QString &shortcut, qulonglong,
            const QVariantMap &, const QDBusMessage &message) {
            if (isOurs(session, message) && shortcut == id) {
                Q_EMIT deactivated();
            }
        });
    connect(shortcuts, &ShortcutSignals::ShortcutsChanged, this,
        [=, this](const QDBusObjectPath &session, const QList<PortalBinding> &bindings,
            const QDBusMessage &message) {
            if (isOurs(session, message)) {
                takeShortcuts(bindings);
            }
        });
    const auto *const session = new SessionSignals(_session, _bus.get(), this);
    connect(session, &SessionSignals::Closed, this,
        [this](const QVariantMap &, const QDBusMessage &message) {
            if (message.service() == _owner) {
                Q_EMIT failed(QStringLiteral(
                    QT_TRANSLATE_NOOP("Reason", "the desktop has taken the key back")));
            }
        });
}

void PortalShortcut::call(const QString &interface, const QString &method,
    const QVariantList &arguments, const Take &take)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(_owner.isEmpty() ? portal : _owner, root, interface, method);
    message.setArguments(arguments);
    send(message, take);
}

// A call may take for ever: it may start the portal, and how long to wait is not decided here.
void PortalShortcut::send(const QDBusMessage &message, const Take &take)
{
    auto *const watcher = new QDBusPendingCallWatcher(
        _bus.get().asyncCall(message, std::numeric_limits<int>::max()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, take] {
        watcher->deleteLater();
        take(watcher->reply());
    });
}

// A portal answers a question twice: at once that it was understood, and by a signal of an object
// of its own what the user, or the desktop, says to it.
void PortalShortcut::request(
    const QString &method, QVariantList arguments, QVariantMap options, const TakeResults &take)
{
    const QString token = newToken();
    _request = pathFor("request", token);
    auto *const question = new RequestSignals(_request, _bus.get(), this);
    connect(question, &RequestSignals::Response, this,
        [this, question, take](
            uint response, const QVariantMap &results, const QDBusMessage &message) {
            if (message.service() != _owner) {
                return;
            }
            question->deleteLater();
            _request.clear();
            if (response == 0) {
                take(results);
            } else {
                Q_EMIT failed(response == 1
                        ? QStringLiteral(
                            QT_TRANSLATE_NOOP("Reason", "the request for it was cancelled"))
                        : QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the desktop refuses it")));
            }
        });
    options.insert(QStringLiteral("handle_token"), token);
    arguments.append(options);
    call(shortcutsInterface, method, arguments, [this](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage) {
            Q_EMIT failed(isAbsence(reply)
                    ? absence()
                    : QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the desktop refuses it")));
        }
    });
}

void PortalShortcut::close(const QString &path, const char *interface)
{
    if (path.isEmpty() || !_bus.isOpen()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        _owner, path, QLatin1String(interface), QStringLiteral("Close"));
    message.setAutoStartService(false);
    _bus.get().send(message);
}

// As portals form the paths of sessions and requests from our name on the bus and a token of ours.
QString PortalShortcut::pathFor(const char *kind, const QString &token)
{
    const QString sender = _bus.get().baseService().mid(1).replace(u'.', u'_');
    return QStringLiteral("%1/%2/%3/%4").arg(root, QLatin1String(kind), sender, token);
}
