// What a program gets along on its way: launches with a real X server, a real session bus and real
// processes.

#include "platform/freedesktop/launch/LaunchScope.h"

#include "platform/FileTree.h"
#include "platform/bus/SilentServer.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"
#include "platform/freedesktop/launch/FreedesktopLauncher.h"

#include <QAbstractNativeEventFilter>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

using Values = QMap<QByteArray, QByteArray>;

const QRegularExpression anyId(QStringLiteral("^ortu-%1-.+-\\d+_TIME\\d+$").arg(::getpid()));

// Stands for somebody on the bus, and writes down what is asked of it.
class Peer final : public QDBusVirtualObject
{
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        asked.append(message);
        if (whenAsked) {
            whenAsked();
        }
        return isSilent
            || connection.send(isRefusing
                    ? message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("no"))
                    : message.createReply());
    }

    QList<QDBusMessage> asked;
    std::function<void()> whenAsked;
    bool isSilent = false;
    bool isRefusing = false;
};

// Puts the messages to the root window together that come in parts.
class Announcements final : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray &, void *event, qintptr *) override
    {
        const char *const bytes = static_cast<const char *>(event);
        if ((bytes[0] & 0x7f) == 33 && bytes[1] == 8) { // a client message of single bytes
            QByteArray &text = _open[QByteArray(bytes + 4, 4)]; // by the window that it is from
            text += QByteArray(bytes + 12, 20);
            if (text.contains('\0')) {
                texts.append(QString::fromUtf8(std::exchange(text, {}).constData()));
            }
        }
        return false;
    }

    QStringList texts;

private:
    QHash<QByteArray, QByteArray> _open;
};

QString firstLine(QProcess &process, const QString &program, const QStringList &arguments)
{
    // It goes with the test, whichever way that ends.
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(program, arguments);
    process.waitForReadyRead();
    return QString::fromUtf8(process.readLine()).trimmed();
}

} // namespace

class LaunchScopeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void unitNames_keepTheirPartsApart_data();
    void unitNames_keepTheirPartsApart();
    void programs_areOnTheirOwn_data();
    void programs_areOnTheirOwn();
    void programsCount_whateverSystemdSays();
    void manyAtOnce_haveEachTheirOwn();
    void launches_areForgottenWhenMoreFollow();
    void documentsKeepTheBytesOfTheirNames();
    void withoutDisplay_noIdentifierIsLeft_data();
    void withoutDisplay_noIdentifierIsLeft();
    void withoutBus_noneIsStarted();
    void serviceOnTheBus_getsTheIdentifier();
    void announcement_isTakenBackWhenNothingStarts();
    void busThatGoesAway_takesNobodyAlong();
    void runningApplication_isRaisedUnlessThereAreDocuments();

private:
    QString addEntry(const QString &name, const QByteArray &lines)
    {
        return _tree->add(QStringLiteral("data/applications/") + name,
            "[Desktop Entry]\nType=Application\nName=The \"A\"\n" + lines);
    }
    bool open(const QStringList &paths, const QList<QUrl> &documents = {});
    QList<Values> started(int count) const;

    std::unique_ptr<FileTree> _tree;
    QString _program;
    QByteArray _exec;
    QProcess _daemon;
    std::unique_ptr<Peer> _systemd;
    std::unique_ptr<Peer> _application;
    std::unique_ptr<Announcements> _announcements;
    FreedesktopLauncher _launcher;
};

