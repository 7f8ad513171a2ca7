#include "platform/freedesktop/launch/FreedesktopLauncher.h"

#include "platform/FileTree.h"

#include <QDBusConnection>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

// Stands for the file browser of a session.
class FileBrowser : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString & /*startupId*/) { _shown = uris; }

public:
    QStringList _shown;
};

static const QByteArray start = "[Desktop Entry]\nType=Application\nName=A\n";

class FreedesktopLauncherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A session bus of our own, because what GIO launches asks for one, and folders without
    // anything else.
    void initTestCase()
    {
        _tree = std::make_unique<FileTree>(u"launcher"_s);
        _document = _tree->add(u"it's \"a\" 100% #ü?.txt"_s, "x");
        qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->addFolder(u"data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->addFolder(u"shared"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(u"configuration"_s)));
        const QString program = _tree->add(u"record"_s,
            "#!/bin/sh\n"
            "out=$(dirname \"$0\")/record.txt\n"
            "{ pwd; for a in \"$@\"; do printf '%s\\n' \"$a\"; done; } >\"$out.part\"\n"
            "case $1 in session) cut -d' ' -f6 /proc/$$/stat; echo \"$GIO_LAUNCHED_DESKTOP_FILE\";;"
            " esac >>\"$out.part\"\n"
            "mv \"$out.part\" \"$out\"\n",
            0755);
        _program = QFile::encodeName(program);
        // Its program comes later. GIO reads the folders when it is first asked.
        _tree->add(u"data/applications/folders.desktop"_s,
            start + "MimeType=inode/directory;\nExec="
                + QFile::encodeName(_tree->path(u"browser"_s)) + " %f\n");
        QCOMPARE(QProcess::execute(
                     u"update-desktop-database"_s, { _tree->path(u"data/applications"_s) }),
            0);
        _bus.start(u"dbus-daemon"_s, { u"--session"_s, u"--nofork"_s, u"--print-address"_s });
        QVERIFY(_bus.waitForStarted());
        QVERIFY(_bus.waitForReadyRead());
        qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.readLine().trimmed());
    }
    void cleanupTestCase()
    {
        QDBusConnection::disconnectFromBus(u"qt_default_session_bus"_s);
        _bus.terminate();
        QVERIFY(_bus.waitForFinished());
    }
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void whatCannotBeLaunched_isFoundOutBefore()
    {
        const auto statusOf = [this](const char *name, const QByteArray &content) {
            return open(_tree->add(QLatin1String(name), content));
        };
        const LaunchStatus bad = LaunchStatus::CannotExecute;
        QCOMPARE(statusOf("bad.desktop", start + "Exec=/nowhere/program\n"), bad);
        QCOMPARE(statusOf("bad.desktop", start + "Exec=true\nTryExec=/nowhere/program\n"), bad);
        QCOMPARE(statusOf("bad.desktop", "[Desktop Entry]\nType=Link\nURL=x\n"), bad);
        // This one is refused by GIO alone.
        QCOMPARE(statusOf("bad.desktop", start + "Exec=true\n[Other]\nnonsense\n"), bad);
        QCOMPARE(statusOf("org.example.NoService.desktop", start + "DBusActivatable=true\n"), bad);
        QCOMPARE(statusOf("bad.txt", "x"), bad);
        QCOMPARE(statusOf("bad.AppImage", "x"), bad);
        QCOMPARE(open(_tree->addFolder(u"bad"_s)), bad);
        QCOMPARE(open(_tree->add(u"Garbage.AppImage"_s, "\x01\x02\x03", 0755)), bad);
        QCOMPARE(open(_tree->path(u"absent.desktop"_s)), LaunchStatus::FileNotFound);
    }

    void entry_getsItsDocuments()
    {
        const QString plain = _tree->add(u"plain.txt"_s, "x");
        const QUrl page(u"https://example.org/a%20b?c=d&e#f"_s);
        const std::tuple<QByteArray, QList<QUrl>, QStringList> rows[] {
            { "one \"two words\" %U",
                { QUrl::fromLocalFile(_document), QUrl::fromLocalFile(plain) },
                { u"one"_s, u"two words"_s, _document, plain } },
            { "%u", { page }, { page.toString(QUrl::FullyEncoded) } },
            { "one %F", {}, { u"one"_s } }
        };
        for (const auto &[arguments, documents, expected] : rows) {
            const QString entry =
                _tree->add(u"good.desktop"_s, start + "Exec=" + _program + ' ' + arguments + '\n');
            const QString link = _tree->addLink(u"link.desktop"_s, entry);
            QCOMPARE(open(link, documents), LaunchStatus::Launched);
            QCOMPARE(recorded().mid(1), expected);
            QVERIFY(QFile::remove(link));
        }
    }

    // Also behind a byte order mark, and without its service on the bus.
    void entry_startsInItsFolderAndSurvivesUs()
    {
        const QString folder = _tree->addFolder(u"my folder"_s);
        const std::pair<QByteArray, QByteArray> rows[] { {}, { "\xef\xbb\xbf", {} },
            { {}, "DBusActivatable=true\n" } };
        for (const auto &[before, after] : rows) {
            const QString entry = _tree->add(u"org.example.Both.desktop"_s,
                before + start + "Exec=" + _program
                    + " session %U\nPath=" + QFile::encodeName(folder) + '\n' + after);
            QCOMPARE(open(entry), LaunchStatus::Launched);
            const QStringList lines = recorded();
            QCOMPARE(lines.value(0), folder);
            QVERIFY(lines.value(2).toInt() > 0 && lines.value(2).toInt() != ::getsid(0));
            QCOMPARE(lines.value(3), entry);
            // Nothing of ours is left to be waited for but the bus.
            siginfo_t ended = {};
            QCOMPARE(::waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT), 0);
            QCOMPARE(ended.si_pid, 0);
        }
    }

    void bundles_getDocumentsAsFiles()
    {
        const QUrl page(u"https://example.org/a%20b"_s);
        const QByteArray script = "#!/bin/sh\nexec '" + _program + "' \"$0\" \"$@\"\n";
        const QString image = _tree->add(u"b/My Image.AppImage"_s, script, 0755);
        const QString run = _tree->add(u"b/X.AppDir/AppRun"_s, script, 0755);
        for (const auto &[bundle, program] :
            { std::pair(image, image), std::pair(_tree->path(u"b/X.AppDir"_s), run) }) {
            QCOMPARE(
                open(bundle, { { QUrl::fromLocalFile(_document), page } }), LaunchStatus::Launched);
            QCOMPARE(recorded(),
                QStringList(
                    { QDir::homePath(), program, _document, page.toString(QUrl::FullyEncoded) }));
        }
    }

    void reveal_asksTheFileBrowser()
    {
        FileBrowser browser;
        const QString name = u"org.freedesktop.FileManager1"_s;
        QDBusConnection bus = QDBusConnection::sessionBus();
        QVERIFY(bus.registerObject(
            u"/org/freedesktop/FileManager1"_s, &browser, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService(name));
        const bool isRevealed = reveal(_document);
        QVERIFY(bus.unregisterService(name));
        QVERIFY(isRevealed);
        QCOMPARE(
            browser._shown.value(0), QUrl::fromLocalFile(_document).toString(QUrl::FullyEncoded));
    }

    void reveal_withoutBrowser_opensTheFolder()
    {
        const QString gone = _tree->path(u"gone/x.txt"_s);
        const QString file = _tree->add(u"shown/x.txt"_s, "x");
        QTest::ignoreMessage(
            QtWarningMsg, qUtf8Printable(u"cannot show %1: its folder is gone"_s.arg(gone)));
        QVERIFY(!reveal(gone));
        QTest::ignoreMessage(QtWarningMsg,
            qUtf8Printable(u"cannot show %1: no file browser could be asked"_s.arg(file)));
        QVERIFY(!reveal(file));

        _tree->add(u"browser"_s, "#!/bin/sh\nexec '" + _program + "' browse \"$@\"\n", 0755);
        QVERIFY(reveal(file));
        QCOMPARE(recorded().mid(1), QStringList({ u"browse"_s, _tree->path(u"shown"_s) }));
    }

private:
    // Launches in a thread of its own, as the program does, with the event loop running here.
    template <typename Function> void inThread(Function function)
    {
        const std::unique_ptr<QThread> thread(QThread::create(function));
        thread->start();
        QTRY_VERIFY_WITH_TIMEOUT(thread->isFinished(), 30'000);
    }
    LaunchStatus open(const QString &path, const std::optional<QList<QUrl>> &documents = {})
    {
        LaunchStatus status = LaunchStatus::Failed;
        inThread([&] { status = _launcher.open(path, documents); });
        return status;
    }
    bool reveal(const QString &path)
    {
        bool isRevealed = false;
        inThread([&] { isRevealed = _launcher.reveal(path); });
        return isRevealed;
    }

    // The lines that the program started last wrote: its folder, then its arguments.
    QStringList recorded()
    {
        QFile file(_tree->path(u"record.txt"_s));
        if (!QTest::qWaitFor([&file] { return file.exists(); }, 10'000)
            || !file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QString text = QString::fromUtf8(file.readAll());
        file.remove();
        return text.split(u'\n', Qt::SkipEmptyParts);
    }

    std::unique_ptr<FileTree> _tree;
    QProcess _bus;
    QByteArray _program;
    QString _document;
    FreedesktopLauncher _launcher;
};

QTEST_GUILESS_MAIN(FreedesktopLauncherTest)
#include "FreedesktopLauncherTest.moc"
