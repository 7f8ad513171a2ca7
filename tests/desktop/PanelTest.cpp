// The panel of the real program on a real display: when it comes and goes, by keys, mouse, other
// windows and other starts.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"

#include <QRect>

#include <cstdio>

namespace {

constexpr QRect screen(0, 0, 1280, 800);
constexpr QRect smallScreen(0, 0, 1000, 700);

// Of those that are shown, in no order.
QStringList windowsBy(const QString &pattern)
{
    return xdotool(u"search --onlyvisible "_s + pattern).split(u'\n', Qt::SkipEmptyParts);
}

// Below its alerts, which have the same name.
QString panel()
{
    return windowsBy(u"--name ^Ortu$"_s).value(0);
}

int windowCount()
{
    return int(windowsBy(u"--class ^ortu$"_s).size());
}

QRect panelFrame()
{
    const QString text = xdotool(u"getwindowgeometry --shell "_s + panel());
    const auto value = [&text](const QString &name) {
        return text.section(u'\n' + name + u'=', 1).section(u'\n', 0, 0).toInt();
    };
    return { value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s) };
}

bool isCentredOn(const QRect &place)
{
    const QRect frame = panelFrame();
    return frame.isValid() && (frame.center() - place.center()).manhattanLength() <= 2;
}

void click(int button, const QPoint &onPanel)
{
    xdotool(u"mousemove --window %1 %2 %3 click %4"_s.arg(panel())
                .arg(onPanel.x())
                .arg(onPanel.y())
                .arg(button));
}

} // namespace

class PanelTest : public TestCase
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
        QTRY_COMPARE(windowCount(), 0);
    }

    void theMenuIsThere_andQuits()
    {
        start();
        const QPoint betweenIcons(18 + 3, 30 + 3);
        for (const QPoint &place : { onMargin(), betweenIcons }) {
            click(3, place);
            QTRY_COMPARE(windowCount(), 2);
            xdotool(u"key Escape"_s);
            QTRY_COMPARE(windowCount(), 1);
            QVERIFY(is(u"active"_s));
        }
        click(1, { panelFrame().width() - 23, 18 });
        QTRY_COMPARE(windowCount(), 2);
        xdotool(u"key Up Return"_s);
        QTRY_COMPARE(_ortu.state(), QProcess::NotRunning);
        QVERIFY(_ortu.exitStatus() == QProcess::NormalExit && _ortu.exitCode() == 0);
        QCOMPARE(_runner->run({ u"--hide"_s }).exitCode, 1);
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

    void thePreferencesFileMayDoAnything()
    {
        start();
        const QString name = u"config/Ortu/Preferences.plist"_s;
        const QString path = _runner->path(name);
        QByteArray later = _runner->read(name);
        QVERIFY(!later.isEmpty());
        const auto isUsable = [&] {
            tell(u"--hide"_s);
            const bool isHidden = QTest::qWaitFor([this] { return !is(u"visible"_s); });
            tell(u"--show"_s);
            return isHidden && QTest::qWaitFor([this] { return is(u"active"_s); });
        };
        _runner->write(name, "rubbish");
        QVERIFY(isUsable() && QFile::remove(path));
        QVERIFY(isUsable());
        QFile::remove(path);
        QVERIFY(QDir().mkpath(path + u"/inside"_s) && isUsable());
        QVERIFY(QDir(path).removeRecursively());
        // Replaced as a whole, by something of a later version among other things.
        later.replace("</dict>",
            "<key>groupToShowWhenWindowOpens</key><integer>6</integer>"
            "<key>windowAlpha</key><string>much</string><key>later</key><array/></dict>");
        _runner->write(name + u".new"_s, later);
        QCOMPARE(std::rename(qPrintable(path + u".new"_s), qPrintable(path)), 0);
        const auto showsGroup6 = [&] {
            return isUsable() && _runner->status()[u"group"_s].toInt() == 6;
        };
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
        click(3, onMargin());
        QTRY_COMPARE(windowCount(), 2);
        xdotool(u"key Escape"_s);
        QTRY_COMPARE(windowCount(), 1);
        xdotool(u"key ctrl+w"_s);
        QTRY_VERIFY(panel().isEmpty());
        _ortu.terminate();
        QVERIFY(_ortu.waitForFinished());
        QCOMPARE(lineCount(), 1);
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
        QTRY_VERIFY(is(u"active"_s));
        QCOMPARE(windowCount(), 1);
        QCOMPARE(ended.readAllStandardError(), QByteArray());
        // By the verb, after which another start finds the name and the hot key free.
        for (int round = 0; round < 5; ++round) {
            tell(u"--quit"_s);
            QTRY_COMPARE(running(), 0);
            start();
            QVERIFY(!_runner->status().contains(u"hotKeyProblem"_s));
        }
    }

private:
    bool is(const QString &state) const { return _runner->status()[state].toBool(); }
    void tell(const QString &verb) const { QCOMPARE(_runner->run({ verb }).exitCode, 0); }
    // Shown and with the keyboard.
    void start()
    {
        _runner->start(_ortu, {});
        QTRY_VERIFY_WITH_TIMEOUT(_ortu.waitForStarted() && is(u"active"_s), patience);
    }
    static QPoint onMargin() { return { panelFrame().width() / 2, 8 }; }

    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(PanelTest)
#include "PanelTest.moc"
