// Windows as real programs name them, against a system with the entries those programs bring.

#include "platform/freedesktop/windows/WindowMatcher.h"

#include "platform/FileTree.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"

#include <QProcess>
#include <QTest>

#include <csignal>
#include <memory>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

class WindowMatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        for (const char *program : { "office", "browser", "edit", "twin", "script.py" }) {
            _programs.insert(QLatin1String(program),
                _tree.add("bin/"_L1 + QLatin1String(program), "#!/bin/sh\n", 0755));
        }
        add(u"xterm"_s, "/usr/bin/xterm", "StartupWMClass=XTerm\n");
        add(u"top"_s, "top", "Terminal=true\nStartupWMClass=unused\n");
        add(u"office-start"_s, program("office"));
        add(u"office-writer"_s, program("office") + " --writer %U",
            "StartupWMClass=OfficeWriter\n");
        add(u"browser"_s, program("browser") + " %u", "StartupWMClass=Browser\n");
        add(u"browser-private"_s, program("browser") + " --private", "StartupWMClass=Browser\n");
        add(u"browser-mail"_s, program("browser") + " --app=mail", "StartupWMClass=crx_mail\n");
        add(u"org.example.Edit"_s, program("edit") + " %F");
        add(u"org.example.edit-settings"_s, program("edit") + " --settings");
        add(u"org.other.Twin"_s, program("twin"));
        add(u"com.other.Twin"_s, program("twin"));
        add(u"viewer"_s, program("script.py"));
        add(u"deleted"_s, program("edit"), "Hidden=true\n");
        add(u"org.suite.Suite"_s, "flatpak run org.suite.Suite", "X-Flatpak=org.suite.Suite\n");
        add(u"org.suite.Suite.calc"_s, "flatpak run org.suite.Suite --calc",
            "X-Flatpak=org.suite.Suite\nStartupWMClass=suite-calc\n");
        add(u"snapped_snapped"_s, "/snap/bin/snapped", "X-SnapInstanceName=snapped\n");
        _tree.add(u"Tool.AppDir/AppRun"_s, "#!/bin/sh\n", 0755);
        _outside = _tree.add(u"elsewhere/own.desktop"_s,
            "[Desktop Entry]\nType=Application\nName=Own\nExec=top\nTerminal=true\n");
        LaunchedEntries::remember(u"ours-1"_s, _tree.path(u"data/applications/viewer.desktop"_s));
        _matcher = std::make_unique<WindowMatcher>(
            _entries, QStringList { _tree.path(u"data"_s) }, QStringList { u"Test"_s });
        _matcher->refresh();
    }

    void window_belongsToTheSurestApplication_data()
    {
        QTest::addColumn<QString>("windowAndProcess");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *name, const QString &windowAndProcess,
                             const QString &expected) {
            QTest::newRow(name) << windowAndProcess << expected;
        };
        row("declared class", u"class=xterm/XTerm"_s, u"xterm"_s);
        row("declared class in another case", u"class=x/xTERM"_s, u"xterm"_s);
        row("declared class as instance", u"class=crx_mail/Chrome"_s, u"browser-mail"_s);
        row("nothing is known", {}, {});
        row("runs in a terminal", u"class=xterm/XTerm launched=top"_s, u"top"_s);
        row("runs in a terminal, from elsewhere", u"class=xterm/XTerm launched=OUTSIDE"_s,
            u"OUTSIDE"_s);
        row("changed its class since the start", u"class=w/OfficeWriter launched=office-start"_s,
            u"office-writer"_s);
        row("web application of a browser that ran already",
            u"class=crx_mail/Browser launched=browser"_s, u"browser-mail"_s);
        row("several declare it, one was started", u"class=b/Browser launched=browser-private"_s,
            u"browser-private"_s);
        row("several declare it, none was started", u"class=b/Browser exe=browser"_s, u"browser"_s);
        row("ID", u"class=edit/org.example.Edit"_s, u"org.example.Edit"_s);
        row("end of an ID", u"class=edit/Edit"_s, u"org.example.Edit"_s);
        row("end of an ID, another entry of that program was started",
            u"class=edit/Edit launched=org.example.edit-settings"_s,
            u"org.example.edit-settings"_s);
        row("end of an ID, another program", u"class=edit/Edit exe=/opt/none/other"_s, {});
        row("end of an ID, program called like it", u"class=edit/Edit exe=/opt/none/edit-bin"_s,
            u"org.example.Edit"_s);
        row("terminal that names itself", u"kde=xterm.desktop launched=top"_s, u"top"_s);
        row("started, and its maker gone", u"class=odd/Odd id=ours-1 orphan=viewer"_s, u"viewer"_s);
        row("inherited identifier", u"class=odd/Odd id=ours-1"_s, {});
        row("identifier of another start", u"class=odd/Odd id=ours-1 orphan=browser"_s, {});
        row("end of two IDs", u"class=twin/Twin"_s, {});
        row("end of two IDs, one was started", u"class=twin/Twin launched=org.other.Twin"_s,
            u"org.other.Twin"_s);
        row("the toolkit knows better", u"class=edit/Edit gtk=browser"_s, u"browser"_s);
        row("the other toolkit, with ending", u"kde=xterm.desktop"_s, u"xterm"_s);
        row("the toolkit names nothing that is there", u"class=edit/Edit gtk=org.none"_s,
            u"org.example.Edit"_s);
        row("executable", u"class=odd/Odd exe=edit"_s, u"org.example.Edit"_s);
        row("executable of two entries", u"class=odd/Odd exe=twin"_s, {});
        row("script", u"class=odd/Odd script=script.py"_s, u"viewer"_s);
        row("executable of that name elsewhere", u"exe=/opt/none/edit"_s, {});
        row("emulated program", u"class=game.exe/game.exe exe=/usr/lib/wine/wine64"_s, {});
        row("Java program", u"class=sun-awt-X11-XFramePeer/sun-awt-X11-XFramePeer"_s, {});
        row("only deleted entries", u"class=deleted/deleted"_s, {});
        row("bundle", u"class=odd/Odd bundle=Tool.AppDir"_s, u"Tool.AppDir"_s);
        row("unit", u"class=odd/Odd unit=viewer"_s, u"viewer"_s);
        row("class before unit", u"class=edit/Edit unit=viewer"_s, u"org.example.Edit"_s);
        row("started, badly named", u"class=odd/Odd launched=office-start"_s, u"office-start"_s);
        row("sandbox", u"class=odd/Odd flatpak=org.suite.Suite"_s, u"org.suite.Suite"_s);
        row("one of a sandbox", u"class=suite-calc/Calc flatpak=org.suite.Suite"_s,
            u"org.suite.Suite.calc"_s);
        row("a sandbox cannot pass for others",
            u"class=xterm/XTerm gtk=browser flatpak=org.suite.Suite"_s, u"org.suite.Suite"_s);
        row("sandbox without entry", u"class=xterm/XTerm flatpak=org.unknown"_s, {});
        row("the other kind of sandbox", u"class=xterm/XTerm snap=snapped"_s, u"snapped_snapped"_s);
    }

    void window_belongsToTheSurestApplication()
    {
        QFETCH(QString, windowAndProcess);
        QFETCH(QString, expected);
        WindowTraits window;
        ProcessTraits process;
        for (const QString &fact : windowAndProcess.split(u' ', Qt::SkipEmptyParts)) {
            take(window, process, fact.section(u'=', 0, 0), fact.section(u'=', 1));
        }
        QString path = _matcher->bundleOf(window, process);
        path = path == _outside ? u"OUTSIDE"_s : path;
        path = path.section(u'/', -1);
        QCOMPARE(path.endsWith(".desktop"_L1) ? path.chopped(8) : path, expected);
    }

    void entriesThatCome_areFoundAfterARefresh()
    {
        WindowTraits window;
        window.className = u"Newcomer"_s;
        QVERIFY(!_matcher->isOutdated());
        QCOMPARE(_matcher->bundleOf(window, {}), QString());
        add(u"newcomer"_s, "edit");
        QVERIFY(_matcher->isOutdated());
        _matcher->refresh();
        QCOMPARE(
            _matcher->bundleOf(window, {}), _tree.path(u"data/applications/newcomer.desktop"_s));
        QVERIFY(!_matcher->isOutdated());
    }

    void unitNames_holdIds()
    {
        const std::pair<QString, QString> rows[] {
            { u"app-org.example.Edit-1234.scope"_s, u"org.example.Edit"_s },
            { u"app-gnome-org.example.Edit-1234.scope"_s, u"org.example.Edit"_s },
            { u"app-ortu-debian\\x2dxterm-9.scope"_s, u"debian-xterm"_s },
            { u"app-edit@autostart.service"_s, u"edit"_s },
            { u"app-kde-edit.service"_s, u"edit"_s }, { u"session-2.scope"_s, {} },
            { u"app-x\\x2-1.scope"_s, u"x\\x2"_s }, // cut off
        };
        for (const auto &[unit, id] : rows) {
            QCOMPARE(SystemdUnit::entryIdIn(unit), id);
        }
    }

    void process_tellsWhatItIs()
    {
        // What runs, for which process it was started, and what is told.
        const QString rows[][3] { { u"own"_s, u"$$"_s, u"e.desktop sleep"_s },
            { u"own"_s, u"1"_s, u" sleep"_s }, { u"script"_s, u"1"_s, u" script waits"_s },
            { u"wrapped"_s, u"$$"_s, u"e.desktop sleep"_s },
            { u"bundle"_s, u"1"_s, u" tool in Tool.AppDir"_s } };
        for (const auto &[program, claimedProcess, expected] : rows) {
            const QString sleep = QFileInfo(u"/bin/sleep"_s).canonicalFilePath();
            QString command = sleep + " 60"_L1;
            if (program == "script"_L1) {
                command = _tree.add(u"bin/waits"_s, "#!/bin/sh\necho; sleep 60; :\n", 0755);
            } else if (program == "wrapped"_L1) {
                command = _tree.add(u"bin/wraps"_s, "#!/bin/sh\nsleep 60 & echo $!; wait\n", 0755);
            } else if (program == "bundle"_L1) {
                command = _tree.path(u"Tool.AppDir/tool 60"_s);
                QFile::copy(sleep, command.chopped(3));
            }
            QProcess process;
            process.start(u"/bin/sh"_s,
                { u"-c"_s,
                    u"GIO_LAUNCHED_DESKTOP_FILE=/e.desktop GIO_LAUNCHED_DESKTOP_FILE_PID=%1 exec %2"_s
                        .arg(claimedProcess, command) });
            QVERIFY(process.waitForStarted());
            qint64 processId = process.processId();
            if (program == "wrapped"_L1) {
                QVERIFY(process.waitForReadyRead());
                processId = process.readLine().trimmed().toLongLong();
            }
            const auto told = [&] {
                const ProcessTraits traits = ProcessTraits::of(processId);
                QString text = traits.launchedEntry.section(u'/', -1) + u' ';
                text += traits.executable.section(u'/', -1);
                text += traits.script.isEmpty() ? QString()
                                                : "script "_L1 + traits.script.section(u'/', -1);
                text += traits.bundle.isEmpty() ? QString()
                                                : " in "_L1 + traits.bundle.section(u'/', -1);
                return text;
            };
            QTRY_COMPARE(told(), expected);
            ::kill(pid_t(processId), SIGKILL);
            process.kill();
            process.waitForFinished();
            QCOMPARE(ProcessTraits::of(process.processId()).executable, QString());
        }
    }

