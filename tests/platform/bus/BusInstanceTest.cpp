// Starts of the program that talk to each other over a real bus. The other side is a process of its
// own, this test once more, or another connection.

#include "platform/freedesktop/bus/BusInstance.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/bus/PrivateBus.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QLibraryInfo>
#include <QVersionNumber>

#include <cstdio>

using Verb = InstanceRequest::Verb;
using Claim = SingleInstance::Claim;

namespace {

const QStringList verbs { u"activate"_s, u"open"_s, u"toggle"_s, u"show"_s, u"hide"_s,
    u"preferences"_s, u"rescan"_s, u"quit"_s, u"status"_s };
const QStringList outcomes { u"Done"_s, u"NoneRuns"_s, u"Failed"_s };

const QString name = u"org.ortu.Ortu"_s;
const QString path = u"/org/ortu/Ortu"_s;
const QString application = u"org.freedesktop.Application"_s;

// VERB [IDENTIFIER [TIME [FILE…]]], before there is any application object.
int tellAsAProcess(const QStringList &arguments)
{
    InstanceRequest request;
    request.verb = Verb(verbs.indexOf(arguments.value(0)));
    request.stamp = { arguments.value(2).toUInt(), arguments.value(1) };
    for (const QString &file : arguments.mid(3)) {
        request.files.append(QUrl(file));
    }
    BusInstance instance(std::chrono::milliseconds(
        qEnvironmentVariableIsSet("PATIENCE") ? qEnvironmentVariableIntValue("PATIENCE") : 10'000));
    const InstanceAnswer answer = instance.tell(request);
    std::printf("%s\n", qPrintable((outcomes[int(answer.outcome)] + u' ' + answer.text).trimmed()));
    return 0;
}

// Another program on the bus.
class Stranger final : public QDBusVirtualObject
{
public:
    enum class Habit { Answers, Refuses, Ignores, Leaves };

    explicit Stranger(Habit habit)
        : _habit(habit)
    { }
    // False when it cannot get the name.
    bool enter(const QString &place)
    {
        return _bus->get().registerVirtualObject(place, this) && _bus->get().registerService(name);
    }
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        switch (_habit) {
        case Habit::Answers:
            return connection.send(message.createReply(7));
        case Habit::Refuses:
            return connection.send(
                message.createErrorReply(QDBusError::AccessDenied, u"not\ntoday"_s));
        case Habit::Ignores:
            return true;
        case Habit::Leaves:
            QMetaObject::invokeMethod(
                this, [this] { _bus.reset(); }, Qt::QueuedConnection);
            return true;
        }
        return false;
    }

private:
    const Habit _habit;
    std::unique_ptr<BusConnection> _bus = std::make_unique<BusConnection>();
};

class Process final : public QProcess
{
public:
    explicit Process(const QStringList &arguments, const QStringList &environment = {})
    {
        QStringList variables = QProcess::systemEnvironment();
        for (const QString &variable : environment) {
            const QString start = variable.section(u'=', 0, 0) + u'=';
            variables.removeIf([&](const QString &old) { return old.startsWith(start); });
            variables.append(variable);
        }
        setEnvironment(variables);
        start(QCoreApplication::applicationFilePath(), arguments);
    }
    // All that it printed, complaints included, once it has ended by itself.
    QString output()
    {
        const bool hasEnded = QTest::qWaitFor([this] { return state() == NotRunning; }, 30'000);
        return hasEnded && exitStatus() == NormalExit && exitCode() == 0
            ? QString::fromUtf8(readAllStandardOutput() + readAllStandardError()).trimmed()
            : u"did not end well"_s;
    }
};

} // namespace

class BusInstanceTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        qunsetenv("DESKTOP_STARTUP_ID");
        qunsetenv("XDG_ACTIVATION_TOKEN");
        _bus = std::make_unique<PrivateBus>();
        _instance = makeFreedesktopInstance();
        _requests.clear();
        connect(_instance.get(), &SingleInstance::requested, this,
            [this](const InstanceRequest &request) { _requests.append(text(request)); });
    }
    void cleanup()
    {
        _instance.reset();
        _bus.reset();
    }

