#include "platform/freedesktop/FreedesktopLauncher.h"

#include "platform/FileTree.h"

#include <QDBusConnection>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cerrno>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

// Stands for the file browser of a session.
class FileBrowser : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &startupId)
    {
        _shown = uris;
        Q_EMIT shown(startupId);
    }

public:
    QStringList _shown;

Q_SIGNALS:
    void shown(const QString &startupId);
};

class FreedesktopLauncherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void whatCannotBeLaunched_isFoundOutBefore_data();
    void whatCannotBeLaunched_isFoundOutBefore();
    void ownFileGone();
    void entry_getsItsDocuments_data();
    void entry_getsItsDocuments();
    void entry_startsInItsFolderAndSurvivesUs_data();
    void entry_startsInItsFolderAndSurvivesUs();
    void entry_thatHasOnlyABusNameWithoutService();
    void bundles_getDocumentsAsFiles();
    void reveal_asksTheFileBrowser();
    void reveal_withoutBrowser_opensTheFolder();

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

    // The lines that the program started last wrote: its folder, then its arguments.
    QStringList recorded()
    {
        const QString path = _tree->path(QStringLiteral("record.txt"));
        if (!QTest::qWaitFor([&path] { return QFile::exists(path); }, 10'000)) {
            return {};
        }
        QFile file(path);
        const QString text =
            file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
        file.remove();
        return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    std::unique_ptr<FileTree> _tree;
    QProcess _bus;
    QString _program;
    FreedesktopLauncher _launcher;
};

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\nName=A\n";

} // namespace

// A session bus of our own, because what GIO launches asks for one, and folders without anything
// else.
void FreedesktopLauncherTest::initTestCase()
{
    _tree = std::make_unique<FileTree>(QStringLiteral("launcher"));
    qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->addFolder(QStringLiteral("data"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->addFolder(QStringLiteral("shared"))));
    qputenv(
        "XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(QStringLiteral("configuration"))));
    _program = _tree->add(QStringLiteral("record"),
        "#!/bin/sh\n"
        "out=$(dirname \"$0\")/record.txt\n"
        "{ pwd; for a in \"$@\"; do printf '%s\\n' \"$a\"; done; } >\"$out.part\"\n"
        "case $1 in session) cut -d' ' -f6 /proc/$$/stat; echo \"$GIO_LAUNCHED_DESKTOP_FILE\";; "
        "esac >>\"$out.part\"\n"
        "mv \"$out.part\" \"$out\"\n",
        0755);
    // Its program comes later. GIO reads the folders when it is first asked.
    _tree->add(QStringLiteral("data/applications/folders.desktop"),
        start + "MimeType=inode/directory;\nExec="
            + QFile::encodeName(_tree->path(QStringLiteral("browser"))) + " %f\n");
    QCOMPARE(QProcess::execute(QStringLiteral("update-desktop-database"),
                 { _tree->path(QStringLiteral("data/applications")) }),
        0);
    _bus.start(QStringLiteral("dbus-daemon"),
        { QStringLiteral("--session"), QStringLiteral("--nofork"),
            QStringLiteral("--print-address") });
    QVERIFY(_bus.waitForStarted());
    QVERIFY(_bus.waitForReadyRead());
    qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.readLine().trimmed());
}

void FreedesktopLauncherTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(QStringLiteral("qt_default_session_bus"));
    _bus.terminate();
    QVERIFY(_bus.waitForFinished());
}

void FreedesktopLauncherTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void FreedesktopLauncherTest::whatCannotBeLaunched_isFoundOutBefore_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");

    const QString entry = QStringLiteral("bad.desktop");
    QTest::newRow("program missing") << entry << start + "Exec=/nowhere/program\n";
    QTest::newRow("program not executable")
        << entry << start + "Exec=" + QFile::encodeName(_program) + ".txt\n";
    QTest::newRow("condition not met") << entry << start + "Exec=true\nTryExec=/nowhere/program\n";
    QTest::newRow("no application") << entry << QByteArray("[Desktop Entry]\nType=Link\nURL=x\n");
    QTest::newRow("broken") << entry << QByteArray("nonsense");
    QTest::newRow("refused by GIO alone") << entry << start + "Exec=true\n[Other]\nnonsense\n";
    QTest::newRow("plain file") << QStringLiteral("bad.txt") << QByteArray("x");
    QTest::newRow("AppImage not executable") << QStringLiteral("bad.AppImage") << QByteArray("x");
    QTest::newRow("plain folder") << QStringLiteral("bad/x") << QByteArray("x");
    _tree->add(QStringLiteral("record.txt"), "x");
}