private:
    QByteArray program(const char *name) const
    {
        return QFile::encodeName(_programs.value(QLatin1String(name)));
    }
    void add(const QString &id, const QByteArray &exec, const QByteArray &lines = {})
    {
        _tree.add(u"data/applications/%1.desktop"_s.arg(id),
            "[Desktop Entry]\nType=Application\nName=A\nExec=" + exec + '\n' + lines);
    }
    void take(WindowTraits &window, ProcessTraits &process, const QString &key,
        const QString &value) const
    {
        const auto entryPath = [this](const QString &id) {
            return id == "OUTSIDE"_L1 ? _outside
                                      : _tree.path(u"data/applications/%1.desktop"_s.arg(id));
        };
        if (key == "class"_L1) {
            window.instanceName = value.section(u'/', 0, 0);
            window.className = value.section(u'/', 1);
            return;
        }
        const QHash<QString, QString *> plain { { u"gtk"_s, &window.gtkApplicationId },
            { u"kde"_s, &window.kdeDesktopFile }, { u"exe"_s, &process.executable },
            { u"script"_s, &process.script }, { u"bundle"_s, &process.bundle },
            { u"unit"_s, &process.unitEntryId }, { u"flatpak"_s, &process.flatpakId },
            { u"snap"_s, &process.snapName }, { u"launched"_s, &process.launchedEntry },
            { u"id"_s, &window.startupId }, { u"orphan"_s, &process.orphanedEntry } };
        *plain[key] = key == "launched"_L1 || key == "orphan"_L1 ? entryPath(value)
            : key == "bundle"_L1                                 ? _tree.path(value)
            : key == "exe"_L1 || key == "script"_L1              ? _programs.value(value, value)
                                                                 : value;
    }

    FileTree _tree;
    QHash<QString, QString> _programs;
    QString _outside;
    DesktopEntryIndex _entries { {} };
    std::unique_ptr<WindowMatcher> _matcher;
};

QTEST_GUILESS_MAIN(WindowMatcherTest)
#include "WindowMatcherTest.moc"
