#include "catalogue/NewApplications.h"

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "support/UserDefaults.h"

// The folders x and y are scanned, two levels deep; every file is an application of one letter.
class NewApplicationsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _manager.reset();
        _desktop = std::make_unique<FakeDesktop>();
        _desktop->fakeItems.areFilesApplications = true;
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        OTAppManager::registerDefaults();
        setReach({ u"x"_s, u"y"_s }, 2);
    }

    void installedIsNew_untilItRunsOrVanishes()
    {
        QCOMPARE(newAtStart(u"x/a x/b"_s), QString());
        QCOMPARE(newAfter(u"x/c y/d x/sub/e"_s), u"cde"_s);
        QCOMPARE(newAtStart(u"y/f"_s), u"cde"_s);
        QCOMPARE(newAfter({}), u"cdef"_s);
        const QSignalSpy spy(&_manager->newApplications(), &NewApplications::changed);
        _desktop->running.launch({ path(u"x/a"_s), path(u"x/c"_s), path(u"x/g"_s) });
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy[0][0].toStringList(), QStringList(path(u"x/c"_s)));
        QVERIFY(QFile::remove(path(u"y/d"_s)));
        QCOMPARE(newAfter(u"x/g"_s), u"ef"_s);
        _manager->newApplications().remove({ path(u"x/sub/e"_s) });
        QCOMPARE(newAfter(u"y/d"_s), u"df"_s);
        // Without the list of before, as on the first start.
        QVERIFY(QFile::remove(_desktop->tree.path(u"user/Ortu/AllApplications.plist"_s)));
        QCOMPARE(newAtStart(u"x/h"_s), u"df"_s);
    }

    void whatOnlyComesIntoSight_isNotNew()
    {
        newAtStart(u"x/a x/k.app x/sub/deep/b z/c"_s);
        setReach({ u"x"_s, u"z"_s }, 2);
        QCOMPARE(newAfter({}), QString());
        setReach({ u"x"_s, u"z"_s }, 3);
        QCOMPARE(newAfter(u"z/d"_s), u"d"_s);
        // Hidden, over a new start.
        _desktop->fakeItems.areFilesApplications = false;
        QCOMPARE(newAfter({}), QString());
        newAtStart({});
        _desktop->fakeItems.areFilesApplications = true;
        QCOMPARE(newAfter(u"x/e"_s), u"e"_s);
        // The folder of a disk that is away, and the empty one that it is mounted on.
        for (const bool isFolderLeft : { false, true }) {
            const QString disk = _desktop->tree.path(u"z"_s);
            QVERIFY(QDir().rename(disk, disk + u"away"_s));
            QVERIFY(!isFolderLeft || QDir().mkdir(disk));
            QCOMPARE(newAfter({}), u"e"_s);
            QVERIFY(!isFolderLeft || QDir().rmdir(disk));
            QVERIFY(QDir().rename(disk + u"away"_s, disk));
            QCOMPARE(newAfter({}), u"e"_s);
        }
    }

    // As on a desktop, each answer holds for either path.
    void aCopyIsNew_whenItsOriginalIs()
    {
        newAtStart(u"x/o"_s);
        newAfter(u"x/n"_s);
        const auto newWhere = [&](const QString &original, const QString &copy) {
            QFile::remove(path(original));
            _desktop->fakeItems.standIns[path(original)] = path(copy);
            _desktop->fakeItems.standIns.remove(path(copy));
            return newAfter(copy);
        };
        QCOMPARE(newWhere(u"x/o"_s, u"y/c"_s), u"n"_s);
        QCOMPARE(newWhere(u"x/n"_s, u"y/m"_s), u"m"_s);
        QCOMPARE(newWhere(u"y/c"_s, u"x/o"_s), u"m"_s);
        QCOMPARE(newWhere(u"y/m"_s, u"x/n"_s), u"n"_s);
    }

private:
    QString path(const QString &name) const { return _desktop->tree.path(name); }
    void setReach(const QStringList &folders, int depth)
    {
        QVariantList list;
        for (const QString &folder : folders) {
            list.append(QVariantMap { { u"path"_s, path(folder) } });
        }
        _defaults->setObject(u"searchDirectories"_s, list);
        _defaults->setObject(u"maxFolderRecursionDepth"_s, depth);
    }
    void add(const QString &names)
    {
        for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) {
            _desktop->tree.add(name, {});
        }
    }
    QString newAtStart(const QString &added)
    {
        add(added);
        _manager.reset();
        _manager = std::make_unique<OTAppManager>(*_desktop, OTAppManager::Use::Normal);
        _manager->rescanAllAppsPrioritizingGroup(-1);
        return newOnes();
    }
    QString newAfter(const QString &added)
    {
        add(added);
        _manager->fullScan();
        return newOnes();
    }
    QString newOnes() const
    {
        QStringList names;
        for (const AppRef &app : _manager->allApps1D()) {
            if (_manager->newApplications().contains(app->path())) {
                names.append(app->name());
            }
        }
        names.sort();
        return names.join(QString());
    }

    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FakeDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
};

QTEST_GUILESS_MAIN(NewApplicationsTest)
#include "NewApplicationsTest.moc"
