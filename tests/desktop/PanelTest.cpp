// The panel of the real program on a real display: when it comes and goes, by keys, mouse, other
// windows and other starts, and that it launches applications of the system.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"

class PanelTest : public TestCase
{
    Q_OBJECT

    static constexpr QRect screen { 0, 0, 1280, 800 };
    static constexpr QRect smallScreen { 0, 0, 1000, 700 };

    // Of those that are shown, in no order.
    static QStringList windowsBy(const QString &pattern)
    {
        return xdotool(u"search --onlyvisible "_s + pattern).split(u'\n', Qt::SkipEmptyParts);
    }

    // Below its alerts, which have the same name.
    static QString panel() { return windowsBy(u"--name ^Ortu$"_s).value(0); }

    static int windowCount() { return int(windowsBy(u"--class ^ortu$"_s).size()); }

    static bool isCentredOn(const QRect &place)
    {
        const QRect frame = frameOf(panel());
        return frame.isValid() && (frame.center() - place.center()).manhattanLength() <= 2;
    }

private Q_SLOTS:
    void init()
    {
        _runner = std::make_unique<ProgramRunner>();
        for (const char *name : { "alpha", "beta", "gamma", "delta" }) {
            _runner->writeEntry(QLatin1String(name));
        }
        _runner->scanOnlyOwnApplications();
        // Away from where windows come up.
        xdotool(u"mousemove 1270 790"_s);
    }
    void cleanup()
    {
        if (_ortu.state() != QProcess::NotRunning) {
            // As a session does; what is not written yet is written then.
            _ortu.terminate();
            QVERIFY(_ortu.waitForFinished() && _ortu.exitStatus() == QProcess::NormalExit);
        }
        QTRY_COMPARE(windowCount(), 0);
    }

    void anotherScreenSizeCentresIt()
    {
        const auto xrandr = [](const QString &arguments) {
            outputOf(u"xrandr"_s, arguments.split(u' '));
        };
        xrandr(u"--newmode small 0 1000 0 0 0 700 0 0 0"_s);
        xrandr(u"--addmode screen small"_s);
        start();
        QVERIFY(isCentredOn(screen));
        xrandr(u"--output screen --mode small"_s);
        QTRY_VERIFY(isCentredOn(smallScreen));
        xrandr(u"--output screen --mode 1280x800"_s);
        QTRY_VERIFY(isCentredOn(screen));
        // Hidden meanwhile, it comes up where it belongs.
        tell(u"--hide"_s);
        QTRY_VERIFY(panel().isEmpty());
        xrandr(u"--output screen --mode small"_s);
        tell(u"--show"_s);
        QTRY_VERIFY(isCentredOn(smallScreen));
        xrandr(u"--output screen --mode 1280x800"_s);
    }

    void withoutABusItComesUpAllTheSame()
    {
        _runner->set("DBUS_SESSION_BUS_ADDRESS", u"unix:path=/nonexistent/bus"_s);
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(
            !panel().isEmpty() && xdotool(u"getactivewindow"_s) == panel(), patience);
        QCOMPARE(_runner->run({ u"--toggle"_s, u"--set"_s, u"noSuchKey=1"_s }).exitCode, 2);
    }

    void ofTwoStartsOneRemains()
    {
        QProcess other;
        _runner->start(_ortu, {});
        _runner->start(other, {});
        // One that is still on its way does not run either.
        QVERIFY(_ortu.waitForStarted() && other.waitForStarted());
        const auto running = [&] {
            return int(_ortu.state() == QProcess::Running)
                + int(other.state() == QProcess::Running);
        };
        QTRY_COMPARE(running(), 1);
        QProcess &ended = other.state() == QProcess::Running ? _ortu : other;
        QVERIFY(ended.exitStatus() == QProcess::NormalExit && ended.exitCode() == 0);
        QTRY_VERIFY(isActive());
        QCOMPARE(windowCount(), 1);
        QCOMPARE(ended.readAllStandardError(), QByteArray());
        // The next start finds the name and the hot key free.
        tell(u"--quit"_s);
        QTRY_COMPARE(running(), 0);
        start();
        QVERIFY(!_runner->status().contains(u"hotKeyProblem"_s));
    }

    void returnLaunchesTheSelectedApplication()
    {
        // What runs in a terminal runs in the first one that is found.
        FileTree programs;
        _runner->set("PATH",
            programs.addPrograms(u"bin"_s, { u"xterm"_s, u"mousepad"_s, u"htop"_s, u"baobab"_s }));
        for (const char *id : { "debian-xterm", "org.xfce.mousepad", "htop", "org.gnome.baobab" }) {
            const QString name = QLatin1String(id) + u".desktop"_s;
            QVERIFY(QFile::link(
                u"/usr/share/applications/"_s + name, _runner->path(u"apps/"_s + name)));
        }
        // The last two: in a terminal, and by the session bus with another name.
        const std::tuple<QString, QString, QString> rows[] { { u"xterm"_s, u"xterm"_s, u"xterm"_s },
            { u"mousepad"_s, u"mousepad"_s, u"mousepad"_s }, { u"htop"_s, u"xterm"_s, u"htop"_s },
            { u"disk usage"_s, u"baobab"_s, u"baobab"_s } };
        for (const auto &[name, windowClass, process] : rows) {
            const auto isRunning = [&process = process] {
                return !outputOf(u"pgrep"_s, { u"-x"_s, process }).isEmpty();
            };
            start();
            outputOf(u"xdotool"_s, { u"type"_s, name });
            QTRY_COMPARE(_runner->status()[u"filter"_s].toString(), name);
            xdotool(u"key Home Return"_s);
            QTRY_VERIFY_WITH_TIMEOUT(!windowsOf(windowClass).isEmpty(), patience);
            QTRY_VERIFY(isRunning());
            // It outlives the program.
            _ortu.kill();
            QVERIFY(_ortu.waitForFinished());
            QTRY_COMPARE(windowCount(), 0);
            QVERIFY(isRunning() && windowsOf(windowClass).size() == 1);
            outputOf(u"wmctrl"_s, { u"-ic"_s, windowsOf(windowClass).value(0) });
            QTRY_VERIFY_WITH_TIMEOUT(windowsOf(windowClass).isEmpty(), patience);
        }
    }

private:
    bool isActive() const { return _runner->status()[u"active"_s].toBool(); }
    void tell(const QString &verb) const { QCOMPARE(_runner->run({ verb }).exitCode, 0); }
    // Shown and with the keyboard.
    void start()
    {
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(_ortu.waitForStarted() && isActive(), patience);
    }

    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(PanelTest)
#include "PanelTest.moc"
