// Windows as real programs name them, against a system with the entries those programs bring.

#include "platform/freedesktop/windows/WindowMatcher.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/LaunchedEntries.h"

#include <QProcess>

class WindowMatcherTest : public TestCase
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
        // The user has these searched too.
        const QByteArray xterm = "[Desktop Entry]\nType=Application\nName=X\nExec=xterm\n"
                                 "StartupWMClass=";
        QVERIFY(_matcher->setApplications({ _tree.add(u"elsewhere/far.desktop"_s, xterm + "Far"),
            _tree.add(u"elsewhere/other.desktop"_s, xterm + "XTerm"), _outside,
            _tree.path(u"data/applications/xterm.desktop"_s) }));
        _matcher->refresh();
    }

    void window_belongsToTheSurestApplication()
    {
        // What is known of the window and its process, and the entry it belongs to.
        const std::pair<const char *, const char *> rows[] {
            { "class=xterm/XTerm", "xterm" },
            { "class=x/xTERM", "xterm" }, // before one that lies elsewhere
            { "class=x/Far", "far" },
            { "class=crx_mail/Chrome", "browser-mail" },
            { "", "" },
            { "class=xterm/XTerm launched=top", "top" }, // runs in a terminal
            { "class=xterm/XTerm launched=OUTSIDE", "OUTSIDE" },
            { "class=w/OfficeWriter launched=office-start",
                "office-writer" }, // changed its class since the start
            { "class=crx_mail/Browser launched=browser",
                "browser-mail" }, // web application of a browser that ran already
            { "class=b/Browser launched=browser-private",
                "browser-private" }, // several declare it, one was started
            { "class=b/Browser exe=browser", "browser" }, // several declare it, none was started
            { "class=edit/org.example.Edit", "org.example.Edit" },
            { "class=edit/Edit", "org.example.Edit" }, // end of an ID
            { "class=edit/Edit launched=org.example.edit-settings", "org.example.edit-settings" },
            { "class=edit/Edit exe=/opt/none/other", "" },
            { "class=edit/Edit exe=/opt/none/edit-bin",
                "org.example.Edit" }, // end of an ID, program called like it
            { "kde=xterm.desktop launched=top", "top" }, // terminal that names itself
            { "class=odd/Odd id=ours-1 orphan=viewer", "viewer" }, // started, and its maker gone
            { "class=odd/Odd id=ours-1", "" }, // inherited identifier
            { "class=odd/Odd id=ours-1 orphan=browser", "" }, // identifier of another start
            { "class=twin/Twin", "" }, // end of two IDs
            { "class=twin/Twin launched=org.other.Twin", "org.other.Twin" },
            { "class=edit/Edit gtk=browser", "browser" },
            { "kde=xterm.desktop", "xterm" },
            { "class=edit/Edit gtk=org.none", "org.example.Edit" },
            { "class=odd/Odd exe=edit", "org.example.Edit" },
            { "class=odd/Odd exe=twin", "" }, // executable of two entries
            { "class=odd/Odd script=script.py", "viewer" },
            { "exe=/opt/none/edit", "" }, // executable of that name elsewhere
            { "class=game.exe/game.exe exe=/usr/lib/wine/wine64", "" },
            { "class=sun-awt-X11-XFramePeer/sun-awt-X11-XFramePeer", "" },
            { "class=deleted/deleted", "" }, // only deleted entries
            { "class=odd/Odd bundle=Tool.AppDir", "Tool.AppDir" },
            { "class=odd/Odd unit=viewer", "viewer" },
            { "class=edit/Edit unit=viewer", "org.example.Edit" }, // class before unit
            { "class=odd/Odd launched=office-start", "office-start" },
            { "class=odd/Odd flatpak=org.suite.Suite", "org.suite.Suite" },
            { "class=suite-calc/Calc flatpak=org.suite.Suite", "org.suite.Suite.calc" },
            { "class=xterm/XTerm gtk=browser flatpak=org.suite.Suite",
                "org.suite.Suite" }, // a sandbox cannot pass for others
            { "class=xterm/XTerm flatpak=org.unknown", "" },
            { "class=xterm/XTerm snap=snapped", "snapped_snapped" },
        };
        for (const auto &[facts, expected] : rows) {
            WindowTraits window;
            ProcessTraits process;
            for (const QString &fact : QString::fromLatin1(facts).split(u' ')) {
                take(window, process, fact.section(u'=', 0, 0), fact.section(u'=', 1));
            }
            const QString path = _matcher->bundleOf(window, process);
            QString name = path == _outside ? u"OUTSIDE"_s : path.section(u'/', -1);
            QVERIFY2(name.remove(u".desktop"_s) == QLatin1String(expected), facts);
        }
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
            { u"app-kde-edit.service"_s, u"edit"_s },
            { u"session-2.scope"_s, {} },
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
            { u"bundle"_s, u"1"_s, u" tool in Tool.AppDir"_s } };
        for (const auto &[program, claimedProcess, expected] : rows) {
            const QString sleep = QFileInfo(u"/bin/sleep"_s).canonicalFilePath();
            QString command = sleep + " 60"_L1;
            if (program == "script"_L1) {
                command = _tree.add(u"bin/waits"_s, "#!/bin/sh\necho; sleep 60; :\n", 0755);
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
            const auto told = [&] {
                const ProcessTraits traits = ProcessTraits::of(process.processId());
                const auto last = [](const char *before, const QString &path) {
                    return path.isEmpty() ? path : QLatin1String(before) + path.section(u'/', -1);
                };
                const QString text = last("", traits.launchedEntry) + last(" ", traits.executable)
                    + last(" script ", traits.script) + last(" in ", traits.bundle);
                return text;
            };
            QTRY_COMPARE(told(), expected);
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
        QString none;
        const QHash<QString, QString *> plain { { QString(), &none },
            { u"gtk"_s, &window.gtkApplicationId }, { u"kde"_s, &window.kdeDesktopFile },
            { u"exe"_s, &process.executable }, { u"script"_s, &process.script },
            { u"bundle"_s, &process.bundle }, { u"unit"_s, &process.unitEntryId },
            { u"flatpak"_s, &process.flatpakId }, { u"snap"_s, &process.snapName },
            { u"launched"_s, &process.launchedEntry }, { u"id"_s, &window.startupId },
            { u"orphan"_s, &process.orphanedEntry } };
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
