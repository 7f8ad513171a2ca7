#include "catalogue/OTAppManager.h"

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/BunchText.h"
#include "catalogue/files/ScanFolders.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

#include <QElapsedTimer>

// The catalogue of a desktop on which the folders x, absent and y are scanned. Applications have
// one letter: "x/ab y/c" are three of them.
class OTAppManagerTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _manager.reset();
        _desktop = std::make_unique<FakeDesktop>();
        _center = std::make_unique<NotificationCenter>();
        NotificationCenter::setDefaultCenter(_center.get());
        _defaults = std::make_unique<UserDefaults>();
        UserDefaults::setStandard(_defaults.get());
        OTAppManager::registerDefaults();
        ScanFolders::registerDefaults(*_defaults, _desktop->searchPaths());
        _defaults->registerDefaults({ { u"maximumIconSize"_s, 16 } });
        setFolders(u"x absent y"_s);
    }

    void coldStart_usesTheSavedList_andAFilledCatalogueIsScanned()
    {
        start(u"x/ba y/c"_s);
        QCOMPARE(lists({ 5 }), u"ab|c|"_s);
        QFile::remove(app(u"x/a"_s)->path());
        start(u"y/d"_s);
        QCOMPARE(lists({ 5 }), u"ab|c|"_s);
        QVERIFY(!app(u"x/a"_s)->isPathValid() && app(u"x/b"_s)->isPathValid());
        const AppRef b = app(u"x/b"_s);
        _manager->rescanAllAppsPrioritizingGroup(-1);
        QCOMPARE(lists({ 5 }), u"b|cd|"_s);
        QCOMPARE(_manager->allApps1D().first(), b);
    }

    void excluding_dividesEveryList()
    {
        start(u"x/ad y/bc"_s);
        QCOMPARE(lists({ 1, 2, 3, 4 }), u"ad|bc| abcd  "_s);
        _manager->excludeApp(app(u"y/c"_s));
        _manager->excludeApp(app(u"y/b"_s));
        QCOMPARE(lists({ 1, 2, 3, 4 }), u"ad| ad bc| cb"_s);
        start();
        _manager->includeApp(app(u"y/b"_s));
        start();
        QCOMPARE(lists({ 1, 2, 3, 4 }), u"ad|b| abd c| c"_s);
    }

    // Neither other exclusions nor other favourites take them out of the files meanwhile.
    void excludedAppsThatAreGone_areMissingUntilTheirDiskIsBack()
    {
        start(u"x/abc y/def"_s);
        addFavourites(u"x/a y/e x/b"_s);
        _manager->moveApp(app(u"x/b"_s), User1DGroup, 0, 0);
        for (const QString &name : { u"x/a"_s, u"x/b"_s, u"y/d"_s }) {
            _manager->excludeApp(app(name));
        }
        const QString disk = _desktop->tree.path(u"x"_s);
        QVERIFY(QDir().rename(disk, disk + u"away"_s));
        Q_EMIT _center->N_AppIsMissing(app(u"x/a"_s));
        QCOMPARE(lists({ 7, 4, 8, 9 }), u"ab d |e|| e"_s);
        for (int run = 0; run < 2; ++run) {
            _manager->excludeApp(app(u"y/f"_s));
            _manager->moveApp(app(u"y/d"_s), UserGroup, 1, 0);
            QCOMPARE(lists({ 7, 4, 8, 9 }), u"ab df |de|| ed"_s);
            start();
            _manager->includeApp(app(u"y/f"_s));
        }
        QVERIFY(QDir().rename(disk + u"away"_s, disk));
        _manager->fullScan();
        QCOMPARE(lists({ 7, 4, 8, 9 }), u" abd a|de|b| baed"_s);
        start();
        QCOMPARE(lists({ 7, 4, 8, 9 }), u" abd a|de|b| baed"_s);
    }

    void changesOfAnotherProgram_areTakenOver()
    {
        start(u"x/abcdef"_s);
        addFavourites(u"x/abc"_s);
        OTAppManager other(*_desktop);
        other.rescanAllAppsPrioritizingGroup(-1);
        const auto othersApp = [&](const QString &name) { return other.appForPath(path(name)); };
        announced();
        // Both at once: each knows of the other by its own write.
        other.moveApp(othersApp(u"x/c"_s), UserGroup, 0, 0);
        other.moveApp(othersApp(u"x/d"_s), UserGroup, 9, 0);
        other.excludeApp(othersApp(u"x/e"_s));
        other.removeAppsFromUserApps({ othersApp(u"x/b"_s) });
        _manager->moveApp(app(u"x/f"_s), UserGroup, 0, 2);
        _manager->excludeApp(app(u"x/a"_s));
        QCOMPARE(lists({ 8, 9, 4, 2 }), u"caf|d| acfd ae bcdf"_s);
        QTRY_COMPARE(BunchText::text(other.userApps()), u"caf|d|"_s);
        QTRY_COMPARE(BunchText::text(other.excludedApps1D()), u"ae"_s);

        announced();
        other.includeApp(othersApp(u"x/a"_s));
        other.moveApp(othersApp(u"x/d"_s), User1DGroup, 0, 0);
        QTRY_COMPARE(lists({ 8, 9, 4, 2 }), u"caf|d| dacf e abcdf"_s);
        QCOMPARE(announced(),
            u"excludedApps excludedApps1D includedApps includedApps1D userApps userApps1D"_s);
        // A damaged file may be half written.
        const QString file = _desktop->tree.path(u"user/Ortu/UserApplications.plist"_s);
        save(file, "<plist");
        other.excludeApp(othersApp(u"x/b"_s));
        QTRY_COMPARE(lists({ 8, 4 }), u"caf|d| be"_s);
        expectWarning(u"set aside .*UserApplications"_s);
        _manager->moveApp(app(u"x/b"_s), UserGroup, 9, 0);
        QTRY_COMPARE(BunchText::text(other.userApps()), u"caf|d|b|"_s);
    }

    void exclusions_ofUserAndComputer_areMerged()
    {
        for (const auto &[folder, letters] :
            { std::pair(u"user"_s, u"cba"_s), std::pair(u"local"_s, u"da"_s) }) {
            QVariantList paths;
            for (const QChar letter : letters) {
                paths.append(path(u"x//"_s + letter));
            }
            _desktop->tree.add(
                folder + u"/Ortu/ExcludedApplications.plist"_s, PropertyList::toXml(paths));
        }
        start(u"x/abcd"_s);
        QCOMPARE(lists({ 4 }), u"abcd"_s);
        _manager->includeApp(app(u"x/d"_s));
        QCOMPARE(lists({ 4 }), u"abc"_s);
        start();
        QCOMPARE(lists({ 4 }), u"abcd"_s);
    }

    // A copy c masks the original o: both in the lists and in another's place.
    void standIn_hasThePlaceOfTheOriginal_untilItGoes()
    {
        start(u"x/abop"_s);
        addFavourites(u"x/ao x/pb"_s);
        _manager->moveApp(app(u"x/o"_s), User1DGroup, 0, 0);
        _manager->excludeApp(app(u"x/o"_s));
        const auto change = [&](const QString &removed, const QString &added) {
            QFile::remove(path(removed));
            addApps(added);
            _manager->fullScan();
            return lists({ 8, 9, 4, 7, 2 });
        };
        // The scan does not find what is masked.
        _desktop->fakeItems.standIns[path(u"x/o"_s)] = path(u"y/c"_s);
        QCOMPARE(change(u"x/o"_s, u"y/c"_s), u"ac|pb| capb c  abp"_s);
        start();
        QCOMPARE(lists({ 8, 9, 4, 7, 2 }), u"ac|pb| capb c  abp"_s);
        // Whatever the user changes meanwhile, the place is the original's.
        _manager->moveApp(app(u"y/c"_s), UserGroup, 1, 1);
        _manager->includeApp(app(u"y/c"_s));
        QCOMPARE(lists({ 8, 9, 4, 2 }), u"a|pcb| capb  abcp"_s);
        _manager->undoLastChange();
        _desktop->fakeItems.standIns = { { path(u"y/c"_s), path(u"x/o"_s) } };
        QCOMPARE(change(u"y/c"_s, u"x/o"_s), u"a|pob| oapb o  abp"_s);
        // Steps of before count for what stands there now.
        _manager->undoLastChange();
        QCOMPARE(lists({ 8, 9 }), u"ao|pb| oapb"_s);
        start();
        QCOMPARE(lists({ 8, 9, 4, 7, 2 }), u"ao|pb| oapb o  abp"_s);

        // What was put there under either name is one application, and goes at once.
        _desktop->fakeItems.standIns.clear();
        _manager->moveApp(app(u"y/c"_s), UserGroup, 9, 0);
        _desktop->fakeItems.standIns = { { path(u"x/o"_s), path(u"y/c"_s) } };
        QCOMPARE(change(u"x/o"_s, u"y/c"_s), u"ac|pb| capb c  abp"_s);
        _manager->removeAppsFromUserApps({ app(u"y/c"_s) });
        _desktop->fakeItems.standIns = { { path(u"y/c"_s), path(u"x/o"_s) } };
        QCOMPARE(change(u"y/c"_s, u"x/o"_s), u"a|pb| apb o  abp"_s);
    }

    // Names first, in the order of all applications, then what is pinned, in the desktop's order.
    void autoExclusion_takesNamedAndPinnedApps_onceEach()
    {
        _desktop->fakeItems.displayNames[path(u"x/b"_s)] = u"b Uninstaller"_s;
        start(u"x/abcdef"_s);
        _manager->excludeApp(app(u"x/d"_s));
        _desktop->fakePinned.pinned = { path(u"x/e"_s), path(u"absent/g"_s), path(u"x/d"_s),
            path(u"x/b"_s), path(u"x/c"_s) };
        const auto excludedBy = [&](bool dockApps, bool namedApps) {
            removeFiles();
            announced();
            _manager->autoExcludeDockApps(dockApps, namedApps);
            return lists({ 4 }) + (files().isEmpty() ? u""_s : u" written"_s);
        };
        QCOMPARE(excludedBy(false, false), u"d"_s);
        QCOMPARE(excludedBy(false, true), u"db written"_s);
        QCOMPARE(excludedBy(false, true), u"db"_s);
        QCOMPARE(announced(), QString());
        _manager->includeApp(app(u"x/b"_s));
        QCOMPARE(excludedBy(true, true), u"dbec written"_s);
        QCOMPARE(lists({ 1 }), u"af|"_s);
        QCOMPARE(excludedBy(true, true), u"dbec"_s);
        // A list that is there, if only by an import, is not added to by the first start.
        for (const QString &excluded : { u"b"_s, u""_s }) {
            start();
            _manager->excludeOnFirstStart();
            QCOMPARE(lists({ 4 }), excluded);
            _manager->includeApp(app(u"x/b"_s));
        }
    }

    void announcements_comeInPairs()
    {
        start(u"x/ab y/c"_s);
        const QString user = u"userApps userApps1D"_s;
        const QString divided = u"excludedApps includedApps includedApps1D"_s;
        const QString excluded = u"excludedApps excludedApps1D includedApps includedApps1D"_s;
        const AppRef a = app(u"x/a"_s);
        QHash<QString, QString> &names = _desktop->fakeItems.displayNames;
        const std::initializer_list<std::pair<std::function<void()>, QString>> steps {
            { [&] { _manager->excludeApp(a); }, excluded },
            { [&] { _manager->excludeApp(a); }, {} },
            { [&] { _manager->includeApp(a); }, excluded },
            { [&] { _manager->moveApp(a, User1DGroup, 0, 0); }, user },
            { [&] { _manager->moveAppNewBunchAtIndex(app(u"y/c"_s), UserGroup, 0); }, user },
            { [&] { _manager->locateUserApps(); }, user },
            { [&] { _manager->removeAppsFromUserApps({ a }); }, user },
            { [&] { addApps(u"y/d"_s), _manager->fullScan(); },
                u"allApps allApps1D everyApp "_s + divided },
            { [&] {
                 names = { { path(u"x/b"_s), u"B"_s } }, _manager->fullScan();
             },
                u"allApps allApps1D "_s + divided + u' ' + user },
            { [&] { _manager->fullScan(), _manager->sortAllArrays(); }, {} },
            { [&] { _manager->rescanAllAppsPrioritizingGroup(0); }, {} },
            { [&] { _manager->removeAppsFromAllArrays({ a }); },
                u"allApps allApps1D everyApp includedApps includedApps1D"_s },
        };
        for (const auto &[step, keys] : steps) {
            step();
            QCOMPARE(announced(), keys);
        }
    }

    void nothingChanged_nothingIsAnnouncedOrWritten()
    {
        start(u"x/abc"_s);
        const AppRef a = app(u"x/a"_s);
        addFavourites(u"x/a"_s);
        _manager->excludeApp(app(u"x/b"_s));
        removeFiles();
        announced();
        for (const int group : { -1, 0, 7, int(UserGroup), int(User1DGroup), 10 }) {
            _manager->moveApp(a, group, 0, 0);
        }
        _manager->removeAppsFromUserApps({ app(u"x/c"_s) });
        _manager->removeAppsFromAllArrays({ BunchText::app(u'z', *_desktop) });
        // Files cannot hold every name.
        const auto bell = std::make_shared<OTApp>(_desktop->tree.path(u"x/\a.app"_s), *_desktop);
        expectWarning(u"cannot keep .*/x/\a.app: "_s);
        _manager->moveApp(bell, UserGroup, 0, 0);
        QCOMPARE(announced(), QString());
        _manager->excludeApp(app(u"x/b"_s));
        expectWarning(u"cannot keep .*/x/\a.app: "_s);
        _manager->excludeApp(bell);
        QCOMPARE(lists({ 4, 9 }), u"b a"_s);
        QCOMPARE(files(), QString());
    }

    void lostFavourites_areFoundByName()
    {
        start(u"x/abc"_s);
        addFavourites(u"x/ab x/c z/b"_s);
        _manager->moveApp(app(u"x/c"_s), User1DGroup, 0, 0);
        // b has moved, the others are gone. What is found stands in for one of the two lost ones
        // only, however often it was scanned.
        QVERIFY(QDir(_desktop->tree.path(u"x"_s)).removeRecursively());
        setFolders(u"y y"_s);
        addApps(u"y/b"_s);
        _manager->fullScan();
        _manager->locateUserApps();
        QCOMPARE(_manager->userApps()[0], AppList({ app(u"x/a"_s), app(u"y/b"_s) }));
        QCOMPARE(_manager->userApps()[2], AppList { app(u"z/b"_s) });
        QCOMPARE(lists({ 9 }), u"abcb"_s);
    }

    void sortOrder_isFollowed()
    {
        setFolders(u"y x"_s);
        start(u"y/a x/cB"_s);
        QCOMPARE(lists({ 2, 5, 6 }), u"aBc a|Bc| aBc"_s);
        _defaults->setObject(u"groupContentsSortOrder"_s, 0);
        QCOMPARE(lists({ 2, 5, 6 }), u"Bca a|Bc| Bca"_s);
    }

    void scanFolders_areScannedOnceWhenIdle_withEveryStepPosted()
    {
        start(u"x/a y/b"_s);
        QStringList steps;
        connect(_center.get(), &NotificationCenter::N_ShowProgressStep, this,
            [&](int step, int count, const QString &label) {
                const QString busy = _manager->isBusyScanning() ? u"busy"_s : u"done"_s;
                steps.append(u"%1/%2 %3 "_s.arg(step).arg(count).arg(busy) + label.right(1));
            });
        _manager->startFullScanTimer();
        setFolders(u"absent y"_s);
        QCOMPARE(lists({ 5 }), u"a|b|"_s);
        QTRY_COMPARE(lists({ 5 }), u"b|"_s);
        QCOMPARE(steps.join(u' '), u"1/2 busy t 2/2 busy y 0/0 done "_s);
        QVERIFY(!_manager->isFullScanPending());
    }

    void scanFolders_ofAnOlderOrAWrongKind()
    {
        UserDefaults defaults;
        defaults.setObject(u"scanDirectories"_s, QVariantList { u"~/a/"_s, u"/b"_s });
        ScanFolders::registerDefaults(defaults, _desktop->searchPaths());
        const QStringList converted { QDir::homePath() + u"/a"_s, u"/b"_s };
        QCOMPARE(ScanFolders::pathsToScan(defaults), converted);
        QVERIFY(!defaults.hasStoredValue(u"scanDirectories"_s));
        const QVariantMap number { { u"path"_s, 7 } };
        const QVariantMap good { { u"path"_s, u"/c/../d"_s } };
        defaults.setObject(u"searchDirectories"_s, QVariantList { 7, QVariantMap(), number, good });
        QCOMPARE(ScanFolders::pathsToScan(defaults), QStringList(u"/d"_s));
        const QString endless = u"/a"_s.repeated(1'000'000);
        QCOMPARE(ScanFolders::withoutNested(
                     { u"/a/b"_s, u"/a"_s, u"/ab/c"_s, u"/a"_s, u"d"_s, endless }),
            QStringList({ u"/a"_s, u"/ab/c"_s }));
        QCOMPARE(ScanFolders::withoutNested({ u"/a"_s, u"/"_s }), QStringList(u"/"_s));
    }

    void theLiveQuery_isAskedForTheFoldersToScan()
    {
        setFolders(u"x x/t x/t/u y"_s);
        start(u"x/ab y/c"_s);
        const FakeLiveQuery &query = _desktop->fakeQuery;
        QVERIFY(query.scope.folders.isEmpty());
        Q_EMIT _center->applicationDidFinishLaunching();
        const auto in = [&](const QString &name) { return _desktop->tree.path(name); };
        QCOMPARE(query.scope.folders, QStringList({ in(u"x"_s), in(u"y"_s) }));
        QCOMPARE(query.scope.nested, QStringList({ in(u"x/t"_s), in(u"x/t/u"_s) }));
        const QList<QStringList> known { { path(u"x/a"_s), path(u"x/b"_s) }, { path(u"y/c"_s) } };
        QCOMPARE(query.known, known);
        QCOMPARE(query.scope.levels, 4);
        QCOMPARE(query.scope.kindOf(path(u"x/a"_s)), LiveQuery::Kind::Result);
        QCOMPARE(query.scope.kindOf(in(u"x"_s)), LiveQuery::Kind::Folder);
        QCOMPARE(query.scope.kindOf(in(u"x/.app"_s)), LiveQuery::Kind::Neither);
        _defaults->setObject(u"maxFolderRecursionDepth"_s, 250);
        QCOMPARE(query.scope.levels, 99);
        setFolders(u"y"_s);
        QTRY_COMPARE(query.scope.folders, QStringList(in(u"y"_s)));
        _defaults->setObject(u"searchDirectories"_s, QVariantList());
        QTRY_VERIFY(query.scope.folders.isEmpty());
        _manager.reset();
    }

    void anUpdate_asksForAScanOnlyIfSomethingCameOrWent()
    {
        start(u"x/ab y/c"_s);
        const QStringList known { path(u"x/b"_s) }, unknown { path(u"x/n"_s) };
        const std::pair<LiveQuery::Update, bool> rows[] { { { known, {}, known, false }, false },
            { { unknown, {}, {}, false }, true }, { { {}, known, {}, false }, true },
            { { {}, {}, unknown, false }, true }, { { {}, {}, {}, true }, true } };
        for (const auto &[update, isCounted] : rows) {
            Q_EMIT _desktop->fakeQuery.didUpdate(update);
            QCOMPARE(_manager->isFullScanPending(), isCounted);
            Q_EMIT _center->N_ScanPathListChanged();
            QVERIFY(!_manager->isFullScanPending());
        }
    }

    void aChangedEntry_isShownAnewWithoutAScan()
    {
        start(u"x/abc"_s);
        settle();
        _desktop->fakeItems.displayNames = { { path(u"x/a"_s), u"Zebra"_s } };
        _desktop->fakeIcons.colors = { { u"a"_s, Qt::blue } };
        QSignalSpy icons(_center.get(), &NotificationCenter::N_AppIconChanged);
        announced();
        Q_EMIT _desktop->fakeQuery.didUpdate({ {}, {}, { path(u"x/a"_s), path(u"x/b"_s) }, false });
        QCOMPARE(lists({ 2 }), u"bca"_s);
        QVERIFY(app(u"x/a"_s)->containsLetter('z') && announced().contains(u"includedApps1D"_s));
        settle();
        QCOMPARE(app(u"x/a"_s)->icon().pixelColor(0, 0), QColor(Qt::blue));
        for (const QVariantList &icon : icons) {
            QCOMPARE(icon.value(0).value<AppRef>(), app(u"x/a"_s));
        }
        QVERIFY(!icons.isEmpty() && !_manager->isFullScanPending());
    }

    void aScanThatFindsNothingNew_touchesNothing()
    {
        start(u"x/ab y/c"_s);
        settle();
        const QString file = _desktop->tree.path(u"user/Ortu/AllApplications.plist"_s);
        QString error;
        const auto number = Items::fileNumberOf(file, &error);
        QSignalSpy icons(_center.get(), &NotificationCenter::N_AppIconChanged);
        _manager->fullScan();
        settle();
        QCOMPARE(icons.size(), 0);
        QVERIFY(number && number == Items::fileNumberOf(file, &error));
        addApps(u"y/d"_s);
        _manager->fullScan();
        QVERIFY(number != Items::fileNumberOf(file, &error));
    }

    void orderByColour_comesOnceAfterTheLastChange()
    {
        _desktop->fakeIcons.colors = { { u"b"_s, Qt::green }, { u"c"_s, Qt::white },
            { u"d"_s, Qt::red }, { u"e"_s, Qt::blue }, { u"f"_s, Qt::black } };
        start(u"x/abcdef y/da"_s);
        _manager->excludeApp(app(u"x/e"_s));
        _manager->excludeApp(app(u"x/d"_s));
        settle();
        QVERIFY(_manager->isColorSortPending());
        QSignalSpy changes(_manager.get(), &OTAppManager::didChange);
        QTRY_VERIFY(!_manager->isColorSortPending());
        // Another order was asked for.
        QVERIFY(changes.isEmpty());
        QCOMPARE(lists({ 5, 2, 4 }), u"abcdef|ad| aabcdf ed"_s);

        _defaults->setObject(u"groupContentsSortOrder"_s, 2);
        QCOMPARE(lists({ 5, 2, 4 }), u"adbecf|ad| aadbcf de"_s);
        settle();
        changes.clear();
        QImage darkBlue(4, 4, QImage::Format_ARGB32_Premultiplied);
        darkBlue.fill(Qt::darkBlue);
        QElapsedTimer sinceLast;
        for (const QString &name : { u"x/a"_s, u"x/b"_s, u"x/c"_s }) {
            app(name)->setIcon(darkBlue);
            sinceLast.start();
        }
        QTRY_VERIFY(!_manager->isColorSortPending());
        QVERIFY(sinceLast.elapsed() > OTAppManager::SortColorDelay / 2);
        // Equal ones stay as they stood.
        QCOMPARE(lists({ 5 }), u"dabecf|ad|"_s);
        QCOMPARE(std::count(changes.begin(), changes.end(), QVariantList { u"allApps"_s }), 1);
    }

    void orderByColour_followsItsPreferences()
    {
        _desktop->fakeIcons.colors = { { u"b"_s, Qt::green }, { u"c"_s, Qt::white },
            { u"d"_s, Qt::black } };
        _defaults->setObject(u"groupContentsSortOrder"_s, 2);
        start(u"x/dcba"_s);
        const auto order = [&](const QString &key, const QVariant &value) {
            _defaults->setObject(u"colorSort"_s + key, value);
            settle();
            _manager->sortAllArrays();
            return lists({ 5 });
        };
        QCOMPARE(order(u"MinLuminosity"_s, 0.5), u"abcd|"_s);
        QCOMPARE(order(u"WrapHue"_s, 30.0), u"bacd|"_s);
        QCOMPARE(order(u"GraysBySecondaryColor"_s, true), u"bacd|"_s);
        QCOMPARE(app(u"x/d"_s)->colorSortValue(), 2.0);
        // Everything is grey: by lightness, white, green, red, black.
        QCOMPARE(order(u"MinSaturation"_s, 5.0), u"cbad|"_s);
        QCOMPARE(order(u"MinSaturation"_s, 0.14), u"bacd|"_s);
        // No icon has more colour than that, and two have nothing else.
        QCOMPARE(order(u"GrayThreshold"_s, 1.0), u"cdba|"_s);
    }

    // All icons are red.
    void correctedColours_areKept_takenOver_andTakenBack()
    {
        const SortedColor blue { 0, 0.25, 1 };
        _defaults->setObject(u"groupContentsSortOrder"_s, 2);
        start(u"x/abc"_s);
        settle();
        const auto order = [&] {
            settle();
            _manager->sortAllArrays();
            return lists({ 5 });
        };
        _manager->correctColor(app(u"x/a"_s), blue);
        QCOMPARE(lists({ 5 }), u"bca|"_s);
        const QString file = _desktop->tree.path(u"user/Ortu/ColorCorrections.plist"_s);
        const QVariantMap stored { { path(u"x/a"_s),
            QVariantMap { { u"red"_s, 0.0 }, { u"green"_s, 0.25 }, { u"blue"_s, 1.0 } } } };
        QCOMPARE(PropertyList::readFile(file).value.toMap(), stored);
        _manager->undoLastChange();
        QVERIFY(!app(u"x/a"_s)->correctedColor());
        QCOMPARE(lists({ 5 }), u"bca|"_s); // those that are alike keep their order
        _manager->redoLastChange();
        // Neither another start nor another icon takes it away.
        _desktop->fakeIcons.colors = { { u"a"_s, Qt::green }, { u"b"_s, Qt::magenta } };
        start();
        QCOMPARE(order(), u"cab|"_s);
        OTAppManager other(*_desktop);
        other.rescanAllAppsPrioritizingGroup(-1);
        other.correctColor(other.appForPath(path(u"x/c"_s)), SortedColor { 1, 1, 1 });
        QTRY_COMPARE(lists({ 5 }), u"abc|"_s);
        _manager->correctColor(app(u"x/a"_s), {});
        QTRY_VERIFY(!other.appForPath(path(u"x/a"_s))->correctedColor());
        QCOMPARE(PropertyList::readFile(file).value.toMap().size(), 1);
        // A copy of an entry has the colour of the original until it goes.
        QFile::remove(path(u"x/c"_s));
        addApps(u"y/d"_s);
        _desktop->fakeItems.standIns = { { path(u"x/c"_s), path(u"y/d"_s) } };
        _manager->fullScan();
        QVERIFY(app(u"y/d"_s)->correctedColor());
        _manager->correctColor(app(u"y/d"_s), blue);
        QCOMPARE(PropertyList::readFile(file).value.toMap().keys(), QStringList(path(u"x/c"_s)));
    }

    void runningApps_keepTheirEntries()
    {
        FakeRunning &running = _desktop->running;
        running.paths = QStringList { u"/r/b"_s, u"/r/c"_s };
        start();
        QCOMPARE(lists({ 0 }), u"bc"_s);
        const AppRef c = _manager->runningApps().last();
        running.launch({ u"/r/c"_s, u"/r/b"_s, u"/r/a"_s });
        QCOMPARE(announced(), u"runningApps"_s);
        QCOMPARE(_manager->runningApps().first(), c);
        QCOMPARE(lists({ 0 }), u"cba"_s);
        _defaults->setObject(u"sortRunningByLaunchOrder"_s, false);
        QCOMPARE(lists({ 0 }), u"abc"_s);
        running.launch({ u"/r/c"_s, u"/r/b"_s });
        QCOMPARE(lists({ 0 }), u"bc"_s);
        running.bringToFront(u"/r/c"_s);
        QVERIFY(_manager->activeApp() && _manager->activeApp()->path() == u"/r/c"_s);
    }

    void lastActiveApp_isTheLastInFrontOtherThanThisProgram()
    {
        FakeRunning &running = _desktop->running;
        running.own = u"/S"_s;
        running.active = u"/c"_s;
        start();
        const auto lastAmong = [&](const QString &paths) {
            running.launch(paths.split(u' ', Qt::SkipEmptyParts));
            const AppRef last = _manager->lastActiveApp();
            return last ? last->name() : QString();
        };
        QCOMPARE(lastAmong({}), QString());
        QCOMPARE(lastAmong(u"/a /b /c /S"_s), u"c"_s);
        for (const QString &path : { u"/a"_s, u"/b"_s, u"/a"_s, u"/S"_s }) {
            running.bringToFront(path);
        }
        QCOMPARE(lastAmong(u"/a /b /c /S"_s), u"a"_s);
        QCOMPARE(lastAmong(u"/b /c /S"_s), u"b"_s);
        // Where no other was in front, the last that runs.
        QCOMPARE(lastAmong(u"/d /S"_s), u"d"_s);
        QCOMPARE(lastAmong(u"/S"_s), u"S"_s);
        // This program's own icon is loaded once.
        running.launch({});
        running.bringToFront(u"/S"_s);
        const AppRef self = _manager->activeApp();
        running.bringToFront(u"/a"_s);
        running.bringToFront(u"/S"_s);
        QVERIFY(_manager->activeApp() == self && _desktop->fakeIcons.asked().count(u"/S"_s) <= 1);
    }

