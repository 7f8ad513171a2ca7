// Real applications of the system, launched from the real program on a real display.

#include "desktop/ProgramRunner.h"
#include "desktop/Programs.h"
#include "platform/FileTree.h"

#include <QJsonObject>

class LaunchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _runner = std::make_unique<ProgramRunner>();
        // What runs in a terminal runs in the first one that is found.
        _runner->set("PATH",
            _programs.addPrograms(u"bin"_s, { u"xterm"_s, u"mousepad"_s, u"htop"_s, u"baobab"_s }));
        _runner->scanOnlyOwnApplications();
        for (const char *id : { "debian-xterm", "org.xfce.mousepad", "htop", "org.gnome.baobab" }) {
            const QString name = QLatin1String(id) + u".desktop"_s;
            QVERIFY(QFile::link(
                u"/usr/share/applications/"_s + name, _runner->path(u"apps/"_s + name)));
        }
        _runner->start(_ortu, {});
        const auto isActive = [this] {
            return _runner->run({ u"--status"_s, u"--json"_s }).json()[u"active"_s].toBool();
        };
        QTRY_VERIFY_WITH_TIMEOUT(isActive(), patience);
    }
    void cleanup()
    {
        _ortu.terminate();
        _ortu.waitForFinished();
        QTRY_VERIFY(windowsOf(u"ortu"_s).isEmpty());
    }

    void returnLaunchesTheSelectedApplication_data()
    {
        QTest::addColumn<QString>("windowClass");
        QTest::addColumn<QString>("process");
        QTest::newRow("xterm") << u"xterm"_s << u"xterm"_s;
        QTest::newRow("mousepad") << u"mousepad"_s << u"mousepad"_s;
        // In a terminal.
        QTest::newRow("htop") << u"xterm"_s << u"htop"_s;
        // By the session bus; its name is another one.
        QTest::newRow("disk usage") << u"baobab"_s << u"baobab"_s;
    }
    void returnLaunchesTheSelectedApplication()
    {
        QFETCH(const QString, windowClass);
        QFETCH(const QString, process);
        launch(QString::fromLatin1(QTest::currentDataTag()));
        QTRY_VERIFY_WITH_TIMEOUT(!windowsOf(windowClass).isEmpty(), patience);
        QTRY_VERIFY(isRunning(process));
        // It outlives the program.
        _ortu.kill();
        QVERIFY(_ortu.waitForFinished());
        QTRY_VERIFY(windowsOf(u"ortu"_s).isEmpty());
        QVERIFY(isRunning(process) && windowsOf(windowClass).size() == 1);
        outputOf(u"wmctrl"_s, { u"-ic"_s, windowsOf(windowClass).value(0) });
        QTRY_VERIFY_WITH_TIMEOUT(windowsOf(windowClass).isEmpty(), patience);
    }

private:
    void launch(const QString &name) const
    {
        outputOf(u"xdotool"_s, { u"type"_s, name });
        const auto filter = [this] {
            return _runner->run({ u"--status"_s, u"--json"_s }).json()[u"filter"_s].toString();
        };
        QTRY_COMPARE(filter(), name);
        xdotool(u"key Home Return"_s);
    }
    static bool isRunning(const QString &process)
    {
        return !outputOf(u"pgrep"_s, { u"-x"_s, process }).isEmpty();
    }

    FileTree _programs;
    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
};

QTEST_GUILESS_MAIN(LaunchTest)
#include "LaunchTest.moc"
