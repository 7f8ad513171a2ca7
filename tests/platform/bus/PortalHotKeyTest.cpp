// The hot key of a Wayland session, by a portal of the test's own on a real bus.

#include "platform/freedesktop/bus/PortalHotKey.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/bus/PrivateBus.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/bus/PortalSignals.h"
#include "platform/freedesktop/bus/PortalTrigger.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

using namespace std::chrono_literals;
using Bindings = QList<PortalBinding>;

namespace {

const QString root = u"/org/freedesktop/portal/desktop"_s;
const QString wayland = u"Wayland gives no program such a key"_s;
const QString nonsense = u"the desktop's answer makes no sense"_s;
const QString refused = u"the desktop refuses it"_s;
const QString gone = u"the desktop no longer offers such keys"_s;
const HotKeyCombination controlTab { .key = u"TAB"_s, .control = true };

// What a portal says to one question: an error, or a response with one result.
struct Answer
{
    QString error = {};
    QVariant response = 0U;
    QVariant result = {};
};

class Portal final : public QDBusVirtualObject
{
public:
    // By method; none is silence.
    QHash<QString, Answer> answers {
        { u"Register"_s, { u"org.freedesktop.DBus.Error.UnknownInterface"_s } },
        { u"CreateSession"_s, {} },
        { u"BindShortcuts"_s, { {}, 0U, QVariant::fromValue(Bindings { { u"toggle"_s, {} } }) } },
    };
    QStringList journal;
    QString session;

