// The real program where things go wrong: it is killed at each of its writes, calls of the system
// fail, the disk is full, bus and window manager go and come back. Nothing that the user made is
// lost, and the log names each fault once.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"
#include "support/files/PropertyList.h"

#include <QDirIterator>
#include <QImage>

#include <csignal>
#include <functional>

class FaultsTest : public TestCase
{
    Q_OBJECT

    // The files as they are, of exclusions and of favourites in both orders.
    using Lists = QList<QByteArray>;
    // Errors of Linux; 0 kills.
    enum Error { Killed = 0, DiskFails = 5, DiskFull = 28 };

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _runner = std::make_unique<ProgramRunner>();
        // A debug build with sanitizers wants to be the first library otherwise.
        _runner->set("ASAN_OPTIONS", u"verify_asan_link_order=0"_s);
        _runner->set("FAILING_WHILE", path(u"fault"_s));
        for (const char *name : { "alpha", "beta", "gamma", "delta" }) {
            QImage icon(64, 64, QImage::Format_RGB32);
            icon.fill(Qt::blue);
            const QString file = path(QLatin1String(name) + u".png"_s);
            QVERIFY(icon.save(file));
            _runner->writeEntry(QLatin1String(name), "Icon=" + file.toUtf8() + '\n');
        }
        makeOldFiles();
        // Away from menus, which would take what it points at for chosen.
        xdotool(u"mousemove 1270 790"_s);
    }
    void cleanup()
    {
        for (QProcess *const process : { &_ortu, &_manager }) {
            process->kill();
            process->waitForFinished();
        }
    }

    void killedAtAnyWrite_leavesTheOldOrTheNew()
    {
        const Lists old = lists();
        QCOMPARE(use(), QStringList());
        const Lists expected = lists();
        QVERIFY(expected[0] != old[0] && expected[1] != old[1] && expected[2] != old[2]);
        int number = 1;
        // The others fail below; every kind of call meets each parity.
        for (;; number += 2) {
            makeOldFiles();
            QCOMPARE(use(u"any"_s, number, Killed), QStringList());
            if (_fault.isEmpty()) {
                break;
            }
            const Lists left = lists();
            for (qsizetype i = 0; i < left.size(); ++i) {
                QVERIFY2(left[i] == old[i] || left[i] == expected[i], qPrintable(_fault));
            }
            // All that is left where files do not belong together, otherwise every fourth.
            if ((left != old && left != expected) || number % 8 == 1) {
                const QString fault = _fault;
                QVERIFY2(start().isEmpty(), qPrintable(fault));
                quit();
                const Lists next = lists();
                QVERIFY2(next[0] == old[0] || next[0] == expected[0], qPrintable(fault));
                QVERIFY2(
                    next.mid(1) == old.mid(1) || next.mid(1) == expected.mid(1), qPrintable(fault));
            }
            QCOMPARE(preferences()[u"other"_s], QVariant(1LL));
            QVERIFY2(setAside().isEmpty(), qPrintable(_fault));
            number += picturesWritten();
        }
        QVERIFY2(number > 50, qPrintable(QString::number(number)));
    }

    // The end of the program writes what one failure has held up.
    void failingCall_isNamedAndMadeUpFor()
    {
        use();
        const Lists expected = lists();
        const QVariant group = preferences()[u"groupShownWhenWindowClosed"_s];
        int number = 2;
        for (;; number += 2) {
            makeOldFiles();
            const QStringList lines = use(u"any"_s, number, number % 4 == 0 ? DiskFull : DiskFails);
            if (_fault.isEmpty()) {
                break;
            }
            static const QRegularExpression needed(u"call (open|write|fsync) "_s);
            static const QRegularExpression line(
                u"^ortu[.][a-z]+: cannot (lock|write) .*: (No space|Input/output error|No such file)"_s);
            QVERIFY2(lines.size() == lines.filter(line).size() && lines.size() <= 1
                    && (lines.size() == 1 || !_fault.contains(needed)),
                qPrintable(_fault + lines.join(u'\n')));
            QVERIFY2(lists() == expected, qPrintable(_fault));
            // Their only write may be the one at the end.
            QVERIFY2(preferences()[u"groupShownWhenWindowClosed"_s] == group
                    || _fault.contains(u"/config/"_s),
                qPrintable(_fault));
            QCOMPARE(preferences()[u"other"_s], QVariant(1LL));
            QVERIFY2(setAside().isEmpty(), qPrintable(_fault));
            number += picturesWritten();
        }
        QVERIFY2(number > 50, qPrintable(QString::number(number)));
    }

    // As soon as the panel goes once more.
    void fullDiskAndReadOnlyFolder_keepChangesUntilThereIsRoom()
    {
        use();
        const Lists expected = lists();
        for (const auto &[fault, reason] :
            { std::pair(u"write 0 28"_s, u"No space left on device"_s),
                std::pair(u"any 0 30"_s, u"Read-only file system"_s) }) {
            makeOldFiles();
            const Lists old = lists();
            QCOMPARE(start(fault), QStringList());
            _runner->write(u"fault"_s, {});
            change();
            xdotool(u"key ctrl+w"_s);
            QVERIFY(waitFor(u"visible"_s, false));
            QStringList lines;
            // That of the preferences is written later than the others.
            QTRY_VERIFY(!(lines += log()).filter(u"/config/Ortu"_s).isEmpty());
            QVERIFY(!lines.filter(u"/data/Ortu"_s).isEmpty());
            QCOMPARE(lines.filter(u": "_s + reason), lines);
            QCOMPARE(lists(), old);
            QVERIFY(QFile::remove(path(u"fault"_s)));
            xdotool(u"key ctrl+Tab"_s);
            QVERIFY(waitFor(u"active"_s, true));
            xdotool(u"key ctrl+Tab"_s);
            QTRY_COMPARE(lists(), expected);
            QTRY_VERIFY(preferences().contains(u"groupShownWhenWindowClosed"_s));
            quit();
            QCOMPARE(log() + setAside(), QStringList());
        }
    }

    // Until the files take their places, one after the other. What an earlier import has kept goes
    // with a good one only.
    void import_isWholeOrNothing()
    {
        const QVariantList others { u"/other"_s };
        _runner->write(u"other"_s,
            PropertyList::toXml(QVariantMap { { u"OrtuSettingsVersion"_s, 1 },
                { u"UserApplications"_s, QVariantList { QVariant(others) } },
                { u"ExcludedApplications"_s, others },
                { u"Preferences"_s, QVariantMap { { u"iconPadding"_s, 7 } } } }));
        const auto import = [this](int number, Error error) {
            makeOldFiles();
            _runner->write(u"data/Ortu/ExcludedApplications.plist.before"_s, "earlier");
            _runner->set("LD_PRELOAD", qEnvironmentVariable("FAILING_CALLS"));
            _runner->set("FAILING_CALL", u"any %1 %2 "_s.arg(number).arg(error) + path({}));
            const auto result = _runner->run({ u"--import"_s, path(u"other"_s) });
            _runner->set("LD_PRELOAD", {});
            return result;
        };
        const auto files = [this] { return lists() << PropertyList::toXml(preferences()); };
        const auto kept = [this] {
            return _runner->read(u"data/Ortu/ExcludedApplications.plist.before"_s);
        };
        QCOMPARE(import(-1, DiskFull).exitCode, 0);
        const Lists wanted = files();
        makeOldFiles();
        const Lists old = files();
        for (qsizetype i = 0; i < old.size(); ++i) {
            QVERIFY(wanted[i] != old[i]);
        }
        // Also what has a folder last.
        static const QRegularExpression inPlace(u"call rename|/Ortu$"_s);
        for (const Error error : { DiskFull, Killed }) {
            int number = 1;
            for (;; ++number) {
                auto result = import(number, error);
                const QStringList faults = result.errorLines.filter(u"failing call"_s);
                if (faults.isEmpty()) {
                    break;
                }
                result.errorLines.removeAll(faults.first());
                const Lists left = files();
                const bool isInPlace = faults.first().contains(inPlace);
                for (qsizetype i = 0; i < left.size(); ++i) {
                    QVERIFY2(left[i] == old[i] || left[i] == wanted[i], qPrintable(faults[0]));
                }
                QVERIFY2(left == old || left == wanted || isInPlace || error == Killed,
                    qPrintable(faults[0]));
                if (error != Killed) {
                    const bool isSaid = result.exitCode == 1 && result.errorLines.size() == 1;
                    QVERIFY2(left == wanted ? result.exitCode == 0 || isInPlace : isSaid,
                        qPrintable(faults[0] + result.errorLines.join(u'\n')));
                    QVERIFY2(
                        left != old || isInPlace || kept() == "earlier", qPrintable(faults[0]));
                    static const QRegularExpression own(u"[.](plist|before|previous)$"_s);
                    const QStringList all = QDir(path(u"data/Ortu"_s)).entryList(QDir::Files);
                    QCOMPARE(all.filter(own), all);
                }
            }
            QVERIFY2(number > 20, qPrintable(QString::number(number)));
        }
    }

    // In a home where there is nothing, and a file where the folder for states belongs. Each start
    // finds what the one before it has left.
    void killedInItsFirstStarts_comesUpInTheEnd()
    {
        _runner->write(u"states"_s, {});
        _runner->set("XDG_STATE_HOME", path(u"states"_s));
        _runner->set("XDG_DATA_DIRS", path(u"none"_s));
        for (const QByteArray name : { "DATA", "CONFIG", "CACHE" }) {
            _runner->set("XDG_" + name + "_HOME", path(u"not/there/yet/"_s + QLatin1String(name)));
        }
        int number = 1;
        do {
            _fault.clear();
            QCOMPARE(start(u"any %1 0"_s.arg(number)), QStringList());
            quit();
            QCOMPARE(log() + setAside(), QStringList());
            number += 1 + picturesWritten();
        } while (!_fault.isEmpty());
        QVERIFY2(number > 12, qPrintable(QString::number(number)));
    }

    void busThatIsBack_findsTheProgram_orOneOfTwo()
    {
        const QString address = u"unix:path="_s + path(u"bus"_s);
        _runner->set("DBUS_SESSION_BUS_ADDRESS", address);
        const QStringList arguments { u"--session"_s, u"--nofork"_s, u"--nopidfile"_s,
            u"--address="_s + address };
        auto bus = std::make_unique<OtherProcess>(u"dbus-daemon"_s, arguments);
        QTRY_VERIFY(QFile::exists(path(u"bus"_s)));
        QCOMPARE(start(), QStringList());
        const QStringList gone {
            u"ortu.platform: the session bus is gone, so other starts cannot find this one"_s
        };
        const auto lose = [&] {
            bus.reset();
            QStringList lines;
            QTRY_COMPARE(lines += log(), gone);
        };
        lose();
        for (const int count : { 0, 1 }) {
            xdotool(u"key ctrl+Tab"_s);
            QTRY_COMPARE(windowsOf(u"ortu"_s).size(), count);
        }
        bus = std::make_unique<OtherProcess>(u"dbus-daemon"_s, arguments);
        QTRY_VERIFY_WITH_TIMEOUT(!_runner->status().isEmpty(), patience);
        QCOMPARE(_runner->run({ u"--toggle"_s }).exitCode, 0);
        QTRY_COMPARE(windowsOf(u"ortu"_s).size(), 0);
        lose();
        // A start that cannot find it shows a panel all the same, for as long as there is no bus.
        QProcess other;
        _runner->start(other, { u"--toggle"_s });
        QTRY_COMPARE_WITH_TIMEOUT(windowsOf(u"ortu"_s).size(), 1, patience);
        bus = std::make_unique<OtherProcess>(u"dbus-daemon"_s, arguments);
        const auto isRunning = [](const QProcess &process) {
            return process.state() == QProcess::Running;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isRunning(_ortu) != isRunning(other), patience);
        QTRY_VERIFY_WITH_TIMEOUT(_runner->status().contains(u"hotKey"_s), patience);
        QProcess &ended = isRunning(_ortu) ? other : _ortu;
        QVERIFY(ended.exitStatus() == QProcess::NormalExit && ended.exitCode() == 0);
        QVERIFY(ended.readAllStandardError().endsWith("started meanwhile, so this one ends\n"));
        _runner->run({ u"--quit"_s });
        QTRY_VERIFY(!isRunning(_ortu) && !isRunning(other));
    }

    void windowManagers_comeAndGo()
    {
        const QStringList openbox { u"openbox"_s, u"--sm-disable"_s };
        const QStringList xfwm { u"xfwm4"_s, u"--compositor=off"_s };
        manage(openbox + QStringList(u"--replace"_s));
        QCOMPARE(start(), QStringList());
        const QRect frame = frameOf(panel());
        for (const QStringList &next : { openbox, xfwm, openbox }) {
            _manager.kill();
            QVERIFY(_manager.waitForFinished());
            for (const bool isShown : { false, true }) {
                xdotool(u"key ctrl+Tab"_s);
                QVERIFY(waitFor(u"visible"_s, isShown));
            }
            manage(next);
            QVERIFY(waitFor(u"active"_s, true));
            for (const bool isActive : { false, true }) {
                xdotool(u"key ctrl+Tab"_s);
                QVERIFY(waitFor(u"active"_s, isActive));
            }
            QTRY_COMPARE(xdotool(u"getwindowfocus"_s), panel());
            QCOMPARE(frameOf(panel()), frame);
            QVERIFY(propertyOf(panel(), u"_NET_FRAME_EXTENTS"_s).endsWith(u"= 0, 0, 0, 0"));
            // It comes to the second size when the panel has the first one again.
            ::kill(pid_t(_manager.processId()), SIGSTOP);
            xdotool(u"key --delay 50 ctrl+minus ctrl+equal g"_s);
            QTRY_COMPARE(_runner->status()[u"filter"_s].toString(), u"g"_s);
            ::kill(pid_t(_manager.processId()), SIGCONT);
            xdotool(u"key Escape h"_s);
            QTRY_COMPARE(_runner->status()[u"filter"_s].toString(), u"h"_s);
            QCOMPARE(frameOf(panel()), frame);
            xdotool(u"key Escape"_s);
        }
        quit();
        QCOMPARE(log(), QStringList());
    }

