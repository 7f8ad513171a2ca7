// The panel of the real program on a real display: when it comes and goes, by keys, mouse, other
// windows and other starts.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QRect>

namespace {

constexpr QRect screen(0, 0, 1280, 800);

// Of those that are shown, in no order.
QStringList windowsBy(const QString &pattern)
{
    return xdotool(u"search --onlyvisible "_s + pattern).split(u'\n', Qt::SkipEmptyParts);
}

QStringList ownWindows()
{
    return windowsBy(u"--class ^ortu$"_s);
}

QString frontWindow()
{
    return xdotool(u"getactivewindow"_s);
}

QRect frameOf(const QString &window)
{
    const QString text = xdotool(u"getwindowgeometry --shell "_s + window);
    const auto value = [&text](const QString &name) {
        return text.section(u'\n' + name + u'=', 1).section(u'\n', 0, 0).toInt();
    };
    return { value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s) };
}

bool isCentred(const QRect &frame, const QRect &place)
{
    const QPoint way = frame.center() - place.center();
    return frame.isValid() && qAbs(way.x()) <= 1 && qAbs(way.y()) <= 1;
}

} // namespace

class PanelTest : public QObject
{
    Q_OBJECT

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
            _ortu.terminate();
            _ortu.waitForFinished();
        }
        QTRY_VERIFY(ownWindows().isEmpty());
    }

    void aStartShowsIt_aToggleGivesTheFocusBack()
    {
        const OtherProcess terminal(u"xterm"_s, { u"-T"_s, u"Terminal"_s });
        const auto isInFront = [] {
            const QString window = windowsBy(u"--name ^Terminal$"_s).value(0);
            return !window.isEmpty() && frontWindow() == window;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isInFront(), patience);
        start();
        QCOMPARE(frontWindow(), panel());
        QVERIFY(isCentred(frameOf(panel()), screen));
        tell(u"--toggle"_s);
        QTRY_VERIFY(!isVisible());
        QTRY_VERIFY(isInFront());
        QTRY_VERIFY(panel().isEmpty());
        tell(u"--toggle"_s);
        QTRY_VERIFY(isActive());
        QTRY_COMPARE(frontWindow(), panel());
        QVERIFY(isCentred(frameOf(panel()), screen));
        // What fades out comes back.
        tell(u"--toggle"_s);
        tell(u"--toggle"_s);
        QTRY_VERIFY(isActive());
        QTRY_COMPARE(frontWindow(), panel());
    }

    void theMenuIsThere_andQuits()
    {
        start();
        const auto closesByEscape = [this] {
            if (!QTest::qWaitFor([] { return ownWindows().size() == 2; })) {
                return false;
            }
            press(u"Escape"_s);
            return QTest::qWaitFor([] { return ownWindows().size() == 1; }) && isVisible();
        };
        pointAt(onMargin());
        xdotool(u"click 3"_s);
        QVERIFY(closesByEscape());
        // Between the icons.
        pointAt({ 18 + 3, 30 + 3 });
        xdotool(u"click 3"_s);
        QVERIFY(closesByEscape() && isActive());

        pointAt({ frameOf(panel()).width() - 23, 18 });
        xdotool(u"click 1"_s);
        QTRY_COMPARE(ownWindows().size(), 2);
        press(u"Up"_s);
        press(u"Return"_s);
        QTRY_COMPARE(_ortu.state(), QProcess::NotRunning);
        QCOMPARE(_ortu.exitStatus(), QProcess::NormalExit);
        QCOMPARE(_ortu.exitCode(), 0);
        QCOMPARE(_runner->run({ u"--hide"_s }).exitCode, 1);
    }

    void anotherScreenSizeCentresIt()
    {
        start();
        const auto xrandr = [](const QString &arguments) {
            outputOf(u"xrandr"_s, arguments.split(u' '));
        };
        xrandr(u"--newmode small 0 1000 0 0 0 700 0 0 0"_s);
        xrandr(u"--addmode screen small"_s);
        xrandr(u"--output screen --mode small"_s);
        QTRY_VERIFY(isCentred(frameOf(panel()), { 0, 0, 1000, 700 }));
        QVERIFY(isVisible());
        xrandr(u"--output screen --mode 1280x800"_s);
        QTRY_VERIFY(isCentred(frameOf(panel()), screen));
        // Hidden meanwhile, it comes up where it belongs.
        tell(u"--hide"_s);
        QTRY_VERIFY(panel().isEmpty());
        xrandr(u"--output screen --mode small"_s);
        show();
        QTRY_VERIFY(isCentred(frameOf(panel()), { 0, 0, 1000, 700 }));
        xrandr(u"--output screen --mode 1280x800"_s);
        QTRY_VERIFY(isCentred(frameOf(panel()), screen));
    }

    void thePreferencesFileMayDoAnything()
    {
        start();
        const QString name = u"config/Ortu/Preferences.plist"_s;
        const QString path = _runner->path(name);
        const QByteArray good = _runner->read(name);
        QVERIFY(!good.isEmpty());
        const auto isUsable = [&] {
            tell(u"--hide"_s);
            const bool isHidden = QTest::qWaitFor([this] { return !isVisible(); });
            tell(u"--show"_s);
            return isHidden && QTest::qWaitFor([this] { return isActive(); });
        };

        _runner->write(name, "rubbish");
        QVERIFY(isUsable() && QFile::remove(path));
        QVERIFY(isUsable());
        QFile::remove(path);
        QVERIFY(QDir().mkpath(path + u"/inside"_s) && isUsable());
        QVERIFY(QDir(path).removeRecursively());
        // Replaced as a whole, by something of a later version among other things.
        QByteArray later = good;
        later.replace("</dict>",
            "<key>groupToShowWhenWindowOpens</key><integer>6</integer>"
            "<key>windowAlpha</key><string>much</string><key>later</key><array/></dict>");
        _runner->write(name + u".new"_s, later);
        QCOMPARE(::rename(QFile::encodeName(path + u".new"_s).constData(),
                     QFile::encodeName(path).constData()),
            0);
        const auto showsGroup6 = [&] { return isUsable() && status()[u"group"_s].toInt() == 6; };
        QTRY_VERIFY(showsGroup6());
        QCOMPARE(_ortu.state(), QProcess::Running);
    }

    void aBusThatGoesIsNotNeeded()
    {
        OtherProcess bus(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        bus.waitForReadyRead();
        _runner->set("DBUS_SESSION_BUS_ADDRESS", QString::fromUtf8(bus.readLine()).trimmed());
        start();
        bus.kill();
        QByteArray log;
        const auto lineCount = [&] {
            log += _ortu.readAllStandardError();
            return log.count("session bus");
        };
        QTRY_COMPARE(lineCount(), 1);
        pointAt(onMargin());
        xdotool(u"click 3"_s);
        QTRY_COMPARE(ownWindows().size(), 2);
        press(u"Escape"_s);
        QTRY_COMPARE(ownWindows().size(), 1);
        press(u"ctrl+w"_s);
        QTRY_VERIFY(panel().isEmpty());
        _ortu.terminate();
        QVERIFY(_ortu.waitForFinished());
        QCOMPARE(lineCount(), 1);
    }

    void withoutABusItComesUpAllTheSame()
    {
        _runner->set("DBUS_SESSION_BUS_ADDRESS", u"unix:path=/nonexistent/bus"_s);
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(!panel().isEmpty() && frontWindow() == panel(), patience);
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
        QCOMPARE(ended.exitStatus(), QProcess::NormalExit);
        QCOMPARE(ended.exitCode(), 0);
        QTRY_VERIFY(isActive());
        QCOMPARE(ownWindows().size(), 1);
        QCOMPARE(ended.readAllStandardError(), QByteArray());
        // By the verb, after which another start finds the name and the hot key free.
        for (int round = 0; round < 5; ++round) {
            tell(u"--quit"_s);
            QTRY_COMPARE(running(), 0);
            start();
            QVERIFY(!status().contains(u"hotKeyProblem"_s));
        }
    }

private:
    QJsonObject status() const
    {
        return _runner->run({ u"--status"_s, u"--json"_s }).json().object();
    }
    bool isVisible() const { return status()[u"visible"_s].toBool(); }
    bool isActive() const { return status()[u"active"_s].toBool(); }
    void tell(const QString &verb) const { QCOMPARE(_runner->run({ verb }).exitCode, 0); }
    // Below its alerts, which have the same name.
    static QString panel() { return windowsBy(u"--name ^Ortu$"_s).value(0); }

    // Shown and with the keyboard.
    void start()
    {
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(_ortu.waitForStarted() && isActive(), patience);
    }
    void show() const
    {
        tell(u"--show"_s);
        QTRY_VERIFY_WITH_TIMEOUT(isActive(), patience);
    }
    static void press(const QString &keys) { xdotool(u"key "_s + keys); }
    static void pointAt(const QPoint &onPanel)
    {
        xdotool(u"mousemove --window %1 %2 %3"_s.arg(panel()).arg(onPanel.x()).arg(onPanel.y()));
    }
    static QPoint onMargin() { return { frameOf(panel()).width() / 2, 8 }; }

    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(PanelTest)
#include "PanelTest.moc"