// As the program launches: on threads, with the event loop running here.
bool LaunchScopeTest::open(const QStringList &paths, const QList<QUrl> &documents)
{
    std::vector<std::unique_ptr<QThread>> threads;
    std::atomic<int> launched = 0;
    for (const QString &path : paths) {
        threads.emplace_back(QThread::create([&, path] {
            sigset_t blocked;
            ::sigfillset(&blocked);
            ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
            launched += _launcher.open(path, documents) == LaunchStatus::Launched ? 1 : 0;
        }));
        threads.back()->start();
    }
    const auto isDone = [](const auto &thread) { return thread->isFinished(); };
    const auto areDone = [&] { return std::all_of(threads.begin(), threads.end(), isDone); };
    return QTest::qWaitFor(areDone, 20'000) && launched == paths.size();
}

// What the programs have written that were started, once there are so many.
QList<Values> LaunchScopeTest::started(int count) const
{
    const QDir folder(_tree->path(QStringLiteral("records")));
    const auto areThere = [&] { return folder.entryList(QDir::Files).size() >= count; };
    QList<Values> all;
    if (QTest::qWaitFor(areThere, 10'000)) {
        for (const QString &name : folder.entryList(QDir::Files)) {
            QFile file(folder.filePath(name));
            Values &facts = all.emplaceBack();
            const QByteArrayList lines =
                file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
            for (const QByteArray &line : lines) {
                const qsizetype end = line.indexOf(' ');
                facts[line.left(end)] = line.mid(end + 1);
            }
        }
    }
    return all;
}

void LaunchScopeTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    _tree = std::make_unique<FileTree>(QStringLiteral("launch"));
    qputenv("HOME", QFile::encodeName(_tree->addFolder(QStringLiteral("home"))));
    qputenv("DESKTOP_STARTUP_ID", "ours");
    qputenv("XDG_ACTIVATION_TOKEN", "ours");
    const QByteArray record = QFile::encodeName(_tree->addFolder(QStringLiteral("records")));
    _program = _tree->add(QStringLiteral("My-Program.AppImage"),
        "#!/bin/sh\n{ echo pid $$; echo folder $(pwd -P); echo \"id $DESKTOP_STARTUP_ID\"\n"
        "echo \"token $XDG_ACTIVATION_TOKEN\"; echo \"bus $DBUS_SESSION_BUS_ADDRESS\"\n"
        "printf 'document %s\\n' \"$1\"\n"
        "echo session $(cut -d' ' -f6 /proc/$$/stat)\n"
        "echo \"leaked $(readlink /proc/$$/fd/100)\"\n"
        "while read key value; do echo ${key%:} $value; done </proc/$$/status; } >"
            + record + "/.$$\nmv " + record + "/.$$ " + record + "/$$\n",
        0755);
    _exec = "Exec=" + QFile::encodeName(_program) + '\n';
    const QString address = firstLine(_daemon, QStringLiteral("dbus-daemon"),
        { QStringLiteral("--session"), QStringLiteral("--nofork"),
            QStringLiteral("--print-address") });
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("peers"));
    _systemd = std::make_unique<Peer>();
    _application = std::make_unique<Peer>();
    QVERIFY(bus.registerVirtualObject(QStringLiteral("/org/freedesktop/systemd1"), _systemd.get()));
    QVERIFY(bus.registerVirtualObject(QStringLiteral("/org/example/My_App"), _application.get()));
    QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.systemd1")));
    QVERIFY(bus.registerService(QStringLiteral("org.example.My-App")));
    _announcements = std::make_unique<Announcements>();
    QCoreApplication::instance()->installNativeEventFilter(_announcements.get());
}

void LaunchScopeTest::cleanup()
{
    _announcements.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("peers"));
    _daemon.kill();
    _daemon.waitForFinished();
}

void LaunchScopeTest::unitNames_keepTheirPartsApart_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("unit");

    QTest::newRow("plain") << "/x/org.example.App_1.desktop"
                           << QByteArray("app-ortu-org.example.App_1-7.scope");
    QTest::newRow("folder") << "/x/applications/kde/a-b.desktop"
                            << QByteArray(R"(app-ortu-kde\x2da\x2db-7.scope)");
    QTest::newRow("odd") << QStringLiteral(R"(/x/.My ü\.AppImage)")
                         << QByteArray(R"(app-ortu-\x2eMy\x20\xc3\xbc\x5c-7.scope)");
    QTest::newRow("long") << QLatin1Char('/') + QString(200, QLatin1Char('-'))
                          << "app-ortu-" + QByteArray(R"(\x2d)").repeated(59) + "-7.scope";
}

void LaunchScopeTest::unitNames_keepTheirPartsApart()
{
    QFETCH(QString, path);
    QTEST(LaunchScope::unitName(LaunchScope::applicationId(path), 7), "unit");
}

