// What the user made, through failing disks, killed programs and programs that write at once.
// Called with a folder this is one of these programs.

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "support/NotificationCenter.h"
#include "support/PropertyList.h"
#include "support/UserDefaults.h"

#include <QMap>
#include <QProcess>
#include <QRandomGenerator>

#include <csignal>
#include <cstdio>

namespace {

using Contents = QMap<QString, QByteArray>;

// A program at work.
class Program final : public FakeDesktop
{
public:
    explicit Program(const QString &folder)
        : _folder(folder)
        , _defaults(folder + u"/Ortu/Preferences.plist"_s)
    {
        UserDefaults::setStandard(&_defaults);
        OTAppManager::registerDefaults();
        const QVariantMap apps { { u"path"_s, folder + u"/apps"_s } };
        _defaults.registerDefaults(
            { { u"searchDirectories"_s, QVariantList { apps } }, { u"maximumIconSize"_s, 16 } });
        QObject::connect(&NotificationCenter::defaultCenter(), &NotificationCenter::N_UserMessage,
            [this] { ++_messageCount; });
        _manager = std::make_unique<OTAppManager>(*this);
        _manager->rescanAllAppsPrioritizingGroup(-1);
    }

    QString applicationSupportFolder(Domain domain) const override
    {
        return domain == Domain::User ? _folder : QString();
    }

    // One change of each file. How often the user was told of a failure.
    int changeOnce()
    {
        _manager->fullScan();
        _defaults.setObject(u"maximumIconSize"_s, 48);
        _manager->excludeApp(app(u"c"_s));
        _manager->moveApp(app(u"b"_s), UserGroup, 0, 0);
        _manager->moveApp(app(u"b"_s), User1DGroup, 0, 0);
        return _messageCount;
    }

    // For each line of input favourites and exclusions that are named after the program come and
    // go, until it is killed.
    int changeOn(const QString &name)
    {
        for (int i = 0; _messageCount == 0 && std::getchar() != EOF; ++i) {
            const AppRef favourite = app(name + QString::number(i));
            const AppRef exclusion = app(name + QString::number(i) + u'x');
            change("exclusion", exclusion, [&] { _manager->excludeApp(exclusion); });
            change(
                "favourite", favourite, [&] { _manager->moveApp(favourite, UserGroup, i % 4, 0); });
            if (i % 2 == 1) {
                change("-favourite", favourite,
                    [&] { _manager->removeAppsFromUserApps({ favourite }); });
            }
            QCoreApplication::processEvents();
        }
        return _messageCount;
    }

private:
    AppRef app(const QString &name) { return _manager->appForPath(_folder + u"/apps/"_s + name); }
    // A line says what is about to be changed, and a second, empty one that it is.
    template <typename Change> void change(const char *kind, const AppRef &app, const Change &make)
    {
        std::printf("%s %s\n", kind, qPrintable(app->path()));
        std::fflush(stdout);
        make();
        std::fputs(_messageCount > 0 ? "" : "\n", stdout);
        std::fflush(stdout);
    }

    QString _folder;
    UserDefaults _defaults;
    std::unique_ptr<OTAppManager> _manager;
    int _messageCount = 0;
};

} // namespace

class KeptFilesTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        _tree = std::make_unique<FileTree>();
        makeOldFiles();
    }

    // When any of these calls fails or is the last one, every file is the old or the new one, the
    // user is told once of what was not kept, and the next start finds its way.
    void failingCall_leavesWholeFiles()
    {
        const Contents old = files();
        QCOMPARE(run(), 0);
        const Contents expected = files();
        QCOMPARE(old.size(), 5);
        // Errors of Linux: 28 is a full disk, 5 one that fails, 1 not permitted; 0 kills.
        for (const QString &call : { u"write 28"_s, u"fsync 5"_s, u"close 28"_s, u"rename 5"_s,
                 u"link 1"_s, u"write 0"_s, u"fsync 0"_s, u"rename 0"_s }) {
            int number = 1;
            for (bool isReached = true; isReached; ++number) {
                makeOldFiles();
                const QString fault = u"%1 %2 "_s.arg(call).arg(number);
                const int result = run(fault + _tree->path(u"Ortu"_s));
                isReached = _errors.contains("failing call");
                const Contents now = files();
                for (const QString &name : old.keys()) {
                    const bool isNew = now[name] == expected[name];
                    QVERIFY2(isNew || now[name] == old[name], qPrintable(fault + name));
                    // A scan result that is lost is made again without a word.
                    QVERIFY2(isNew || result != 0 || name[0] == u'A', qPrintable(fault + name));
                }
                const bool isNewFile = call == u"write 28" || call == u"fsync 5";
                QVERIFY2(!isReached || !isNewFile || _errors.contains("cannot write"),
                    qPrintable(fault));
                QVERIFY(result < 0 || (result <= 1 && strays() == 0));
                QCOMPARE(run(), 0);
                QCOMPARE(files(), expected);
                QCOMPARE(strays(), 0);
            }
            QVERIFY(number > 3);
        }
    }

    // ROUNDS=200 for the long version.
    void twoKilledPrograms_loseNothingOfEachOther()
    {
        const int rounds = qEnvironmentVariable("ROUNDS", u"10"_s).toInt();
        QMap<QString, bool> made;
        int tellingCount = 0;
        for (int round = 0; round < rounds; ++round) {
            QProcess programs[2];
            for (QProcess &program : programs) {
                start(program, { u"%1%2-"_s.arg(&program == programs ? u'a' : u'b').arg(round) });
            }
            for (int step = QRandomGenerator::global()->bounded(2, 8); step >= 0; --step) {
                for (QProcess &program : programs) {
                    program.write("\n");
                    program.waitForBytesWritten();
                }
                // At the last step they are killed as soon as one has begun.
                programs[step % 2].waitForReadyRead(20'000);
            }
            for (QProcess &program : programs) {
                program.kill();
                program.waitForFinished();
                tellingCount += program.exitCode() == SIGKILL ? 0 : 1;
                note(program.readAllStandardOutput(), made);
            }
        }
        // A slow disk may hold up one of them, but not what a killed one held.
        QVERIFY(tellingCount * 5 <= rounds);
        QCOMPARE(run(), 0);
        const Contents now = files();
        for (auto change = made.cbegin(); change != made.cend(); ++change) {
            const QByteArray entry = '>' + change.key().section(u' ', 1).toUtf8() + '<';
            const bool isFavourite = change.key().startsWith(u'f');
            for (const QString &file : now.keys().filter(isFavourite ? u"User"_s : u"Excl"_s)) {
                QVERIFY2(now[file].contains(entry) == change.value(), qPrintable(change.key()));
            }
        }
        QVERIFY(made.size() > 2 * rounds);
    }

private:
    void makeOldFiles()
    {
        QDir(_tree->path(u"Ortu"_s)).removeRecursively();
        _tree->add(u"apps/new.app"_s, {});
        const auto store = [this](const QString &name, const QVariant &value) {
            _tree->add(u"Ortu/%1.plist"_s.arg(name), PropertyList::toXml(value));
        };
        const QVariantList a { _tree->path(u"apps/a"_s) };
        // Of a list in braces some compilers make a copy.
        const QVariantList bunches { QVariant(a) };
        store(u"AllApplications"_s, bunches);
        store(u"ExcludedApplications"_s, a);
        store(u"Preferences"_s, QVariantMap { { u"other"_s, 1 } });
        store(u"UserApplications"_s, bunches);
        store(u"UserApplications1D"_s, a);
    }
    Contents files() const
    {
        Contents contents;
        const QDir folder(_tree->path(u"Ortu"_s));
        for (const QString &name : folder.entryList({ u"*.plist"_s })) {
            contents.insert(name.chopped(6), load(folder.filePath(name)));
        }
        return contents;
    }
    qsizetype strays() const
    {
        static const QRegularExpression stray(u"plist(\\.previous)?\\.[^.]{6}$"_s);
        return QDir(_tree->path(u"Ortu"_s)).entryList().filter(stray).size();
    }
    void start(QProcess &process, const QStringList &arguments, const QString &fault = {}) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, _tree->path());
        environment.insert(u"FAILING_CALL"_s, fault);
        environment.insert(u"LD_PRELOAD"_s, qEnvironmentVariable("FAILING_CALLS"));
        environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
        process.setProcessEnvironment(environment);
        process.start(
            QCoreApplication::applicationFilePath(), QStringList(_tree->path()) + arguments);
    }
    // How often one change of everything told of a failure; -1 when killed.
    int run(const QString &fault = {})
    {
        QProcess process;
        start(process, {}, fault);
        const bool isEnded =
            process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
        _errors = process.readAllStandardError();
        return isEnded ? process.exitCode() : -1;
    }
    // Takes down which changes were made. Nothing is known of a last one without an end.
    static void note(const QByteArray &output, QMap<QString, bool> &made)
    {
        const QStringList lines = QString::fromUtf8(output).split(u'\n');
        for (qsizetype i = 0; i < lines.size(); i += 2) {
            const bool isRemoved = lines[i].startsWith(u'-');
            const QString thing = lines[i].mid(isRemoved ? 1 : 0);
            made.insert(thing, !isRemoved);
            if (i + 2 >= lines.size()) {
                made.remove(thing);
            }
        }
    }

    std::unique_ptr<FileTree> _tree;
    QByteArray _errors;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1 && argv[1][0] == '/') {
        Program program(application.arguments()[1]);
        return argc > 2 ? program.changeOn(application.arguments()[2]) : program.changeOnce();
    }
    KeptFilesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "KeptFilesTest.moc"
