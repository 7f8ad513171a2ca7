// What a program gets along on its way, and the actions of entries: launches with a real X server,
// a real session bus and real processes.

#include "platform/freedesktop/launch/FreedesktopLauncher.h"

#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"
#include "platform/launch/LaunchSession.h"

#include <QDBusArgument>
#include <QGuiApplication>
#include <QProcess>

#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

const QRegularExpression anyId(u"^ortu-%1-.+-\\d+_TIME\\d+$"_s.arg(::getpid()));
constexpr LaunchStatus launched = LaunchStatus::Launched;

} // namespace

class FreedesktopLauncherTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // GIO reads these folders when it is first asked; the file browser's program comes later.
    void initTestCase()
    {
        for (const char *name : { "XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME" }) {
            qputenv(name, QFile::encodeName(_data.addFolder(QLatin1String(name))));
        }
        const QString folder = _data.addFolder(u"XDG_DATA_HOME/applications"_s);
        _data.add(u"XDG_DATA_HOME/applications/folders.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=A\nMimeType=inode/directory;\nExec="
                + QFile::encodeName(_data.path(u"browser"_s)) + " %f\n");
        QCOMPARE(QProcess::execute(u"update-desktop-database"_s, { folder }), 0);
        qputenv("LANGUAGE", "de");
        _desktop = makeFreedesktopDesktop();
    }
    void cleanupTestCase() { _desktop.reset(); }
    void init()
    {
        TestCase::init();
        qputenv("DESKTOP_STARTUP_ID", "ours");
        qputenv("XDG_ACTIVATION_TOKEN", "ours");
        _session = std::make_unique<LaunchSession>();
        _systemd = std::make_unique<Peer>();
        _session->add(*_systemd, u"org.freedesktop.systemd1"_s, u"/org/freedesktop/systemd1"_s);
        _application = std::make_unique<Peer>();
        _session->add(*_application, u"org.example.My-App"_s, u"/org/example/My_App"_s);
    }
    void cleanup() { _session.reset(); }

    void programs_areOnTheirOwn()
    {
        const QByteArray records = QFile::encodeName(_session->tree.path(u"records"_s));
        const auto entry = [this](const QByteArray &lines) {
            return _session->addEntry(u"a.desktop"_s, _session->exec + '\n' + lines);
        };
        for (const QString &path : { entry({}), entry("Path=" + records + '\n'),
                 entry("StartupNotify=1\n"), entry("DBusActivatable=true\n"), _session->program }) {
            const bool isEntry = path != _session->program;
            const bool hasFolder = load(path).contains("Path=");
            QVERIFY(open({ path }));
            const StartRecord record = _session->started(1).value(0);
            QCOMPARE(record["folder"], hasFolder ? records : qgetenv("HOME"));
            QVERIFY(anyId.match(QString::fromUtf8(record["id"])).hasMatch());
            QCOMPARE(LaunchedEntries::entryOf(QString::fromUtf8(record["id"])), path);
            QCOMPARE(record["entry"], isEntry ? QFile::encodeName(path) : QByteArray());
            QCOMPARE(record.value("token", "?"), QByteArray());
            QCOMPARE(record["bus"], qgetenv("DBUS_SESSION_BUS_ADDRESS"));
            QVERIFY(record["session"].toInt() > 1 && record["session"].toInt() != ::getsid(0));
            QCOMPARE(record["SigBlk"], QByteArray(16, '0'));
            QCOMPARE(record["SigIgn"].toULongLong(nullptr, 16) & (1U << (SIGPIPE - 1)), 0U);
            QCOMPARE(record.value("leaked", "?"), QByteArray());
            // Nothing is left to be waited for.
            siginfo_t ended = {};
            QCOMPARE(::waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT), 0);
            QCOMPARE(ended.si_pid, 0);

            const QList<QVariant> unit = _systemd->asked.takeFirst().arguments();
            QCOMPARE(unit[0].toString().toUtf8(),
                (isEntry ? "app-ortu-a-" : R"(app-ortu-My\x2dProgram-)") + record["pid"]
                    + ".scope");
            QCOMPARE(unit[1].toString(), u"fail"_s);
            QVariantMap properties = propertiesIn(unit.value(2).value<QDBusArgument>());
            QCOMPARE(
                qdbus_cast<QList<uint>>(properties.take(u"PIDs"_s)), { record["pid"].toUInt() });
            QCOMPARE(properties,
                QVariantMap({ { u"CollectMode"_s, u"inactive-or-failed"_s },
                    { u"Description"_s, isEntry ? u"A"_s : u"My-Program"_s },
                    { u"SourcePath"_s, path } }));
        }
    }

    void programsCount_whateverSystemdSays()
    {
        _systemd->isRefusing = true;
        QVERIFY(open({ _session->program }));
        _systemd->isSilent = true;
        QVERIFY(open({ _session->program }));
        QCOMPARE(_session->started(2).size(), 2);
        QCOMPARE(_systemd->asked.size(), 2);
    }

    // More than GIO has threads for what it does behind a launch.
    void manyAtOnce_haveEachTheirOwn()
    {
        const QString entry = _session->addEntry(u"a.desktop"_s, _session->exec);
        QVERIFY(open(QStringList(24, entry) + QStringList(4, _session->program)));
        QVERIFY(open({ entry }));
        QSet<QByteArray> ids;
        for (const StartRecord &record : _session->started(29)) {
            ids.insert(record["id"]);
        }
        QCOMPARE(ids.size(), 29);
        QCOMPARE(_systemd->asked.size(), 29);
    }

    void whatCannotBeLaunched_isFoundOutBefore()
    {
        const LaunchStatus bad = LaunchStatus::CannotExecute;
        for (const char *lines : { "Exec=/nowhere/program\n", "Exec=true\nTryExec=/nowhere/x\n",
                 "Type=Link\nURL=x\n", "DBusActivatable=true\n",
                 // This one is refused by GIO alone.
                 "Exec=true\n[Other]\nnonsense\n" }) {
            QCOMPARE(status(_session->addEntry(u"org.example.NoService.desktop"_s, lines)), bad);
        }
        FileTree &tree = _session->tree;
        QCOMPARE(status(tree.add(u"bad.AppImage"_s, "x")), bad);
        QCOMPARE(status(tree.addFolder(u"bad"_s)), bad);
        QCOMPARE(status(tree.add(u"Garbage.AppImage"_s, "\x01\x02\x03", 0755)), bad);
        QCOMPARE(status(tree.path(u"absent.desktop"_s)), LaunchStatus::FileNotFound);
    }

    void documents_areHandedOver()
    {
        FileTree &tree = _session->tree;
        const QUrl odd = QUrl::fromLocalFile(tree.add(u"it's \"a\" 100% #ü?.txt"_s, "x"));
        const QUrl latin1(u"file:///x/d%E4%20%C3%A4%25.txt"_s);
        const QUrl page(u"https://example.org/a%20b?c=d&e#f"_s);
        const QByteArray oddPath = QFile::encodeName(odd.toLocalFile());
        const QByteArray script =
            "#!/bin/sh\nexec '" + QFile::encodeName(_session->program) + "' \"$0\" \"$@\"\n";
        const QString run = tree.add(u"X.AppDir/AppRun"_s, script, 0755);
        const auto entry = [this](const QByteArray &arguments) {
            return _session->tree.addLink(u"link%1.desktop"_s.arg(arguments.size()),
                _session->addEntry(
                    u"%1.desktop"_s.arg(arguments.size()), _session->exec + ' ' + arguments));
        };
        const std::tuple<QString, QList<QUrl>, QByteArray> rows[] {
            { entry("one \"two words\" %U"), { odd, latin1 },
                "one|two words|" + oddPath + "|/x/d\xe4 \xc3\xa4%.txt" },
            { entry("%u"), { page }, page.toEncoded() }, { entry("one %F"), {}, "one" },
            { _session->program, { latin1 }, "/x/d\xe4 \xc3\xa4%.txt" },
            { tree.path(u"X.AppDir"_s), { odd, page },
                QFile::encodeName(run) + '|' + oddPath + '|' + page.toEncoded() }
        };
        for (const auto &[path, documents, arguments] : rows) {
            QVERIFY(open({ path }, documents));
            QCOMPARE(_session->started(1).value(0)["arguments"], arguments);
        }
    }

    void serviceOnTheBus_getsTheIdentifier()
    {
        const QString entry =
            _session->addEntry(u"org.example.My-App.desktop"_s, "DBusActivatable=true\n");
        const QUrl page(u"https://example.org/a%20b"_s);
        QVERIFY(open({ entry }));
        QVERIFY(open({ entry }, { page }));
        QCOMPARE(_application->asked.size(), 2);
        QCOMPARE(_application->asked[0].member(), u"Activate"_s);
        QCOMPARE(_application->asked[1].member(), u"Open"_s);
        QCOMPARE(_application->asked[1].arguments().value(0).toStringList(),
            { page.toString(QUrl::FullyEncoded) });
        for (const QDBusMessage &message : std::as_const(_application->asked)) {
            const auto data = qdbus_cast<QVariantMap>(message.arguments().constLast());
            QVERIFY(anyId.match(data[u"desktop-startup-id"_s].toString()).hasMatch());
        }
    }

    void runningApplication_isRaisedUnlessThereAreDocuments()
    {
        QStringList asked;
        bool isRunning = true;
        FreedesktopLauncher launcher([&](const QString &path) {
            asked.append(path);
            return isRunning;
        });
        const QString program = _session->program;
        QCOMPARE(launcher.open(program, QList<QUrl>()), launched);
        QCOMPARE(launcher.open(u"/nowhere.desktop"_s, {}), LaunchStatus::FileNotFound);
        QCOMPARE(_session->started(0).size(), 0);
        QCOMPARE(launcher.open(program, QList<QUrl> { QUrl(u"https://example.org"_s) }), launched);
        QCOMPARE(asked, QStringList(program));
        isRunning = false;
        QCOMPARE(launcher.open(program, {}), launched);
        QCOMPARE(_session->started(2).size(), 2);
    }

    // Lines of an entry whose application runs, and how the new window comes: by which arguments
    // of a start, by what on the bus, or not at all.
    void aNewWindow_comesByAction_orByOneMoreStart()
    {
        const auto action = [this](const QByteArray &id) {
            return "Actions=other;" + id
                + ";\n[Desktop Action other]\nName=O\nExec=false\n"
                  "[Desktop Action "
                + id + "]\nName=N\n" + _session->exec + " --new\n";
        };
        const QByteArray bus = "DBusActivatable=true\n";
        const QByteArray start = _session->exec + " plain\n";
        const std::pair<QByteArray, QByteArray> rows[] { { start, "plain" },
            { start + action("new-window"), "--new" }, { start + action("NewWindow"), "--new" },
            { start + action("new_window"), "--new" }, { start + action("new-tab"), "plain" },
            { start + "SingleMainWindow=true\n" + action("new-window"), {} },
            { bus + start, "plain" }, { bus, {} }, { bus + action("new-window"), "new-window" } };
        for (const auto &[lines, expected] : rows) {
            const QString entry = _session->addEntry(u"org.example.My-App.desktop"_s, lines);
            FreedesktopLauncher launcher([](const QString &) { return true; });
            QVERIFY2(launcher.canOpenNewWindow(entry) == !expected.isEmpty(), lines);
            if (expected.isEmpty()) {
                continue;
            }
            QVERIFY(LaunchSession::runOnThreads(
                1, [&](int) { return launcher.openNewWindow(entry) == launched; }));
            if (!_application->asked.isEmpty()) {
                QCOMPARE(_application->asked.takeFirst().arguments().value(0),
                    QString::fromUtf8(expected));
            } else {
                QCOMPARE(_session->started(1).value(0)["arguments"], expected);
            }
        }
        FreedesktopLauncher launcher([](const QString &) { return true; });
        QVERIFY(launcher.canOpenNewWindow(_session->program));
        QCOMPARE(launcher.openNewWindow(_session->program), launched);
        QCOMPARE(_session->started(1).size(), 1);
    }

    void reveal_asksTheFileBrowser()
    {
        Peer browser;
        _session->add(
            browser, u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s);
        const QString file = _session->tree.add(u"it's \"a\" 100% #ü?.txt"_s, "x");
        QVERIFY(reveal(file));
        QCOMPARE(browser.asked.value(0).member(), u"ShowItems"_s);
        QCOMPARE(browser.asked.value(0).arguments().value(0).toStringList(),
            { QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded) });
    }

    void reveal_withoutBrowser_opensTheFolder()
    {
        const QString gone = _session->tree.path(u"gone/x.txt"_s);
        const QString file = _session->tree.add(u"shown/x.txt"_s, "x");
        expectWarning(u"^cannot show %1: its folder is gone$"_s.arg(gone));
        QVERIFY(!reveal(gone));
        expectWarning(u"^cannot show %1: no file browser could be asked$"_s.arg(file));
        QVERIFY(!reveal(file));
        _data.addLink(u"browser"_s, _session->program);
        QVERIFY(reveal(file));
        QCOMPARE(_session->started(1).value(0)["arguments"],
            QFile::encodeName(_session->tree.path(u"shown"_s)));
    }

    void actions_areListed()
    {
        const QByteArray window = "[Desktop Action window]\nName=New Window\nExec=true\n";
        const QByteArray quiet = "[Desktop Action quiet]\nName=Quiet\nName[de]=Still\nExec=true\n";
        const QByteArray bare = "[Desktop Action bare]\nName=Bare\n";
        const std::pair<QByteArray, QString> rows[] { { "Exec=true\n" + window, {} },
            { "Exec=true\nActions=quiet;absent;window;\n" + window + quiet,
                u"quiet=Still, window=New Window"_s },
            { "Exec=true\nActions=bare;window\n" + bare + window, u"window=New Window"_s },
            { "DBusActivatable=true\nActions=bare\n" + bare, u"bare=Bare"_s },
            { "Exec=/nowhere/program\nActions=window\n" + window, {} } };
        for (const auto &[lines, expected] : rows) {
            const QString entry = _session->addEntry(u"a.desktop"_s, lines);
            QCOMPARE(listed(entry), expected);
        }
        QCOMPARE(listed(u"/absent.desktop"_s), QString());
    }

    // Also with the bus asked first, which knows no such service.
    void perform_startsTheProgramOfTheAction()
    {
        const QByteArray folder = QFile::encodeName(_session->tree.addFolder(u"my folder"_s));
        for (const char *key : { "", "DBusActivatable=true\n" }) {
            const QString entry = _session->addEntry(u"org.example.Absent.desktop"_s,
                key + QByteArray("Exec=false %U\nActions=window;\nPath=") + folder
                    + "\n[Desktop Action window]\nName=New\n" + _session->exec
                    + " --new \"a \\\\$b\" %u\n");
            QVERIFY(perform(entry, u"window"_s));
            const StartRecord record = _session->started(1).value(0);
            QCOMPARE(record["folder"], folder);
            QVERIFY(record["session"].toInt() > 0 && record["session"].toInt() != ::getsid(0));
            QCOMPARE(record["entry"], QFile::encodeName(entry));
            QCOMPARE(record["arguments"], QByteArray("--new|a $b"));
        }
    }

    void perform_asksTheBus()
    {
        QVERIFY(perform(_session->addEntry(u"org.example.My-App.desktop"_s,
                            "DBusActivatable=true\nExec=false\nActions=quiet;\n"
                            "[Desktop Action quiet]\nName=Q\nExec=false\n"),
            u"quiet"_s));
        QCOMPARE(_application->asked.size(), 1);
        QCOMPARE(_application->asked[0].member(), u"ActivateAction"_s);
        QCOMPARE(_application->asked[0].arguments().value(0).toString(), u"quiet"_s);
        QCOMPARE(_application->asked[0].signature(), u"sava{sv}"_s);
    }

    void performThatFails_saysWhy()
    {
        const QString entry = _session->addEntry(u"c.desktop"_s,
            "Exec=true\nActions=lost;\n[Desktop Action lost]\nName=L\nExec=/nowhere/program\n"
            "[Desktop Action unlisted]\nName=U\nExec=true\n");
        for (const auto &[id, reason] : { std::pair(u"lost"_s, u"its program is not there"_s),
                 std::pair(u"unlisted"_s, u"there is no such action"_s) }) {
            expectWarning(u"^cannot perform %1 of %2: %3$"_s.arg(id, entry, reason));
            QVERIFY(!perform(entry, id));
        }
    }