private:
    QString path(const QString &name) const { return _desktop->tree.path(name + u".app"_s); }
    AppRef app(const QString &name) { return _manager->appForPath(path(name)); }
    void addApps(const QString &folders)
    {
        for (const QString &folder : folders.split(u' ', Qt::SkipEmptyParts)) {
            for (const QChar letter : folder.mid(2)) {
                _desktop->tree.add(folder.left(2) + letter + u".app"_s, {});
            }
        }
    }
    // One bunch a folder.
    void addFavourites(const QString &folders)
    {
        for (const QString &folder : folders.split(u' ')) {
            const qsizetype bunch = _manager->userApps().size();
            for (const QChar letter : folder.mid(2)) {
                _manager->moveApp(app(folder.left(2) + letter), UserGroup, bunch, 9);
            }
        }
    }
    void setFolders(const QString &folders)
    {
        QVariantList list;
        for (const QString &folder : folders.split(u' ')) {
            list.append(QVariantMap { { u"path"_s, _desktop->tree.path(folder) } });
        }
        _defaults->setObject(u"searchDirectories"_s, list);
    }
    void start(const QString &folders = {})
    {
        addApps(folders);
        _manager.reset();
        _manager = std::make_unique<OTAppManager>(*_desktop);
        connect(_manager.get(), &OTAppManager::willChange, this,
            [this](const QString &key) { _open.append(key); });
        connect(_manager.get(), &OTAppManager::didChange, this, [this](const QString &key) {
            _closed.append(_open.removeOne(key) ? key : u"unopened "_s + key);
        });
        _manager->rescanAllAppsPrioritizingGroup(-1);
        announced();
    }
    // The lists of some groups as text, in the shape they have.
    QString lists(const QList<int> &groups)
    {
        QStringList texts;
        for (const int group : groups) {
            const AppArray array = _manager->appArrayForGroup(group);
            texts.append(
                array.isFlat() ? BunchText::text(array.apps()) : BunchText::text(array.bunches()));
        }
        return texts.join(u' ');
    }
    static void settle() // until no icon is on its way
    {
        QTRY_COMPARE(IconLoader::sharedIconLoader().pendingCount(), 0);
    }
    QString files() const
    {
        return QDir(_desktop->tree.path(u"user/Ortu"_s)).entryList(QDir::Files).join(u' ');
    }
    void removeFiles() { QDir(_desktop->tree.path(u"user/Ortu"_s)).removeRecursively(); }
    // The lists that were announced before and after a change since the last call, sorted.
    QString announced()
    {
        QStringList keys = std::exchange(_closed, {});
        for (const QString &key : std::as_const(_open)) {
            keys.append(u"unclosed "_s + key);
        }
        keys.sort();
        keys.removeDuplicates();
        return keys.join(u' ');
    }

    std::unique_ptr<NotificationCenter> _center;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FakeDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
    QStringList _open, _closed;
};

QTEST_GUILESS_MAIN(OTAppManagerTest)
#include "OTAppManagerTest.moc"