    Portal()
    {
        qDBusRegisterMetaType<PortalBinding>();
        qDBusRegisterMetaType<Bindings>();
        QDBusConnection bus = _bus.get();
        bus.registerVirtualObject(root, this, QDBusConnection::SubPath);
        bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override
    {
        _client = call.service();
        const QString method = call.member();
        QVariantList arguments = call.arguments();
        journal.append(method);
        if (method == u"BindShortcuts") {
            const auto shortcut = qdbus_cast<Bindings>(arguments[1]).value(0);
            journal.last() =
                shortcut.id + u' ' + shortcut.properties[u"preferred_trigger"_s].toString();
        }
        if (!answers.contains(method)) {
            return true;
        }
        Answer answer = answers[method];
        if (!answer.error.isEmpty()) {
            return bus.send(call.createErrorReply(answer.error, {}));
        }
        const auto options = qdbus_cast<QVariantMap>(arguments.value(arguments.size() - 1));
        const QString sender = _client.mid(1).replace(u'.', u'_');
        const QString request =
            root + u"/request/"_s + sender + u'/' + options[u"handle_token"_s].toString();
        if (method == u"CreateSession") {
            session = root + u"/session/"_s + sender + u'/'
                + options[u"session_handle_token"_s].toString();
            answer.result = answer.result.isValid() ? answer.result : session;
        }
        QVariantMap results;
        if (answer.result.isValid()) {
            results = { { u"session_handle"_s, answer.result }, { u"shortcuts"_s, answer.result } };
        }
        // Before the reply, as may happen.
        tell(request, u"Request.Response"_s, { answer.response, results });
        return bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    }
    void tell(const QString &path, const QString &signal, const QVariantList &arguments)
    {
        QDBusMessage message = QDBusMessage::createTargetedSignal(_client, path,
            u"org.freedesktop.portal."_s + signal.section(u'.', 0, 0), signal.section(u'.', 1));
        message.setArguments(arguments);
        _bus.get().send(message);
    }
    void press(
        const QString &inSession, const QString &id, quint64 time = 1, const QString &token = {})
    {
        tellOfKey(u"Activated"_s, inSession, id, time, { { u"activation_token"_s, token } });
    }
    void release() { tellOfKey(u"Deactivated"_s, session, u"toggle"_s, 1, {}); }

private:
    void tellOfKey(const QString &signal, const QString &inSession, const QString &id, quint64 time,
        const QVariantMap &options)
    {
        tell(root, u"GlobalShortcuts."_s + signal,
            { QVariant::fromValue(QDBusObjectPath(inSession)), id, time, options });
    }

    BusConnection _bus;
    QString _client;
};

} // namespace

class PortalHotKeyTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        // A bus starts the portal of the machine where there is one; here it finds another first.
        qputenv("XDG_DATA_HOME", QFile::encodeName(_services.path()));
        _services.add(u"dbus-1/services/org.freedesktop.portal.Desktop.service"_s,
            "[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=/bin/false\n");
        _bus = std::make_unique<PrivateBus>();
        qunsetenv("XDG_DATA_HOME");
        _portal = std::make_unique<Portal>();
    }
    void cleanup()
    {
        _portal.reset();
        _bus.reset();
    }

    void boundKey_isPressed()
    {
        qputenv("WAYLAND_DISPLAY", "wayland-0");
        const auto restore = qScopeGuard([] { qunsetenv("WAYLAND_DISPLAY"); });
        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        HotKey &hotKey = desktop->hotKey();
        const QSignalSpy changes(&hotKey, &HotKey::registrationChanged);
        QSignalSpy pressed(&hotKey, &HotKey::pressed);
        QCOMPARE(hotKey.registerKey(controlTab), QString());
        const QStringList bound { u"Register"_s, u"CreateSession"_s, u"toggle CTRL+Tab"_s };
        QTRY_COMPARE(_portal->journal, bound);
        // What is not ours does not count, and a held key counts once.
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
        Portal another;
        another.press(_portal->session, u"toggle"_s);
        _portal->press(root, u"toggle"_s);
        _portal->press(_portal->session, u"other"_s);
        _portal->press(_portal->session, u"toggle"_s, quint64(now.count()));
        _portal->press(_portal->session, u"toggle"_s);
        _portal->release();
        // A time of another clock is none.
        _portal->press(_portal->session, u"toggle"_s, quint64(now.count()) + 999'999, u"token"_s);
        QTRY_COMPARE(pressed.size(), 2);
        const auto stamp = [&](int i) { return pressed[i][0].value<ActivationStamp>(); };
        QCOMPARE(stamp(0).time, quint32(now.count()));
        QCOMPARE(stamp(0).startupId, QString());
        QCOMPARE(stamp(1).time, 0U);
        QCOMPARE(stamp(1).startupId, u"token"_s);
        // Another one takes its place.
        _portal->journal.clear();
        QCOMPARE(hotKey.registerKey({ .key = u"AC01"_s, .shift = true }), QString());
        QTRY_COMPARE(
            _portal->journal, QStringList({ u"Close"_s, bound[0], bound[1], u"toggle SHIFT+a"_s }));
        _portal->press(_portal->session, u"toggle"_s);
        QTRY_COMPARE(pressed.size(), 3);
        hotKey.unregisterKey();
        QTRY_COMPARE(_portal->journal.size(), 5);
        QCOMPARE(_portal->journal.last(), u"Close"_s);
        QVERIFY(changes.isEmpty());
    }

    void portalThatBindsNothing_isTold()
    {
        const auto error = [](const char *name) {
            return Answer { u"org.freedesktop."_s + QLatin1String(name) };
        };
        // The question, what is said to it, and what is told of that.
        const std::tuple<QString, Answer, QString> rows[] {
            { u"CreateSession"_s, error("DBus.Error.UnknownMethod"), wayland },
            { u"CreateSession"_s, error("portal.Error.NotAllowed"), refused },
            { u"CreateSession"_s, { {}, 2U, {} }, refused },
            { u"CreateSession"_s, { {}, 0U, 7 }, nonsense },
            { u"BindShortcuts"_s, { {}, 1U, {} }, u"the request for it was cancelled"_s },
            { u"BindShortcuts"_s, { {}, 0U, u"toggle"_s }, nonsense },
            { u"BindShortcuts"_s, { {}, 0U, QVariant::fromValue(Bindings()) },
                u"the desktop has assigned no key"_s },
        };
        for (const auto &[method, answer, whyNot] : rows) {
            const Answer usual = std::exchange(_portal->answers[method], answer);
            PortalHotKey hotKey({}, {});
            const QSignalSpy changes(&hotKey, &HotKey::registrationChanged);
            QCOMPARE(hotKey.registerKey(controlTab), QString());
            QTRY_COMPARE(changes, QList<QVariantList> { { whyNot } });
            _portal->answers[method] = usual;
        }
    }

    void silentPortal_isToldAndMayAnswerLate()
    {
        PortalHotKey hotKey({}, {}, 20ms);
        QSignalSpy changes(&hotKey, &HotKey::registrationChanged);
        const QString silent = u"the desktop has not answered yet"_s;
        // No answer to the call, and one that nothing can be read from.
        const Answer usual = _portal->answers.take(u"BindShortcuts"_s);
        QCOMPARE(hotKey.registerKey(controlTab), QString());
        QTRY_COMPARE(changes, QList<QVariantList> { { silent } });
        changes.clear();
        _portal->answers[u"BindShortcuts"_s] = { {}, u"yes"_s, {} };
        QCOMPARE(hotKey.registerKey(controlTab), QString());
        QTRY_COMPARE(changes, QList<QVariantList> { { silent } });
        const QList<PortalBinding> bindings { { u"toggle"_s, {} } };
        _portal->tell(root, u"GlobalShortcuts.ShortcutsChanged"_s,
            { QVariant::fromValue(QDBusObjectPath(_portal->session)),
                QVariant::fromValue(bindings) });
        QTRY_COMPARE(changes.size(), 2);
        QCOMPARE(changes.last(), QVariantList { QString() });
    }

    void portalThatGoes_isAskedAgainWhenItComesBack()
    {
        PortalHotKey hotKey({}, {});
        QSignalSpy changes(&hotKey, &HotKey::registrationChanged);
        const auto isTold = [&](const QString &whyNot) {
            return QTest::qWaitFor([&] { return !changes.isEmpty(); })
                && changes.takeFirst() == QVariantList { whyNot } && changes.isEmpty();
        };
        _portal.reset();
        QCOMPARE(hotKey.registerKey(controlTab), QString());
        QVERIFY(isTold(wayland));
        _portal = std::make_unique<Portal>();
        QVERIFY(isTold({}));
        _portal->tell(_portal->session, u"Session.Closed"_s, { QVariantMap() });
        QVERIFY(isTold(u"the desktop has taken the key back"_s));
        _portal.reset();
        QVERIFY(isTold(gone));
        _portal = std::make_unique<Portal>();
        QVERIFY(isTold({}));
        const QSignalSpy pressed(&hotKey, &HotKey::pressed);
        _portal->press(_portal->session, u"toggle"_s);
        QTRY_COMPARE(pressed.size(), 1);
        _bus->end();
        QVERIFY(isTold(gone));
        QCOMPARE(hotKey.registerKey(controlTab), wayland);
    }

    void everyKeyOfTheTable_hasATrigger()
    {
        const QByteArray table = load(QFINDTESTDATA("../../resources/USExtendedKeycodes.txt"));
        QStringList triggers;
        for (const QString &line : QString::fromUtf8(table).split(u'\n')) {
            const QString key = line.section(u'\t', 2, 2);
            if (!line.startsWith(u'#') && !key.isEmpty() && key != u"key") {
                triggers.append(portalTrigger({ key, true, true, true, true }));
                QVERIFY2(triggers.last().startsWith(u"CTRL+ALT+SHIFT+LOGO+"), qPrintable(key));
            }
        }
        QVERIFY(triggers.size() > 90 && triggers.removeDuplicates() == 0);
        QCOMPARE(portalTrigger({ .key = u"I147"_s, .control = true }), QString());
    }

    void settings_areNamedByTheDesktop()
    {
        for (const auto &[desktop, name] : { std::pair(u"GNOME"_s, u"GNOME"_s),
                 { u"KDE"_s, u"Plasma"_s }, { u"XFCE"_s, u"Xfce"_s }, { u"sway"_s, u"bindsym"_s },
                 { u"hyprland"_s, u"hyprland.conf"_s }, { u"Unknown"_s, u"your desktop"_s } }) {
            const QString advice = PortalHotKey({ u"vendor"_s, desktop }, {}).settingsAdvice();
            QVERIFY2(
                advice.contains(name) && advice.contains(u"ortu --toggle"), qPrintable(desktop));
        }
    }

private:
    FileTree _services;
    std::unique_ptr<PrivateBus> _bus;
    std::unique_ptr<Portal> _portal;
};

QTEST_GUILESS_MAIN(PortalHotKeyTest)
#include "PortalHotKeyTest.moc"