private:
    // With all signals blocked, as they are in the program's threads.
    bool open(const QStringList &paths, const QList<QUrl> &documents = {})
    {
        return LaunchSession::runOnThreads(int(paths.size()), [&](int i) {
            sigset_t blocked;
            ::sigfillset(&blocked);
            ::pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
            return _launcher.open(paths[i], documents) == launched;
        });
    }
    LaunchStatus status(const QString &path)
    {
        LaunchStatus status = LaunchStatus::Failed;
        LaunchSession::runOnThreads(1, [&](int) {
            status = _launcher.open(path, {});
            return true;
        });
        return status;
    }
    bool reveal(const QString &path)
    {
        return LaunchSession::runOnThreads(1, [&](int) { return _launcher.reveal(path); });
    }
    // Each as "id=title".
    QString listed(const QString &path) const
    {
        QStringList listed;
        for (const auto &action : _desktop->applicationActions().actionsOf(path)) {
            listed += action.id + u'=' + action.title;
        }
        return listed.join(u", "_s);
    }
    bool perform(const QString &path, const QString &id)
    {
        return LaunchSession::runOnThreads(
            1, [&](int) { return _desktop->applicationActions().perform(path, id); });
    }
    static QVariantMap propertiesIn(const QDBusArgument &argument)
    {
        QVariantMap properties;
        for (argument.beginArray(); !argument.atEnd();) {
            QString key;
            QDBusVariant value;
            argument.beginStructure();
            argument >> key >> value;
            argument.endStructure();
            properties[key] = value.variant();
        }
        argument.endArray();
        return properties;
    }

    FileTree _data;
    std::unique_ptr<LaunchSession> _session;
    std::unique_ptr<Peer> _systemd;
    std::unique_ptr<Peer> _application;
    FreedesktopLauncher _launcher;
    std::unique_ptr<Desktop> _desktop;
};

// A display of its own has to be there before the application.
int main(int argc, char **argv)
{
    QProcess server;
    // It ends with the test, however that ends.
    server.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    server.start(u"Xvfb"_s, u"-displayfd 1 -nolisten tcp -noreset"_s.split(u' '));
    server.waitForReadyRead();
    qputenv("DISPLAY", ':' + server.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    ::dup2(STDOUT_FILENO, 100); // for the children to inherit, if they can
    int result = 1;
    {
        QGuiApplication application(argc, argv);
        FreedesktopLauncherTest test;
        result = QTest::qExec(&test, argc, argv);
    }
    server.terminate();
    server.waitForFinished();
    return result;
}

#include "FreedesktopLauncherTest.moc"
