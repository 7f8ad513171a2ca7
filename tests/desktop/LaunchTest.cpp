// Real applications of the system, launched from the real program on a real display.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"
#include "platform/FileTree.h"

class LaunchTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void returnLaunchesTheSelectedApplication()
    {
        // What runs in a terminal runs in the first one that is found.
        _runner.set("PATH",
            _programs.addPrograms(u"bin"_s, { u"xterm"_s, u"mousepad"_s, u"htop"_s, u"baobab"_s }));
        _runner.scanOnlyOwnApplications();
        for (const char *id : { "debian-xterm", "org.xfce.mousepad", "htop", "org.gnome.baobab" }) {
            const QString name = QLatin1String(id) + u".desktop"_s;
            QVERIFY(
                QFile::link(u"/usr/share/applications/"_s + name, _runner.path(u"apps/"_s + name)));
        }
        // The last two: in a terminal, and by the session bus with another name.
        const std::tuple<QString, QString, QString> rows[] { { u"xterm"_s, u"xterm"_s, u"xterm"_s },
            { u"mousepad"_s, u"mousepad"_s, u"mousepad"_s }, { u"htop"_s, u"xterm"_s, u"htop"_s },
            { u"disk usage"_s, u"baobab"_s, u"baobab"_s } };
        for (const auto &[name, windowClass, process] : rows) {
            QProcess ortu;
            _runner.start(ortu, {});
            QTRY_VERIFY_WITH_TIMEOUT(_runner.status()[u"active"_s].toBool(), patience);
            outputOf(u"xdotool"_s, { u"type"_s, name });
            QTRY_COMPARE(_runner.status()[u"filter"_s].toString(), name);
            xdotool(u"key Home Return"_s);
            QTRY_VERIFY_WITH_TIMEOUT(!windowsOf(windowClass).isEmpty(), patience);
            QTRY_VERIFY(isRunning(process));
            // It outlives the program.
            ortu.kill();
            QVERIFY(ortu.waitForFinished());
            QTRY_VERIFY(windowsOf(u"ortu"_s).isEmpty());
            QVERIFY(isRunning(process) && windowsOf(windowClass).size() == 1);
            outputOf(u"wmctrl"_s, { u"-ic"_s, windowsOf(windowClass).value(0) });
            QTRY_VERIFY_WITH_TIMEOUT(windowsOf(windowClass).isEmpty(), patience);
        }
    }

private:
    static bool isRunning(const QString &process)
    {
        return !outputOf(u"pgrep"_s, { u"-x"_s, process }).isEmpty();
    }

    FileTree _programs;
    ProgramRunner _runner;
};

QTEST_GUILESS_MAIN(LaunchTest)
#include "LaunchTest.moc"