private:
    QString path(const QString &name) const { return _runner->path(name); }
    void makeOldFiles()
    {
        for (const char *folder : { "data", "config", "state", ".cache" }) {
            QDir(path(QLatin1String(folder))).removeRecursively();
        }
        const auto store = [this](const QString &name, const QVariant &value) {
            _runner->write(name + u".plist"_s, PropertyList::toXml(value));
        };
        const auto app = [this](const QString &name) {
            return QVariantList { path(u"apps/%1.desktop"_s.arg(name)) };
        };
        store(u"data/Ortu/ExcludedApplications"_s, app(u"delta"_s));
        store(u"data/Ortu/UserApplications"_s, QVariantList { QVariant(app(u"beta"_s)) });
        store(u"data/Ortu/UserApplications1D"_s, app(u"beta"_s));
        const QVariantMap folder { { u"path"_s, u"~/apps"_s } };
        store(u"config/Ortu/Preferences"_s,
            QVariantMap { { u"searchDirectories"_s, QVariantList { folder } },
                { u"showWelcomeWindow"_s, false }, { u"groupContentsSortOrder"_s, 0 },
                // Of another version.
                { u"other"_s, 1 } });
    }
    Lists lists() const
    {
        return { _runner->read(u"data/Ortu/ExcludedApplications.plist"_s),
            _runner->read(u"data/Ortu/UserApplications.plist"_s),
            _runner->read(u"data/Ortu/UserApplications1D.plist"_s) };
    }
    QVariantMap preferences() const
    {
        return PropertyList::readFile(path(u"config/Ortu/Preferences.plist"_s)).value.toMap();
    }
    QStringList setAside() const
    {
        QStringList found;
        QDirIterator file(path({}), { u"*.damaged*"_s }, QDir::Files, QDirIterator::Subdirectories);
        while (file.hasNext()) {
            found.append(file.next());
        }
        return found;
    }

    // Each picture is a write of its own, of which a few will do.
    int picturesWritten() const
    {
        return _fault.contains(u" write "_s) && _fault.endsWith(u"icons.new"_s) ? 4 : 0;
    }
    static QString panel() { return xdotool(u"search --onlyvisible --name ^Ortu$"_s); }
    static QString managerWindow()
    {
        return outputOf(u"xprop"_s, { u"-root"_s, u"_NET_SUPPORTING_WM_CHECK"_s });
    }
    // Until it answers.
    void manage(const QStringList &command)
    {
        const QString former = managerWindow();
        _manager.setStandardErrorFile(QProcess::nullDevice());
        _manager.start(command.first(), command.mid(1));
        // One that is replaced may have the same name.
        QVERIFY(QTest::qWaitFor(
            [&] {
                const QString name = outputOf(u"wmctrl"_s, { u"-m"_s }).section(u'\n', 0, 0);
                return name.endsWith(command.first(), Qt::CaseInsensitive)
                    && (!command.contains(u"--replace"_s) || managerWindow() != former);
            },
            patience));
    }

    // Starts the program and waits until the panel has the keyboard, or the program has ended. What
    // it has logged.
    QStringList start(const QString &fault = {})
    {
        _runner->set(
            "LD_PRELOAD", fault.isEmpty() ? QString() : qEnvironmentVariable("FAILING_CALLS"));
        _runner->set("FAILING_CALL", fault + u' ' + path({}));
        _runner->start(_ortu, {});
        _runner->set("LD_PRELOAD", {});
        waitFor(u"active"_s, true);
        return log();
    }
    // False when the program has ended, or it never is so.
    bool waitFor(const QString &key, bool value)
    {
        return QTest::qWaitFor(
                   [&] {
                       return _ortu.state() == QProcess::NotRunning
                           || _runner->status()[key] == QJsonValue(value);
                   },
                   patience)
            && _ortu.state() != QProcess::NotRunning;
    }
    // Without what the library says.
    QStringList log()
    {
        _ortu.waitForReadyRead(0);
        QStringList lines =
            QString::fromUtf8(_ortu.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
        const QStringList faults = lines.filter(QRegularExpression(u"^failing call"_s));
        _fault = faults.value(0, _fault);
        lines.removeAll(_fault);
        return lines;
    }
    void quit()
    {
        _runner->run({ u"--quit"_s });
        [this] { QTRY_COMPARE_WITH_TIMEOUT(_ortu.state(), QProcess::NotRunning, patience); }();
    }
    // Presses a key until this is so, or the program has ended: a scan may still go on.
    void press(const QString &key, const std::function<bool()> &isDone)
    {
        QVERIFY(QTest::qWaitFor(
            [&] {
                if (_ortu.state() == QProcess::NotRunning) {
                    return true;
                }
                xdotool(u"key "_s + key);
                return isDone();
            },
            patience));
    }
    // Keys that reach a menu while it closes are lost.
    void chooseInMenu(const QString &keys)
    {
        const auto waitForWindows = [this](int count) {
            const QString all = u"search --onlyvisible --class ^ortu$"_s;
            QVERIFY(QTest::qWaitFor(
                [&] {
                    return _ortu.state() == QProcess::NotRunning
                        || xdotool(all).split(u'\n', Qt::SkipEmptyParts).size() == count;
                },
                patience));
        };
        xdotool(u"key Menu"_s);
        waitForWindows(2);
        xdotool(u"key "_s + keys);
        waitForWindows(1);
    }
    // Makes an application a favourite, excludes it, and goes to another group.
    void change()
    {
        press(u"Home"_s, [this] {
            return _runner->status()[u"selected"_s].toString().endsWith(u"alpha.desktop");
        });
        chooseInMenu(u"Down Down Return"_s);
        chooseInMenu(u"Down Return"_s);
        press(u"Tab"_s, [this] { return _runner->status()[u"group"_s].toInt() == 3; });
    }
    // A user starts the program, changes something, puts the panel away and quits; a call fails
    // meanwhile, and `_fault` says which one. What is logged.
    QStringList use(const QString &call = {}, int number = 0, Error error = Killed)
    {
        _fault.clear();
        QStringList lines =
            start(call.isEmpty() ? QString() : u"%1 %2 %3"_s.arg(call).arg(number).arg(error));
        if (_ortu.state() != QProcess::NotRunning) {
            change();
            xdotool(u"key ctrl+w"_s);
            waitFor(u"visible"_s, false);
        }
        quit();
        return lines + log();
    }

    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
    QProcess _manager;
    QString _fault;
};

QTEST_GUILESS_MAIN(FaultsTest)
#include "FaultsTest.moc"
