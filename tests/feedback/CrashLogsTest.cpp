#include "feedback/CrashLogs.h"

#include "TestCase.h"
#include "platform/FileTree.h"

#include <QTimeZone>

class CrashLogsTest : public TestCase
{
    Q_OBJECT

    // A log of that age, in seconds after some date.
    QString addLog(const QString &name, int time = 0, const QByteArray &content = "log")
    {
        QString path = _tree->add(name, content);
        QFile file(path);
        if (!file.open(QIODevice::ReadWrite)
            || !file.setFileTime(_date.addSecs(time), QFile::FileModificationTime)) {
            qFatal("cannot date a file");
        }
        return path;
    }
    QStringList namesSince(const QDateTime &date) const
    {
        QStringList names;
        const CrashLogs logs({ _tree->path(u"user"_s), _tree->path(u"local"_s) }, u"Ortu"_s);
        for (const QString &path : logs.crashLogsSince(date)) {
            names.append(path.section(u'/', -1).section(u'.', 0, 0));
        }
        return names;
    }

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _tree = std::make_unique<FileTree>();
    }

    void logs_areFoundByNameAndDate_inOrder()
    {
        QVERIFY(namesSince({}).isEmpty());
        addLog(u"local/Logs/HangReporter/Ortu/h.hang"_s);
        addLog(u"local/Logs/CrashReporter/Ortu_5.crash"_s, 1);
        addLog(u"user/Logs/HangReporter/Ortu/any.hang"_s);
        addLog(u"user/Logs/CrashReporter/Ortu_3.crash"_s);
        addLog(u"user/Logs/CrashReporter/Ortu_1.crash"_s, -1);
        addLog(u"user/Logs/CrashReporter/Ortu/Ortu_2.crash"_s);
        for (const char *other : { "CrashReporter/Ortu.crash", "CrashReporter/ortu_1.crash",
                 "CrashReporter/Ortu_1.crash.gz", "CrashReporter/Ortus_1.crash",
                 "CrashReporter/Ortu_1.hang", "HangReporter/Ortu/.hang", "HangReporter/a.hang" }) {
            addLog(u"user/Logs/"_s + QLatin1String(other));
        }
        _tree->addPipe(u"user/Logs/CrashReporter/Ortu_pipe.crash"_s);
        _tree->addLink(u"user/Logs/CrashReporter/Ortu_gone.crash"_s, u"/nonexistent"_s);
        _tree->addLink(u"user/Logs/CrashReporter/Ortu/loop"_s, _tree->path(u"user/Logs"_s));
        QCOMPARE(namesSince({}).join(u' '), u"Ortu_2 Ortu_1 Ortu_3 any Ortu_5 h"_s);
        QCOMPARE(namesSince(_date).join(u' '), u"Ortu_2 Ortu_3 any Ortu_5 h"_s);
        QCOMPARE(namesSince(_date.addMSecs(1)).join(u' '), u"Ortu_5"_s);
    }

    void withoutDateOrFile_everythingIsNewer()
    {
        const QString path = addLog(u"a"_s);
        QCOMPARE(CrashLogs::modificationTimeOfFile(path), _date);
        QVERIFY(CrashLogs::modificationTimeOfFile(u"/nonexistent"_s).isNull());
        QVERIFY(CrashLogs::fileIsNewerThan(path, {}));
        QVERIFY(CrashLogs::fileIsNewerThan(path, _date));
        QVERIFY(!CrashLogs::fileIsNewerThan(path, _date.addMSecs(1)));
        QVERIFY(CrashLogs::fileIsNewerThan(u"/nonexistent"_s, _date));
    }

    void theNewestIsRead_ofEqualOnesTheLast()
    {
        const QString older = addLog(u"1"_s, -1, "older");
        const QString first = addLog(u"2"_s, 0, "first");
        const QString second = addLog(u"3"_s, 0, "z\u00fcrich");
        const auto latest = CrashLogs::latestCrashLogContents;
        QCOMPARE(latest({ first, second, older }), u"zürich"_s);
        QCOMPARE(latest({ second, first }), u"first"_s);
        expectWarning(u"^logs != nil && \\[logs count\\] > 0$"_s);
        QVERIFY(latest({}).isNull());
    }

    void whatIsNoText_isNull_andLongLogsAreCut()
    {
        const auto latest = [](const QString &path) {
            return CrashLogs::latestCrashLogContents({ path });
        };
        const QString empty = latest(addLog(u"empty"_s, 0, {}));
        QVERIFY(empty.isEmpty() && !empty.isNull());
        for (const char *bytes : { "\xff", "a\xc3", "\xed\xa0\x80" }) {
            QVERIFY(latest(addLog(u"bytes"_s, 0, bytes)).isNull());
        }
        QVERIFY(latest(u"/nonexistent"_s).isNull());
        QVERIFY(latest(_tree->addPipe(u"pipe"_s)).isNull());
        QVERIFY(latest(_tree->path()).isNull());
        // The limit cuts a character in two.
        QFile file(addLog(u"long"_s, 0, 'a' + QByteArray("\u00fc").repeated(600'000)));
        QVERIFY(file.resize(200'000'000));
        const QString text = latest(file.fileName());
        QVERIFY(text.startsWith(u"aü"_s) && text.size() < 600'000);
        QVERIFY(text.contains(u"ü\n\n(Cut off here: the log has 200000000 bytes.)"_s));
    }

private:
    const QDateTime _date = QDateTime(QDate(2024, 3, 31), QTime(1, 30), QTimeZone::utc());
    std::unique_ptr<FileTree> _tree;
};

QTEST_GUILESS_MAIN(CrashLogsTest)
#include "CrashLogsTest.moc"