void LaunchScopeTest::programs_areOnTheirOwn_data()
{
    QTest::addColumn<bool>("isEntry");
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("folder");

    QTest::newRow("entry") << true << QByteArray() << "home";
    QTest::newRow("entry with a folder") << true << QByteArray("Path=") << "records";
    QTest::newRow("entry that is announced") << true << QByteArray("StartupNotify=1\n") << "home";
    QTest::newRow("AppImage") << false << QByteArray() << "home";
}

void LaunchScopeTest::programs_areOnTheirOwn()
{
    QFETCH(bool, isEntry);
    QFETCH(QByteArray, lines);
    QFETCH(QString, folder);
    if (lines.endsWith('=')) {
        lines += QFile::encodeName(_tree->path(folder)) + '\n';
    }
    const QString path = isEntry ? addEntry(QStringLiteral("a.desktop"), _exec + lines) : _program;
    QVERIFY(open({ path }));

    const Values facts = started(1).value(0);
    QCOMPARE(facts["folder"], QFile::encodeName(_tree->path(folder)));
    QVERIFY(anyId.match(QString::fromUtf8(facts["id"])).hasMatch());
    QCOMPARE(LaunchedEntries::entryOf(QString::fromUtf8(facts["id"])), path);
    QCOMPARE(facts.value("token", "?"), QByteArray());
    QCOMPARE(facts["bus"], qgetenv("DBUS_SESSION_BUS_ADDRESS"));
    QVERIFY(facts["session"].toInt() > 1 && facts["session"].toInt() != ::getsid(0));
    QCOMPARE(facts["SigBlk"], QByteArray(16, '0'));
    QCOMPARE(facts["SigIgn"].toULongLong(nullptr, 16) & (1U << (SIGPIPE - 1)), 0U);
    QCOMPARE(facts.value("leaked", "?"), QByteArray());

    QCOMPARE(_systemd->asked.size(), 1);
    const QList<QVariant> unit = _systemd->asked[0].arguments();
    QVariantMap properties;
    const auto argument = unit.value(2).value<QDBusArgument>();
    for (argument.beginArray(); !argument.atEnd();) {
        QString key;
        QDBusVariant value;
        argument.beginStructure();
        argument >> key >> value;
        argument.endStructure();
        properties[key] = value.variant();
    }
    argument.endArray();
    QCOMPARE(unit[0].toString().toUtf8(),
        (isEntry ? "app-ortu-a-" : R"(app-ortu-My\x2dProgram-)") + facts["pid"] + ".scope");
    QCOMPARE(unit[1].toString(), QStringLiteral("fail"));
    QCOMPARE(qdbus_cast<QList<uint>>(properties.take(QStringLiteral("PIDs"))),
        { facts["pid"].toUInt() });
    const QString name = isEntry ? QStringLiteral("The \"A\"") : QStringLiteral("My-Program");
    QCOMPARE(properties,
        QVariantMap({ { QStringLiteral("CollectMode"), QStringLiteral("inactive-or-failed") },
            { QStringLiteral("Description"), name }, { QStringLiteral("SourcePath"), path } }));
}

void LaunchScopeTest::programsCount_whateverSystemdSays()
{
    _systemd->isRefusing = true;
    QVERIFY(open({ _program }));
    _systemd->isSilent = true;
    QVERIFY(open({ _program }));
    QCOMPARE(started(2).size(), 2);
    QCOMPARE(_systemd->asked.size(), 2);
}

// More than GIO has threads for what it does behind a launch; and it gets over them.
void LaunchScopeTest::manyAtOnce_haveEachTheirOwn()
{
    const QString entry = addEntry(QStringLiteral("a.desktop"), _exec);
    QVERIFY(open(QStringList(24, entry) + QStringList(4, _program)));
    QVERIFY(open(QStringList(24, entry)));
    QVERIFY(open({ entry }));
    QSet<QByteArray> ids;
    for (const Values &facts : started(53)) {
        ids.insert(facts["id"]);
    }
    QCOMPARE(ids.size(), 53);
    QCOMPARE(_systemd->asked.size(), 53);
}

