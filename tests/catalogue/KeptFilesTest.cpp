// What the user made, through failing disks and killed programs. Called with a folder this is one
// of these programs.

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

#include <QMap>
#include <QProcess>

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
        // Otherwise it is new, unless the program is killed before it keeps that.
        running.paths = { folder + u"/apps/new.app"_s };
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
        _defaults.synchronize();
        _manager->excludeApp(app(u"c"_s));
        _manager->moveApp(app(u"b"_s), UserGroup, 0, 0);
        _manager->moveApp(app(u"b"_s), User1DGroup, 0, 0);
        return _messageCount;
    }

private:
    AppRef app(const QString &name) { return _manager->appForPath(_folder + u"/apps/"_s + name); }

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
        // Errors of Linux: 28 is a full disk, 5 one that fails, 1 not permitted, 30 a
        // disk that only reads; 0 kills.
        for (const QString &call : { u"open 30"_s, u"write 28"_s, u"fsync 5"_s, u"close 28"_s,
                 u"rename 5"_s, u"link 1"_s, u"write 0"_s, u"fsync 0"_s, u"rename 0"_s }) {
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
    // How often one change of everything told of a failure; -1 when killed.
    int run(const QString &fault = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"TMPDIR"_s, _tree->path());
        environment.insert(u"FAILING_CALL"_s, fault);
        environment.insert(u"LD_PRELOAD"_s, qEnvironmentVariable("FAILING_CALLS"));
        environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), { _tree->path() });
        const bool isEnded =
            process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
        _errors = process.readAllStandardError();
        return isEnded ? process.exitCode() : -1;
    }

    std::unique_ptr<FileTree> _tree;
    QByteArray _errors;
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc > 1 && argv[1][0] == '/') {
        return Program(application.arguments()[1]).changeOnce();
    }
    KeptFilesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "KeptFilesTest.moc"
