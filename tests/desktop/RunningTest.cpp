// Real applications on a real display, started, switched, hidden, shown and quit by our own
// operations. Other programs tell what became of them.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "desktop/Programs.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/x11/StartupDisplay.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

class RunningTest : public TestCase
{
    Q_OBJECT

    static bool isIconified(const QString &window)
    {
        return propertyOf(window, u"_NET_WM_STATE"_s).contains(u"_NET_WM_STATE_HIDDEN"_s)
            && propertyOf(window, u"WM_STATE"_s).contains(u"Iconic"_s);
    }

    class StrangeWindows : public OtherProcess
    {
    public:
        explicit StrangeWindows(const QStringList &arguments)
            : OtherProcess(qEnvironmentVariable("ORTU_STRANGE_WINDOWS"), arguments)
        { }
    };

private Q_SLOTS:
    void initTestCase()
    {
        const auto entry = [this](const char *id, const QByteArray &lines) {
            _home.add(u"data/applications/%1.desktop"_s.arg(QLatin1String(id)),
                "[Desktop Entry]\nType=Application\nName=" + QByteArray(id) + '\n' + lines);
        };
        entry("calculator", "Exec=xcalc\nStartupWMClass=XCalc\n");
        entry("quiet", "Exec=cat\nStartupNotify=true\n");
        entry("processes", "Exec=htop\nTerminal=true\n");
        for (const char *id : { "debian-xterm", "org.gnome.baobab", "org.xfce.mousepad" }) {
            const QString name = u"applications/%1.desktop"_s.arg(QLatin1String(id));
            _home.addLink(u"data/"_s + name, u"/usr/share/"_s + name);
        }
        QCOMPARE(
            QProcess::execute(u"update-desktop-database"_s, { _home.path(u"data/applications"_s) }),
            0);
        // All that they need of the system but its other applications and its other programs.
        QStringList needed = QDir(u"/usr/share"_s).entryList(QDir::AllDirs | QDir::NoDotAndDotDot);
        needed.removeOne(u"applications"_s);
        for (const QString &name : needed) {
            _home.addLink(u"share/"_s + name, u"/usr/share/"_s + name);
        }
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_home.path(u"share"_s)));
        qputenv("PATH",
            QFile::encodeName(_home.addPrograms(u"bin"_s,
                { u"xterm"_s, u"mousepad"_s, u"htop"_s, u"xcalc"_s, u"baobab"_s, u"cat"_s,
                    u"openbox"_s, u"wmctrl"_s, u"xprop"_s })));
        qputenv("HOME", QFile::encodeName(_home.path()));
        for (const char *name : { "DATA", "CONFIG", "STATE", "CACHE" }) {
            const QString folder = QString::fromLatin1(name).toLower();
            qputenv(QByteArray("XDG_") + name + "_HOME", QFile::encodeName(_home.path(folder)));
        }
    }

    void init()
    {
        _desktop = makeFreedesktopDesktop();
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        OTAppManager::registerDefaults();
        ScanFolders::registerDefaults(*_defaults, _desktop->searchPaths());
        _defaults->registerDefaults({ { u"maximumIconSize"_s, 16 } });
        _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Inspection);
        _manager->rescanAllAppsPrioritizingGroup(-1);
    }
    void cleanup()
    {
        // What is only just starting cannot be asked yet.
        const auto quitAll = [this] {
            for (const AppRef &app : _manager->runningApps()) {
                app->quit();
            }
            return running().isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(quitAll(), patience);
        _manager.reset();
        _desktop.reset();
        UserDefaults::setStandard(nullptr);
    }

    void applications_areControlled()
    {
        struct Case
        {
            QString id, process, window = {}, processFolder = {};
            AppRef app = {};
        };
        // The last one in a terminal, whose window is the newest of that kind then.
        std::vector<Case> cases { { u"debian-xterm"_s, u"xterm"_s },
            { u"org.xfce.mousepad"_s, u"mousepad"_s }, { u"org.gnome.baobab"_s, u"baobab"_s },
            { u"processes"_s, u"xterm"_s } };
        QStringList ids;
        for (Case &one : cases) {
            const AppRef app = one.app = launched(one.id);
            ids.append(one.id);
            QCOMPARE(running(), ids);
            one.window = windowsOf(one.process).constLast();
            expectInFront(one.window, app);
            QVERIFY(app->pid());
            one.processFolder = u"/proc/%1"_s.arg(*app->pid());
            QCOMPARE(outputOf(u"cat"_s, { one.processFolder + "/comm"_L1 }), one.process);
            QVERIFY(app->isVisible());
        }
        for (const Case &one : cases) {
            QVERIFY(one.app->activate());
            expectInFront(one.window, one.app);
            QCOMPARE(_manager->lastActiveApp()->path(), one.app->path());
        }
        for (const Case &one : cases) {
            one.app->hide();
            QTRY_VERIFY(isIconified(one.window));
            QTRY_VERIFY(!one.app->isVisible());
        }
        for (const Case &one : cases) {
            one.app->show();
            QTRY_VERIFY(!isIconified(one.window) && one.app->isVisible());
        }
        for (const Case &one : cases) {
            ids.removeFirst();
            _manager->quitApp(one.app);
            QTRY_VERIFY_WITH_TIMEOUT(
                !outputOf(u"wmctrl"_s, { u"-l"_s }).contains(one.window), patience);
            // Its end counts, not when its parent reaps it.
            QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(one.processFolder + "/exe"_L1), patience);
            QTRY_COMPARE(running(), ids);
            QVERIFY(!one.app->pid() && !one.app->activate() && !one.app->isVisible());
        }
    }

    // To panels, and by the program; its window ends it as well.
    void aStart_isAnnounced_andItsEndHeard()
    {
        XClient panel;
        // Its requests are at the server.
        panel.time();
        QSignalSpy ended(&_desktop->runningApplications(), &RunningApplications::startEnded);
        QVERIFY(app(u"quiet"_s)->launchWithPasteboard(nullptr));
        const QByteArray sent = startupMessageTo(panel).replace('"', '\'');
        const QString message = QString::fromUtf8(sent);
        const QRegularExpression wanted(u"^new: ID='(ortu-[^']+_TIME\\d+)' SCREEN='0' NAME='quiet' "
                                        u"DESCRIPTION='Starting quiet' "
                                        "BIN='cat' APPLICATION_ID='[^']+/quiet.desktop'$"_s);
        const QRegularExpressionMatch match = wanted.match(message);
        QVERIFY2(match.hasMatch(), qPrintable(message));
        QCOMPARE(ended.size(), 0);
        const QByteArray id = match.captured(1).toUtf8();
        StartupDisplay().broadcast("remove", { { "ID", id } });
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(ended.takeFirst()[0].toString(), app(u"quiet"_s)->path());

        const AppRef calculator = launched(u"calculator"_s);
        QTRY_COMPARE(ended.size(), 1);
        QVERIFY(calculator->canOpenNewWindow() && calculator->openNewWindow());
        QTRY_COMPARE_WITH_TIMEOUT(windowsOf(u"xcalc"_s).size(), 2, patience);
        QTRY_COMPARE(ended.size(), 2);
        QCOMPARE(ended[1][0].toString(), calculator->path());
        QCOMPARE(running(), QStringList(u"calculator"_s));
    }

    void aRunningApplication_isRaisedInsteadOfStarted()
    {
        const AppRef terminal = launched(u"debian-xterm"_s);
        const QString first = windowsOf(u"xterm"_s).value(0);
        QProcess second;
        second.start(u"xterm"_s, QStringList());
        QTRY_COMPARE_WITH_TIMEOUT(windowsOf(u"xterm"_s).size(), 2, patience);
        const QString newest = windowsOf(u"xterm"_s).value(1);
        QTRY_COMPARE(activeWindow(), newest);
        QCOMPARE(running(), QStringList(u"debian-xterm"_s));
        const AppRef calculator = launched(u"calculator"_s);
        expectInFront(windowsOf(u"xcalc"_s).value(0), calculator);
        QVERIFY(terminal->launchWithPasteboard(nullptr));
        expectInFront(newest, terminal);
        outputOf(u"wmctrl"_s, { u"-ia"_s, first });
        expectInFront(first, terminal);
        QVERIFY(calculator->activate());
        expectInFront(windowsOf(u"xcalc"_s).value(0), calculator);
        // The one that was used last, and hidden ones come back.
        terminal->hide();
        QTRY_VERIFY(!terminal->isVisible());
        QVERIFY(terminal->launchWithPasteboard(nullptr));
        QTRY_COMPARE(activeWindow(), first);
        QCOMPARE(windowsOf(u"xterm"_s).size(), 2);
        terminal->quit();
        QTRY_COMPARE_WITH_TIMEOUT(windowsOf(u"xterm"_s).size(), 0, patience);
        QTRY_COMPARE(second.state(), QProcess::NotRunning);
    }

    void strangeWindows_areTakenForWhatTheyAre()
    {
        const AppRef terminal = launched(u"debian-xterm"_s);
        {
            const StrangeWindows liar(
                { u"1"_s, u"Liar"_s, u"pid="_s + QString::number(*terminal->pid()) });
            QTRY_COMPARE(windowsOf(u"Liar"_s).size(), 1);
            QTRY_COMPARE(activeWindow(), windowsOf(u"Liar"_s).value(0));
            QTRY_VERIFY(!_manager->activeApp());
            QCOMPARE(running(), QStringList(u"debian-xterm"_s));
            QCOMPARE(_manager->lastActiveApp()->path(), terminal->path());
        }
        {
            StrangeWindows renamed({ u"1"_s, u"Odd"_s });
            QTRY_COMPARE(windowsOf(u"Odd"_s).size(), 1);
            const QString window = windowsOf(u"Odd"_s).value(0);
            renamed.tell("XCalc");
            QTRY_COMPARE(running(), QStringList({ u"debian-xterm"_s, u"calculator"_s }));
            expectInFront(window, app(u"calculator"_s));
            QCOMPARE(*app(u"calculator"_s)->pid(), renamed.processId());
            renamed.tell("Odd");
            QTRY_COMPARE(running(), QStringList(u"debian-xterm"_s));
        }
        {
            // Asked to close, it stays; the window manager would end it.
            const StrangeWindows rude({ u"1"_s, u"XCalc"_s, u"rude"_s });
            const AppRef calculator = app(u"calculator"_s);
            QTRY_VERIFY(_manager->isAppRunning(calculator));
            calculator->quit();
            calculator->hide();
            QTRY_VERIFY(!calculator->isVisible());
            QCOMPARE(windowsOf(u"XCalc"_s).size(), 1);
        }
        // Gone before the program can ask about them.
        for (int i = 0; i < 20; ++i) {
            StrangeWindows brief({ u"20"_s, u"XCalc"_s });
            brief.tell("close");
        }
        QTRY_COMPARE(running(), QStringList(u"debian-xterm"_s));
    }

    // Last, because the first window manager is gone after it.
    void anotherWindowManager_keepsTheList()
    {
        launched(u"debian-xterm"_s);
        launched(u"calculator"_s);
        const AppRef terminal = _manager->runningApps().constFirst();
        QSignalSpy ended(&_desktop->runningApplications(), &RunningApplications::terminated);
        QProcess manager;
        manager.start(u"openbox"_s, { u"--sm-disable"_s, u"--replace"_s });
        const auto checkWindow = [] {
            return outputOf(u"xprop"_s, { u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s });
        };
        const QString before = checkWindow();
        QTRY_VERIFY_WITH_TIMEOUT(
            checkWindow() != before && checkWindow().contains(u"0x"_s), patience);
        QCOMPARE(ended.count(), 0);
        QCOMPARE(_manager->runningApps().constFirst(), terminal);
        launched(u"org.xfce.mousepad"_s);
        QCOMPARE(
            running(), QStringList({ u"debian-xterm"_s, u"calculator"_s, u"org.xfce.mousepad"_s }));
        cleanup();
        init();
        manager.kill();
        manager.waitForFinished();
    }