void FreedesktopLauncherTest::whatCannotBeLaunched_isFoundOutBefore()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const QString path = _tree->add(name, content);
    const bool isInFolder = name.contains(QLatin1Char('/'));
    QCOMPARE(
        open(isInFolder ? _tree->path(QStringLiteral("bad")) : path), LaunchStatus::CannotExecute);
}

void FreedesktopLauncherTest::ownFileGone()
{
    QCOMPARE(open(_tree->path(QStringLiteral("absent.desktop"))), LaunchStatus::FileNotFound);
    QCOMPARE(open(_tree->addLink(QStringLiteral("dangling.desktop"), QStringLiteral("/nowhere"))),
        LaunchStatus::FileNotFound);
}

void FreedesktopLauncherTest::entry_getsItsDocuments_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QList<QUrl>>("documents");
    QTest::addColumn<QStringList>("expected");

    const QString odd = _tree->add(QStringLiteral("it's \"a\" 100% #ü?.txt"), "x");
    const QString plain = _tree->add(QStringLiteral("plain.txt"), "x");
    const QUrl page(QStringLiteral("https://example.org/a%20b?c=d&e#f"));
    const QList<QUrl> both { QUrl::fromLocalFile(odd), QUrl::fromLocalFile(plain) };
    QTest::newRow("several at once")
        << QByteArray("one \"two words\" %U") << both
        << QStringList { QStringLiteral("one"), QStringLiteral("two words"), odd, plain };
    QTest::newRow("a file") << QByteArray("%f") << both.mid(0, 1) << QStringList { odd };
    QTest::newRow("a page") << QByteArray("%u") << QList<QUrl> { page }
                            << QStringList { page.toString(QUrl::FullyEncoded) };
    QTest::newRow("no place for them")
        << QByteArray("one") << both.mid(0, 1) << QStringList { QStringLiteral("one"), odd };
    QTest::newRow("none") << QByteArray("one %F") << QList<QUrl>()
                          << QStringList { QStringLiteral("one") };
}

void FreedesktopLauncherTest::entry_getsItsDocuments()
{
    QFETCH(QByteArray, arguments);
    QFETCH(QList<QUrl>, documents);
    QFETCH(QStringList, expected);
    QFile::remove(_tree->path(QStringLiteral("record.txt")));
    const QString entry = _tree->add(QStringLiteral("good.desktop"),
        start + "Exec=" + QFile::encodeName(_program) + ' ' + arguments + '\n');
    QCOMPARE(open(_tree->addLink(QStringLiteral("link.desktop"), entry), documents),
        LaunchStatus::Launched);
    QCOMPARE(recorded().mid(1), expected);
}

void FreedesktopLauncherTest::entry_startsInItsFolderAndSurvivesUs_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");

    QTest::newRow("plain") << QByteArray() << QByteArray();
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf") << QByteArray();
    QTest::newRow("no service on the bus") << QByteArray() << QByteArray("DBusActivatable=true\n");
}

void FreedesktopLauncherTest::entry_startsInItsFolderAndSurvivesUs()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QString folder = _tree->addFolder(QStringLiteral("my folder"));
    const QString entry = _tree->add(QStringLiteral("org.example.Both.desktop"),
        before + start + "Exec=" + QFile::encodeName(_program)
            + " session %U\nPath=" + QFile::encodeName(folder) + '\n' + after);
    QCOMPARE(open(entry), LaunchStatus::Launched);
    const QStringList lines = recorded();
    QCOMPARE(lines.value(0), folder);
    QVERIFY(lines.value(2).toInt() > 0);
    QVERIFY(lines.value(2).toInt() != ::getsid(0));
    QCOMPARE(lines.value(3), entry);
    // Nothing of ours is left to be waited for but the bus.
    siginfo_t ended = {};
    QVERIFY(::waitid(P_ALL, 0, &ended, WEXITED | WNOHANG | WNOWAIT) == 0);
    QCOMPARE(ended.si_pid, 0);
}