void LaunchScopeTest::launches_areForgottenWhenMoreFollow()
{
    const auto id = [](int i) { return QStringLiteral("test-%1_TIME0").arg(i); };
    LaunchedEntries::remember({}, QStringLiteral("/nobody's"));
    for (int i = 0; i < 65; ++i) {
        LaunchedEntries::remember(id(i), QStringLiteral("/x/%1.desktop").arg(i));
    }
    QCOMPARE(LaunchedEntries::entryOf({}), QString());
    QCOMPARE(LaunchedEntries::entryOf(id(0)), QString());
    QCOMPARE(LaunchedEntries::entryOf(id(1)), QStringLiteral("/x/1.desktop"));
    QCOMPARE(LaunchedEntries::entryOf(id(64)), QStringLiteral("/x/64.desktop"));
}

void LaunchScopeTest::documentsKeepTheBytesOfTheirNames()
{
    const QList<QUrl> document { QUrl(QStringLiteral("file:///x/d%E4%20%C3%A4%25.txt")) };
    QVERIFY(open(
        { addEntry(QStringLiteral("a.desktop"), _exec.trimmed() + " %f\n"), _program }, document));
    for (const Values &facts : started(2)) {
        QCOMPARE(facts["document"], QByteArray("/x/d\xe4 \xc3\xa4%.txt"));
    }
}

void LaunchScopeTest::withoutDisplay_noIdentifierIsLeft_data()
{
    QTest::addColumn<bool>("isThere");

    QTest::newRow("none") << false;
    // As one whose only attention another program has taken for itself.
    QTest::newRow("one that does not answer") << true;
}

void LaunchScopeTest::withoutDisplay_noIdentifierIsLeft()
{
    QFETCH(bool, isThere);
    const QByteArray display = qgetenv("DISPLAY");
    const SilentServer server;
    qputenv("DISPLAY", isThere ? server.display() : QByteArray());
    const bool areLaunched = open({ addEntry(QStringLiteral("a.desktop"), _exec), _program });
    qputenv("DISPLAY", display);
    QVERIFY(areLaunched);
    QVERIFY(server.wasReached() == isThere);
    const QList<Values> both = started(2);
    QCOMPARE(both.value(0).value("id", "none"), QByteArray());
    QCOMPARE(both.value(1).value("id", "none"), QByteArray());
}

// GIO would run this program to get one.
void LaunchScopeTest::withoutBus_noneIsStarted()
{
    const QString trace = _tree->path(QStringLiteral("asked"));
    _tree->add(QStringLiteral("bin/dbus-launch"),
        "#!/bin/sh\necho \"$@\" >" + QFile::encodeName(trace) + '\n', 0755);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(_tree->path(QStringLiteral("bin"))) + ':' + path);
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(_tree->addFolder(QStringLiteral("run"))));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    const FreedesktopLauncher made;
    const bool areLaunched = open({ addEntry(QStringLiteral("a.desktop"), _exec), _program });
    qputenv("PATH", path);
    qputenv("XDG_RUNTIME_DIR", folder);
    QVERIFY(areLaunched);
    QCOMPARE(started(2).value(0).value("bus", "?"), QByteArray());
    QCOMPARE(started(2).value(1).value("bus", "?"), QByteArray());
    QVERIFY(!QFile::exists(trace));
}

void LaunchScopeTest::serviceOnTheBus_getsTheIdentifier()
{
    const QString entry =
        addEntry(QStringLiteral("org.example.My-App.desktop"), "DBusActivatable=true\n");
    const QUrl page(QStringLiteral("https://example.org/a%20b"));
    QVERIFY(open({ entry }));
    QVERIFY(open({ entry }, { page }));
    QCOMPARE(_application->asked.size(), 2);
    QCOMPARE(_application->asked[0].member(), QStringLiteral("Activate"));
    QCOMPARE(_application->asked[1].member(), QStringLiteral("Open"));
    QCOMPARE(_application->asked[1].arguments().value(0).toStringList(),
        { page.toString(QUrl::FullyEncoded) });
    for (const QDBusMessage &message : std::as_const(_application->asked)) {
        const auto data = qdbus_cast<QVariantMap>(message.arguments().constLast());
        QVERIFY(anyId.match(data[QStringLiteral("desktop-startup-id")].toString()).hasMatch());
    }
}

