// Crashes of another program, and what they leave.

#include "TestCase.h"
#include "platform/FileTree.h"

#include <QDateTime>
#include <QProcess>
#include <QTimeZone>

#include <csignal>

class CrashReporterTest : public TestCase
{
    Q_OBJECT

    // The signal that ended the program; 0 when none did.
    int crash(const QStringList &arguments) const
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_STATE_HOME"_s, _home->path(u"missing/state"_s));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(CRASHER), arguments);
        process.waitForFinished();
        return process.exitStatus() == QProcess::CrashExit ? process.exitCode() : 0;
    }

    QFileInfoList logs() const
    {
        return QDir(_home->path(_folder)).entryInfoList(QDir::Files | QDir::Hidden);
    }
    QString log() const
    {
        const QFileInfoList files = logs();
        return files.size() == 1 ? QString::fromUtf8(load(files[0].filePath())) : QString();
    }

    // The functions and lines of the stack, as a developer gets them.
    static QString resolvedStack(const QString &log)
    {
        const QRegularExpression call(u"^ *\\d+  0x[0-9a-f]+  (/\\S+Crasher) (0x[0-9a-f]+)$"_s,
            QRegularExpression::MultilineOption);
        QStringList arguments;
        for (const QRegularExpressionMatch &match : call.globalMatch(log)) {
            if (arguments.isEmpty()) {
                arguments = { u"-Cfie"_s, match.captured(1) };
            }
            arguments.append(match.captured(2));
        }
        QProcess process;
        process.start(u"addr2line"_s, arguments);
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _home = std::make_unique<FileTree>();
    }

    void crashes_leaveALogAndTheirSignal_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("function");
        QTest::newRow("null") << SIGSEGV << u"(SEGV_MAPERR)\nFault address: 0x0000000000000000\n"_s
                              << u"writeToNull"_s;
        QTest::newRow("call") << SIGSEGV << u"Instruction: 0x0000000000000000  ?"_s
                              << u"callNull"_s;
        QTest::newRow("overflow") << SIGSEGV << u" more)\n"_s << u"main"_s;
        QTest::newRow("smash") << SIGSEGV << u"(SIGSEGV: the stack cannot be followed"_s
                               << u"smashStack"_s;
        QTest::newRow("file") << SIGBUS << u"(BUS_ADRERR)"_s << u"readBeyondFile"_s;
        QTest::newRow("twice") << SIGSEGV << u"SIGSEGV"_s << u"writeToNull"_s;
        QTest::newRow("terminate") << SIGABRT << u"(SI_TKILL)"_s << u"main"_s;
        QTest::newRow("trap") << SIGILL << u"(ILL_ILLOPN)"_s << u"main"_s;
    }
    void crashes_leaveALogAndTheirSignal()
    {
        QFETCH(int, signal);
        QFETCH(QString, text);
        QFETCH(QString, function);
        const QDateTime start = QDateTime::currentDateTimeUtc().addSecs(-1);

        QCOMPARE(crash({ QString::fromLatin1(QTest::currentDataTag()) }), signal);

        const QFileInfoList files = logs();
        QCOMPARE(files.size(), 1);
        QCOMPARE(files[0].permissions(),
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser);
        QDateTime date =
            QDateTime::fromString(files[0].fileName(), u"'Ortu_'yyyy-MM-dd-HHmmss'.crash'"_s);
        date.setTimeZone(QTimeZone::utc());
        QVERIFY(date >= start && date <= QDateTime::currentDateTimeUtc());
        const QString written = log();
        QVERIFY(written.contains(u"Version: " ORTU_VERSION ","_s));
        QVERIFY2(written.contains(text), qUtf8Printable(written));
        QVERIFY(written.endsWith(u"End of the log\n"_s));
        QVERIFY2(resolvedStack(written).contains(function + u'\n'), qUtf8Printable(written));
    }

    void aThreadsOverflowAndAChildsCrash_leaveNone()
    {
        QCOMPARE(crash({ u"thread"_s }), SIGSEGV);
        QCOMPARE(crash({ u"child"_s }), SIGKILL);
        QVERIFY(logs().isEmpty());
    }

    void aFullDisk_leavesWhatFits()
    {
        QCOMPARE(crash({ u"null"_s, u"0"_s }), SIGSEGV);
        QVERIFY(logs().isEmpty());
        QCOMPARE(crash({ u"null"_s, u"500"_s }), SIGSEGV);
        QCOMPARE(log().size(), 500);
    }

    void aFolderThatIsNone_leavesNoLog()
    {
        _home->addFolder(u"elsewhere"_s);
        _home->addLink(_folder, _home->path(u"elsewhere"_s));
        QCOMPARE(crash({ u"null"_s }), SIGSEGV);
        QVERIFY(QDir(_home->path(u"elsewhere"_s)).isEmpty());
        QFile::remove(_home->path(_folder));
        _home->add(_folder, {});
        QCOMPARE(crash({ u"terminate"_s }), SIGABRT);
    }

private:
    const QString _folder = u"missing/state/Ortu/Logs/CrashReporter"_s;
    std::unique_ptr<FileTree> _home;
};

QTEST_GUILESS_MAIN(CrashReporterTest)
#include "CrashReporterTest.moc"
