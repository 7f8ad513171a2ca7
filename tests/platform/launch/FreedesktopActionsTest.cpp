#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/launch/LaunchSession.h"

#include <unistd.h>

class FreedesktopActionsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("LANGUAGE", "de");
        qputenv("LC_ALL", "C.UTF-8");
        _desktop = makeFreedesktopDesktop();
    }

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
        for (const auto &[lines, expected] : rows) {
            const QString entry = _session.addEntry(u"a.desktop"_s, lines);
            QCOMPARE(listed(entry), expected);
            QCOMPARE(
                listed(_session.tree.add(u"b.desktop"_s, "\xef\xbb\xbf" + load(entry))), expected);
            QCOMPARE(listed(_session.tree.add(u"a.AppImage"_s, load(entry), 0755)), QString());
        }
        QCOMPARE(listed(u"/absent.desktop"_s), QString());
    }

    // Also with the bus asked first, which knows no such service.
    void perform_startsTheProgramOfTheAction()
    {
        const QByteArray folder = QFile::encodeName(_session.tree.addFolder(u"my folder"_s));
        for (const char *key : { "", "DBusActivatable=true\n" }) {
            const QString entry = _session.addEntry(u"org.example.Absent.desktop"_s,
                key + QByteArray("Exec=false %U\nActions=window;\nPath=") + folder
                    + "\n[Desktop Action window]\nName=New\n" + _session.exec
                    + " --new \"a \\\\$b\" %u\n");
            QVERIFY(perform(entry, u"window"_s));
            const StartRecord record = _session.started(1).value(0);
            QCOMPARE(record["folder"], folder);
            QVERIFY(record["session"].toInt() > 0 && record["session"].toInt() != ::getsid(0));
            QCOMPARE(record["entry"], QFile::encodeName(entry));
            QCOMPARE(record["arguments"], QByteArray("--new|a $b"));
        }
    }

    void perform_asksTheBus()
    {
        Peer application;
        _session.add(application, u"org.example.Two-Words"_s, u"/org/example/Two_Words"_s);
        QVERIFY(perform(_session.addEntry(u"org.example.Two-Words.desktop"_s,
                            "DBusActivatable=true\nExec=false\nActions=quiet;\n"
                            "[Desktop Action quiet]\nName=Q\nExec=false\n"),
            u"quiet"_s));
        QCOMPARE(application.asked.size(), 1);
        QCOMPARE(application.asked[0].member(), u"ActivateAction"_s);
        QCOMPARE(application.asked[0].arguments().value(0).toString(), u"quiet"_s);
        QCOMPARE(application.asked[0].signature(), u"sava{sv}"_s);
    }

    void performThatFails_saysWhy()
    {
        const QString entry = _session.addEntry(u"c.desktop"_s,
            "Exec=true\nActions=lost;mute;\n[Desktop Action lost]\nName=L\nExec=/nowhere/program\n"
            "[Desktop Action mute]\nName=M\n[Desktop Action unlisted]\nName=U\nExec=true\n");
        const auto failsWith = [&](const QString &id, const QString &reason) {
            expectWarning(u"^cannot perform %1 of %2: %3$"_s.arg(id, entry, reason));
            QVERIFY(!perform(entry, id));
        };
        failsWith(u"lost"_s, u"its program is not there"_s);
        failsWith(u"mute"_s, u"there is no such action"_s);
        failsWith(u"unlisted"_s, u"there is no such action"_s);
        QFile::remove(entry);
        failsWith(u"lost"_s, u"there is no such action"_s);
    }

private:
    // Each as "id=title".
    QString listed(const QString &path) const
    {
        QStringList listed;
        for (const auto &action : _desktop->applicationActions().actionsOf(path)) {
            listed += action.id + u'=' + action.title;
        }
        return listed.join(u", "_s);
    }
    bool perform(const QString &path, const QString &id)
    {
        return LaunchSession::runOnThreads(
            1, [&](int) { return _desktop->applicationActions().perform(path, id); });
    }

    LaunchSession _session;
    std::unique_ptr<Desktop> _desktop;
};

QTEST_GUILESS_MAIN(FreedesktopActionsTest)
#include "FreedesktopActionsTest.moc"