void LaunchScopeTest::announcement_isTakenBackWhenNothingStarts()
{
    const QByteArray announced = "StartupNotify=true\nStartupWMClass=C\nIcon=i\n" + _exec;
    const QString good = addEntry(QStringLiteral("good.desktop"), announced);
    QVERIFY(open({ addEntry(QStringLiteral("quiet.desktop"), _exec) }));
    QVERIFY(open({ good }));
    QTRY_COMPARE(_announcements->texts.size(), 1);
    QVERIFY(!open({ addEntry(QStringLiteral("bad.desktop"), announced + "Path=/nowhere\n") }));
    QTRY_COMPARE(_announcements->texts.size(), 3);
    const auto idIn = [this](int i) {
        return _announcements->texts[i].section(QLatin1Char('"'), 1, 1);
    };
    QVERIFY(anyId.match(idIn(0)).hasMatch());
    QCOMPARE(_announcements->texts[0],
        QStringLiteral(
            R"(new: ID="%1" SCREEN="0" NAME="The \"A\"" DESCRIPTION="Starting The \"A\"" )"
            R"(BIN="%2" ICON="i" WMCLASS="C" APPLICATION_ID="%3")")
            .arg(idIn(0), _program, good));
    QVERIFY(_announcements->texts[1].startsWith(QLatin1String("new: ")));
    QCOMPARE(_announcements->texts[2], QStringLiteral("remove: ID=\"%1\"").arg(idIn(1)));
}

// Nor does the dead connection stay: every test has a bus of its own.
void LaunchScopeTest::busThatGoesAway_takesNobodyAlong()
{
    const QString entry =
        addEntry(QStringLiteral("org.example.My-App.desktop"), "DBusActivatable=true\n" + _exec);
    _application->isSilent = true;
    _application->whenAsked = [this] {
        _daemon.kill();
        _daemon.waitForFinished();
    };
    QVERIFY(open({ _program }));
    QVERIFY(open({ entry }));
    QVERIFY(open({ _program }));
    QCOMPARE(started(3).size(), 3);
}

void LaunchScopeTest::runningApplication_isRaisedUnlessThereAreDocuments()
{
    QStringList asked;
    bool isRunning = true;
    FreedesktopLauncher launcher([&](const QString &path) {
        asked.append(path);
        return isRunning;
    });
    QCOMPARE(launcher.open(_program, {}), LaunchStatus::Launched);
    QCOMPARE(launcher.open(_program, QList<QUrl>()), LaunchStatus::Launched);
    QCOMPARE(launcher.open(QStringLiteral("/nowhere.desktop"), {}), LaunchStatus::FileNotFound);
    QCOMPARE(asked, QStringList({ _program, _program }));
    QCOMPARE(started(0).size(), 0);

    QCOMPARE(launcher.open(_program, QList<QUrl> { QUrl(QStringLiteral("https://example.org")) }),
        LaunchStatus::Launched);
    QCOMPARE(asked.size(), 2);
    isRunning = false;
    QCOMPARE(launcher.open(_program, {}), LaunchStatus::Launched);
    QCOMPARE(started(2).size(), 2);
}

// A display of its own has to be there before the application.
int main(int argc, char **argv)
{
    QProcess server;
    const QString number = firstLine(server, QStringLiteral("Xvfb"),
        { QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
            QStringLiteral("tcp"), QStringLiteral("-noreset") });
    qputenv("DISPLAY", ':' + number.toUtf8());
    qputenv("QT_QPA_PLATFORM", "xcb");
    ::dup2(STDOUT_FILENO, 100); // for the children to inherit, if they can
    int result = 1;
    {
        QGuiApplication application(argc, argv);
        LaunchScopeTest test;
        result = QTest::qExec(&test, argc, argv);
    }
    server.terminate();
    server.waitForFinished();
    return result;
}

#include "LaunchScopeTest.moc"