    void requests_reachTheRunningProgram()
    {
        // What is told, in what environment, and what is heard.
        std::vector<std::tuple<QStringList, QStringList, QString>> rows {
            { { u"open"_s, {}, {}, u"file:///x/d%E4%20%C3%A4%25.txt"_s,
                  u"https://example.org/a?b#c"_s },
                {}, u"open  0 file:///x/d%E4%20%C3%A4%25.txt https://example.org/a?b#c"_s },
            { { u"show"_s, {}, u"4294967295"_s }, { u"DESKTOP_STARTUP_ID=old"_s },
                u"show  4294967295"_s },
            { { u"show"_s, u"x_TIMEx"_s, u"5"_s }, { u"DESKTOP_STARTUP_ID=old"_s },
                u"show x_TIMEx 0"_s },
            { { u"toggle"_s }, { u"DESKTOP_STARTUP_ID=b_TIME9"_s, u"XDG_ACTIVATION_TOKEN=t"_s },
                u"toggle b_TIME9 9"_s },
            { { u"activate"_s }, { u"XDG_ACTIVATION_TOKEN=t"_s }, u"activate t 0"_s }
        };
        for (const QString &verb : verbs.mid(0, verbs.indexOf(u"quit"_s))) {
            rows.push_back({ { verb, u"a-1_TIME77"_s }, {}, verb + u" a-1_TIME77 77"_s });
        }
        QCOMPARE(_instance->claim({}), Claim::Granted);
        QCOMPARE(_instance->claim({}), Claim::Granted);
        for (const auto &[told, environment, heard] : rows) {
            QCOMPARE(tell(told, environment), u"Done"_s);
            QTRY_COMPARE(_requests, QStringList { heard });
            _requests.clear();
        }
    }

    void quit_isAnsweredOnceTheNameIsFree()
    {
        const auto status = [] { return QByteArray(R"({"filter":"ä"})"); };
        QCOMPARE(_instance->claim(status), Claim::Granted);
        Process first({ u"tell"_s, u"quit"_s });
        Process second({ u"tell"_s, u"quit"_s });
        QTRY_COMPARE(_requests.size(), 2);
        QCOMPARE(tell({ u"status"_s }), uR"(Done {"filter":"ä"})"_s);
        QCOMPARE(first.state(), QProcess::Running);
        _instance.reset();
        QCOMPARE(first.output() + second.output(), u"DoneDone"_s);
        QCOMPARE(tell({ u"quit"_s }), u"NoneRuns"_s);
    }