private:
    static QByteArray startupMessageTo(XClient &panel)
    {
        const xcb_atom_t first = panel.atom("_NET_STARTUP_INFO_BEGIN");
        const xcb_atom_t next = panel.atom("_NET_STARTUP_INFO");
        QByteArray message;
        const auto isWhole = [&] {
            while (const auto event = XClient::reply(xcb_poll_for_event(panel.connection))) {
                const auto *const part =
                    reinterpret_cast<const xcb_client_message_event_t *>(event.get());
                if (XClient::isOf(*event, XCB_CLIENT_MESSAGE)
                    && (part->type == first || part->type == next)) {
                    message += QByteArray(reinterpret_cast<const char *>(part->data.data8), 20);
                }
            }
            return message.contains('\0');
        };
        return QTest::qWaitFor(isWhole) ? message.left(message.indexOf('\0')) : QByteArray();
    }
    AppRef launched(const QString &id) const
    {
        const AppRef launching = app(id);
        if (!launching->launchWithPasteboard(nullptr)
            || !QTest::qWaitFor([&] { return _manager->isAppRunning(launching); }, patience)) {
            qCritical("%s did not start", qUtf8Printable(id));
        }
        return launching;
    }
    // The window and, as the program knows it, its application.
    void expectInFront(const QString &window, const AppRef &expected) const
    {
        QTRY_COMPARE_WITH_TIMEOUT(activeWindow(), window, patience);
        const auto path = [](const AppRef &app) { return app ? app->path() : QString(); };
        QTRY_COMPARE(path(_manager->activeApp()), path(expected));
    }
    AppRef app(const QString &id) const
    {
        return _manager->appForPath(_home.path(u"data/applications/%1.desktop"_s.arg(id)));
    }

    // In the order of their launch, by ID.
    QStringList running() const
    {
        QStringList ids;
        for (const AppRef &app : _manager->runningApps()) {
            ids.append(app->path().section(u'/', -1).chopped(8));
        }
        return ids;
    }

    FileTree _home;
    std::unique_ptr<Desktop> _desktop;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<OTAppManager> _manager;
};

QTEST_GUILESS_MAIN(RunningTest)
#include "RunningTest.moc"
