#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopDesktop.h"

#include <QDBusConnection>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <memory>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

// Stands for an application on the bus.
class BusApplication : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public Q_SLOTS:
    void ActivateAction(
        const QString &action, const QVariantList &parameters, const QVariantMap & /*platformData*/)
    {
        _asked += action + QString::number(parameters.size());
    }

public:
    QStringList _asked;
};

static const QByteArray start = "[Desktop Entry]\nType=Application\nName=A\n";

class FreedesktopActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("LANGUAGE", "de");
        qputenv("LC_ALL", "C.UTF-8");
        _program = QFile::encodeName(_tree.add(u"record"_s,
            "#!/bin/sh\n"
            "out=$(dirname \"$0\")/record.txt\n"
            "{ pwd; cut -d' ' -f6 /proc/$$/stat; echo \"$GIO_LAUNCHED_DESKTOP_FILE\";\n"
            "for a in \"$@\"; do printf '%s\\n' \"$a\"; done; } >\"$out.part\"\n"
            "mv \"$out.part\" \"$out\"\n",
            0755));
        _bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        QVERIFY(_bus.waitForStarted());
        QVERIFY(_bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.readLine().trimmed());
        _desktop = makeFreedesktopDesktop();
    }
    void cleanupTestCase()
    {
        _desktop.reset();
        QDBusConnection::disconnectFromBus(u"qt_default_session_bus"_s);
        _bus.terminate();
        QVERIFY(_bus.waitForFinished());
    }
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void actions_areListed()
    {
        const QByteArray window = "[Desktop Action window]\nName=New Window\nExec=true\n";
        const QByteArray quiet = "[Desktop Action quiet]\nName=Quiet\nName[de]=Still\n"
                                 "Name[fr]=Privé\nExec=true\n";
        const QByteArray bare = "[Desktop Action bare]\nName=Bare\n";
        const QByteArray inLines = "[Desktop Action a]\nName=\\tTwo\\n  & lines\nExec=true\n";
        const std::pair<QByteArray, QString> rows[] { { "Exec=true\n" + window, {} },
            { "Exec=true\nActions=quiet;absent;window;\n" + window + quiet,
                u"quiet=Still, window=New Window"_s },
            { "Exec=true\nActions=a\n" + inLines, u"a=Two & lines"_s },
            { "DBusActivatable=true\nActions=window\n" + window, u"window=New Window"_s },
            { "Exec=true\nActions=bare;window\n" + bare + window, u"window=New Window"_s },
            { "DBusActivatable=true\nActions=bare\n" + bare, u"bare=Bare"_s },
            { "Exec=/nowhere/program\nActions=window\n" + window, {} } };
        for (const auto &[keys, expected] : rows) {
            QCOMPARE(listed(_tree.add(u"a.desktop"_s, start + keys)), expected);
            QCOMPARE(listed(_tree.add(u"b.desktop"_s, "\xef\xbb\xbf" + start + keys)), expected);
            QCOMPARE(listed(_tree.add(u"a.AppImage"_s, start + keys, 0755)), QString());
        }
        QCOMPARE(listed(_tree.path(u"absent.desktop"_s)), QString());
    }

    // Also with the bus asked first, which knows no such service.
    void perform_startsTheProgramOfTheAction()
    {
        const QString folder = _tree.addFolder(u"my folder"_s);
        for (const char *key : { "", "DBusActivatable=true\n" }) {
            const QString entry = _tree.add(u"org.example.Absent.desktop"_s,
                start + key + "Exec=false %U\nActions=window;\nPath=" + QFile::encodeName(folder)
                    + "\n[Desktop Action window]\nName=New\nExec=" + _program
                    + " --new \"a \\\\$b\" %u\n");
            QVERIFY(perform(entry, u"window"_s));
            const QStringList lines = recorded();
            QCOMPARE(lines.value(0), folder);
            QVERIFY(lines.value(1).toInt() > 0 && lines.value(1).toInt() != ::getsid(0));
            QCOMPARE(lines.mid(2), QStringList({ entry, u"--new"_s, u"a $b"_s }));
        }
    }

    void perform_asksTheBus()
    {
        BusApplication application;
        const QString name = u"org.example.Two-Words"_s;
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerObject(
            u"/org/example/Two_Words"_s, &application, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(name));
        const bool isPerformed =
            perform(_tree.add(name + u".desktop"_s,
                        start
                            + "DBusActivatable=true\nExec=false\nActions=quiet;\n"
                              "[Desktop Action quiet]\nName=Q\nExec=false\n"),
                u"quiet"_s);
        QVERIFY(bus.unregisterService(name));
        QVERIFY(isPerformed);
        QCOMPARE(application._asked, QStringList { u"quiet0"_s });
    }

    void perform_inVain_saysWhy()
    {
        const QString entry = _tree.add(u"c.desktop"_s,
            start
                + "Exec=true\nActions=lost;mute;\n"
                  "[Desktop Action lost]\nName=L\nExec=/nowhere/program\n"
                  "[Desktop Action mute]\nName=M\n[Desktop Action unlisted]\nName=U\nExec=true\n");
        const auto expect = [](const QString &path, const char *id, const char *reason) {
            QTest::ignoreMessage(QtWarningMsg,
                qUtf8Printable(u"cannot perform %1 of %2: %3"_s.arg(
                    QLatin1String(id), path, QLatin1String(reason))));
        };
        expect(entry, "lost", "its program is not there");
        QVERIFY(!perform(entry, u"lost"_s));
        expect(entry, "mute", "there is no such action");
        QVERIFY(!perform(entry, u"mute"_s));
        expect(entry, "unlisted", "there is no such action");
        QVERIFY(!perform(entry, u"unlisted"_s));
        QFile::remove(entry);
        expect(entry, "lost", "there is no such action");
        QVERIFY(!perform(entry, u"lost"_s));
    }

private:
    // Each as "id=title".
    QString listed(const QString &path) const
    {
        QStringList listed;
        const auto actions = _desktop->applicationActions().actionsOf(path);
        for (const ApplicationActions::Action &action : actions) {
            listed += action.id + u'=' + action.title;
        }
        return listed.join(u", "_s);
    }
    // In a thread of its own, as the program does, with the event loop running here.
    bool perform(const QString &path, const QString &id)
    {
        bool isPerformed = false;
        const std::unique_ptr<QThread> thread(QThread::create(
            [&] { isPerformed = _desktop->applicationActions().perform(path, id); }));
        thread->start();
        const bool isFinished = QTest::qWaitFor([&thread] { return thread->isFinished(); }, 30'000);
        return thread->wait() && isFinished && isPerformed;
    }
    // What the program that was started last wrote: its folder, session and entry, and then its
    // arguments.
    QStringList recorded()
    {
        QFile file(_tree.path(u"record.txt"_s));
        if (!QTest::qWaitFor([&file] { return file.exists(); }, 10'000)
            || !file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QString text = QString::fromUtf8(file.readAll());
        file.remove();
        return text.split(u'\n', Qt::SkipEmptyParts);
    }

    FileTree _tree { u"actions"_s };
    QProcess _bus;
    QByteArray _program;
    std::unique_ptr<Desktop> _desktop;
};

QTEST_GUILESS_MAIN(FreedesktopActionsTest)
#include "FreedesktopActionsTest.moc"