void FreedesktopLauncherTest::entry_thatHasOnlyABusNameWithoutService()
{
    const QString entry =
        _tree->add(QStringLiteral("org.example.Bus.desktop"), start + "DBusActivatable=true\n");
    QCOMPARE(open(entry), LaunchStatus::CannotExecute);
}

void FreedesktopLauncherTest::bundles_getDocumentsAsFiles()
{
    const QString document = _tree->add(QStringLiteral("it's \"a\" 100% #ü?.txt"), "x");
    const QList<QUrl> documents { QUrl::fromLocalFile(document),
        QUrl(QStringLiteral("https://example.org/a%20b")) };
    const QByteArray script =
        "#!/bin/sh\nexec '" + QFile::encodeName(_program) + "' \"$0\" \"$@\"\n";
    const QString image = _tree->add(QStringLiteral("b/My Image.AppImage"), script, 0755);
    const QString run = _tree->add(QStringLiteral("b/X.AppDir/AppRun"), script, 0755);
    const QList<std::pair<QString, QString>> bundles { { image, image },
        { _tree->path(QStringLiteral("b/X.AppDir")), run } };
    for (const auto &[bundle, program] : bundles) {
        QCOMPARE(open(bundle, documents), LaunchStatus::Launched);
        QCOMPARE(recorded(),
            QStringList({ QDir::homePath(), program, document,
                QStringLiteral("https://example.org/a%20b") }));
    }
    QCOMPARE(open(_tree->add(QStringLiteral("b/Garbage.AppImage"), "\x01\x02\x03", 0755)),
        LaunchStatus::CannotExecute);
}

void FreedesktopLauncherTest::reveal_asksTheFileBrowser()
{
    FileBrowser browser;
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), &browser,
        QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.FileManager1")));
    const QString odd = _tree->add(QStringLiteral("odd #1%.txt"), "x");
    bool isRevealed = false;
    inThread([&] { isRevealed = _launcher.reveal(odd); });
    QVERIFY(bus.unregisterService(QStringLiteral("org.freedesktop.FileManager1")));
    QVERIFY(isRevealed);
    QCOMPARE(browser._shown.value(0), QUrl::fromLocalFile(odd).toString(QUrl::FullyEncoded));
}

void FreedesktopLauncherTest::reveal_withoutBrowser_opensTheFolder()
{
    const QString gone = _tree->path(QStringLiteral("gone/x.txt"));
    const QString file = _tree->add(QStringLiteral("shown/x.txt"), "x");
    const auto reveal = [this](const QString &path) {
        bool isRevealed = false;
        inThread([&] { isRevealed = _launcher.reveal(path); });
        return isRevealed;
    };
    const auto expectLine = [](const QString &path, const char *reason) {
        QTest::ignoreMessage(QtWarningMsg,
            qUtf8Printable(QStringLiteral("cannot show %1: ").arg(path) + QLatin1String(reason)));
    };
    expectLine(gone, "its folder is gone");
    QVERIFY(!reveal(gone));
    expectLine(file, "no file browser could be asked");
    QVERIFY(!reveal(file));

    _tree->add(QStringLiteral("browser"),
        "#!/bin/sh\nexec '" + QFile::encodeName(_program) + "' browse \"$@\"\n", 0755);
    QVERIFY(reveal(file));
    QCOMPARE(recorded().mid(1),
        QStringList({ QStringLiteral("browse"), _tree->path(QStringLiteral("shown")) }));
}

QTEST_GUILESS_MAIN(FreedesktopLauncherTest)
#include "FreedesktopLauncherTest.moc"