    // Often, because a program that ends at once stumbles over its own threads only now and then.
    void whereNoneRuns_noneIsStarted()
    {
        FileTree tree;
        const QString trace = tree.path(u"started"_s);
        tree.add(u"dbus-1/services/org.ortu.Ortu.service"_s,
            "[D-BUS Service]\nName=org.ortu.Ortu\nExec=/usr/bin/touch " + QFile::encodeName(trace)
                + '\n');
        qputenv("XDG_DATA_HOME", QFile::encodeName(tree.path()));
        _bus.reset();
        _bus = std::make_unique<PrivateBus>();
        qunsetenv("XDG_DATA_HOME");
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(tell({ i % 2 == 0 ? u"hide"_s : u"status"_s }), u"NoneRuns"_s);
        }
        QVERIFY(!QFile::exists(trace));
        _bus->end();
        QCOMPARE(tell({ u"hide"_s }), u"NoneRuns"_s);
    }

    void otherOwnerOfTheName_isNamed()
    {
        using Habit = Stranger::Habit;
        const QString another =
            u"Failed org.ortu.Ortu on the session bus belongs to another program"_s;
        const std::tuple<Habit, QString, QString, QString> rows[] {
            { Habit::Answers, u"/elsewhere"_s, u"toggle"_s, another },
            { Habit::Answers, path, u"status"_s, another },
            { Habit::Refuses, path, u"open"_s, u"Failed the running Ortu refuses: not today"_s },
            { Habit::Ignores, path, u"quit"_s, u"Failed the running Ortu does not answer"_s },
            { Habit::Leaves, path, u"show"_s, u"NoneRuns"_s },
            { Habit::Leaves, path, u"quit"_s, u"Done"_s }
        };
        for (const auto &[habit, place, verb, answer] : rows) {
            Stranger stranger(habit);
            QVERIFY(stranger.enter(place));
            QCOMPARE(_instance->claim({}), Claim::Taken);
            const bool isPatient = habit != Habit::Ignores;
            QCOMPARE(
                tell({ verb }, { isPatient ? u"PATIENCE=20000"_s : u"PATIENCE=50"_s }), answer);
        }
    }

    void claimThatFails_saysWhy()
    {
        _bus->end();
        const auto alone = makeFreedesktopInstance();
        expectWarning(u"^there is no session bus, so other starts cannot find this one$"_s);
        QCOMPARE(alone->claim({}), Claim::Impossible);
    }

    void strangeCalls_areRefusedOrCutToWhatIsRight()
    {
        const QString unknown = u"org.freedesktop.DBus.Error.UnknownMethod"_s;
        const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
        const QString id = u"desktop-startup-id"_s;
        const QString token = u"activation-token"_s;
        const QVariantMap none;
        const QVariantList nothing;
        // Method and arguments, the error, and what is heard.
        const std::tuple<QString, QVariantList, QString, QStringList> rows[] {
            { u"Deactivate"_s, { none }, unknown, {} },
            { u"ActivateAction"_s, { u"Toggle"_s, QVariant(nothing), none }, invalid, {} },
            { u"ActivateAction"_s, { u"toggle"_s, QVariant(QVariantList { 1, u"x"_s }), none }, {},
                { u"toggle  0"_s } },
            { u"Activate"_s, { QVariantMap { { id, 7 }, { token, u"t"_s } } }, {},
                { u"activate t 0"_s } },
            { u"Open"_s, { QStringList(10'001, u"file:///a"_s), none }, invalid, {} },
            { u"Open"_s,
                { QStringList { u"a.txt"_s, u"/a.txt"_s, QString(), u"http://["_s, u"file:///a b"_s,
                      u"file:///ok"_s, u"mailto:x@example.org"_s },
                    none },
                {}, { u"open  0 file:///ok mailto:x@example.org"_s } }
        };
        QCOMPARE(_instance->claim({}), Claim::Granted);
        BusConnection connection;
        for (const auto &[method, arguments, error, heard] : rows) {
            QDBusMessage message = QDBusMessage::createMethodCall(name, path, application, method);
            message.setArguments(arguments);
            if (error == unknown && QLibraryInfo::version() >= QVersionNumber(6, 8)) {
                // Qt itself logs it, once for each interface.
                for (int i = 0; i < 2; ++i) {
                    expectWarning(u"^QDBusConnection: couldn't handle call to Deactivate"_s);
                }
                expectWarning(u"^Could not find slot ApplicationInterface::Deactivate"_s);
            }
            const QDBusPendingCall call = connection.get().asyncCall(message);
            QTRY_VERIFY(call.isFinished());
            QCOMPARE(call.error().name(), error);
            QCoreApplication::processEvents();
            QCOMPARE(std::exchange(_requests, {}), heard);
        }
    }

private:
    static QString tell(const QStringList &arguments, const QStringList &environment = {})
    {
        return Process(QStringList { u"tell"_s } + arguments, environment).output();
    }
    // Each as "verb id time file…".
    static QString text(const InstanceRequest &request)
    {
        QStringList parts { verbs[int(request.verb)], request.stamp.startupId,
            QString::number(request.stamp.time) };
        for (const QUrl &file : request.files) {
            parts.append(file.toString(QUrl::FullyEncoded));
        }
        return parts.join(u' ');
    }

    std::unique_ptr<PrivateBus> _bus;
    std::unique_ptr<SingleInstance> _instance;
    QStringList _requests;
};

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "tell") == 0) {
        const QByteArray told = QByteArrayList(argv + 2, argv + argc).join('\n');
        return tellAsAProcess(QString::fromLocal8Bit(told).split(u'\n'));
    }
    const QCoreApplication app(argc, argv);
    BusInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "BusInstanceTest.moc"
