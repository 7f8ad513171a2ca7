#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/BunchText.h"
#include "catalogue/OTAppManager.h"
#include "catalogue/files/SettingsExchange.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "support/files/PropertyList.h"

#include <QRandomGenerator>

// A catalogue of the applications a to h. Their favourites in both orders, and their exclusions in
// the order of the alphabet, are one line: "ab|c| cab h".
class ArrangementHistoryTest : public TestCase
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
        const QVariantMap folder { { u"path"_s, _desktop->tree.path(u"x"_s) } };
        _defaults->registerDefaults(
            { { u"searchDirectories"_s, QVariantList { folder } }, { u"maximumIconSize"_s, 16 } });
        for (const QChar letter : u"abcdefgh"_s) {
            _desktop->tree.add(u"x/"_s + letter + u".app"_s, {});
        }
    }

    void anyChanges_areTakenBackAndDoneAgainOneByOne()
    {
        for (int round = 0; round < 40; ++round) {
            init();
            // A bunch is empty where its applications are on another disk.
            const QVariantList bunches { QStringList(path(u'a')), QStringList(),
                QStringList { path(u'b'), path(u'c') } };
            _desktop->tree.add(u"user/Ortu/UserApplications.plist"_s, PropertyList::toXml(bunches));
            _manager = started();
            QVERIFY(!_manager->undoLastChange() && !_manager->redoLastChange());
            // What the history goes through, the oldest first, and where it stands.
            _states = QStringList(text(*_manager));
            QCOMPARE(_states, QStringList(u"a||bc| abc "_s));
            _present = 0;
            for (int count = 0; count < 50; ++count) {
                step();
                QCOMPARE(text(*_manager), _states[_present]);
                QCOMPARE(_manager->canUndo(), _present > 0);
                QCOMPARE(_manager->canRedo(), _present < _states.size() - 1);
                const QStringList flat = pathsFromApps(_manager->userApps1D());
                QCOMPARE(pathsOf(pathArraysFromAppArrays(_manager->userApps())), pathsOf({ flat }));
                QCOMPARE(flattened(_manager->userApps()).size(), flat.size());
                QVERIFY(_manager->userApps().count(AppList()) < 2);
            }
            _manager->fullScan();
            QCOMPARE(text(*started()), _states[_present]);
            while (_present > 0) {
                QVERIFY(_manager->undoLastChange());
                QCOMPARE(text(*_manager), _states[--_present]);
            }
            QVERIFY(!_manager->undoLastChange());
        }
    }

    // It follows at once, does not bring back what it had, and takes back its own steps alone.
    void anImport_isTakenOver()
    {
        UserDefaults preferences(_desktop->tree.path(u"Preferences.plist"_s));
        _manager = started();
        for (const QChar letter : u"abc"_s) {
            _manager->moveApp(app(letter), UserGroup, 0, 9);
        }
        _manager->excludeApp(app(u'h'));
        const auto document = [this](const QString &first, const QString &second) {
            return PropertyList::toXml(QVariantMap { { u"OrtuSettingsVersion"_s, 1 },
                { u"UserApplications"_s, QVariantList { paths(first), paths(second) } },
                { u"ExcludedApplications"_s, QStringList(path(u'g')) } });
        };
        const SettingsExchange exchange(_desktop->searchPaths(), preferences);
        QCOMPARE(exchange.importData(document(u"e"_s, u"ca"_s)).error, QString());
        QTRY_COMPARE(text(*_manager), u"e|ca| eca g"_s);
        _manager->moveApp(app(u'd'), UserGroup, 0, 0);
        QCOMPARE(text(*started()), u"de|ca| ecad g"_s);
        // "d" came, "h" was excluded, "c" came.
        for (const QString &state : { u"e|ca| eca g"_s, u"e|ca| eca g"_s, u"e|a| ea g"_s }) {
            QVERIFY(_manager->undoLastChange());
            QCOMPARE(text(*_manager), state);
        }
    }

    // Only what a step was about goes back to where it stood, beside the same neighbours.
    void changesOfAnotherProgram_areLeftAlone()
    {
        _manager = started();
        QSignalSpy changes(_manager.get(), &OTAppManager::historyChanged);
        const auto other = started();
        const auto others = [&](QChar letter) { return other->appForPath(path(letter)); };
        for (const QChar letter : u"abcde"_s) {
            _manager->moveApp(app(letter), UserGroup, letter < u'd' ? 0 : 9, 9);
        }
        _manager->excludeApp(app(u'h'));
        _manager->removeAppsFromUserApps({ app(u'd'), app(u'e') });
        QTRY_COMPARE(text(*other), u"abc| abc h"_s);
        other->moveAppNewBunchAtIndex(others(u'f'), UserGroup, 0);
        other->moveApp(others(u'c'), User1DGroup, 0, 0);
        other->includeApp(others(u'h'));
        // It hears of the others by its own write.
        _manager->moveAppNewBunchAtIndex(app(u'b'), UserGroup, 1);
        QTRY_COMPARE(text(*_manager), u"f|ac|b| cabf "_s);
        const QStringList undone { u"f|abc| cabf "_s, u"f|abc|d|e| cdeabf "_s,
            u"f|abc|d|e| cdeabf "_s, u"f|abc|d| cdabf "_s };
        for (const QString &state : undone) {
            QVERIFY(_manager->undoLastChange());
            QCOMPARE(text(*_manager), state);
        }
        for (const QString &state :
            { undone[2], undone[1] + u'h', undone[0] + u'h', u"f|ac|b| cabf h"_s }) {
            QVERIFY(_manager->redoLastChange());
            QCOMPARE(text(*_manager), state);
        }
        QTRY_COMPARE(text(*other), text(*_manager));
        // What the catalogue does of itself is no step.
        QCOMPARE(_manager->undoLastChange()->kind, ArrangementStep::Kind::Move);
        _manager->removeAppsFromAllArrays({ app(u'a') });
        QVERIFY(_manager->canRedo());
        QCOMPARE(changes.size(), 8 + 4 + 4 + 1);
    }

private:
    QString path(QChar letter) const { return _desktop->tree.path(u"x/"_s + letter + u".app"_s); }
    AppRef app(QChar letter) { return _manager->appForPath(path(letter)); }
    std::unique_ptr<OTAppManager> started()
    {
        auto manager = std::make_unique<OTAppManager>(*_desktop);
        manager->rescanAllAppsPrioritizingGroup(-1);
        return manager;
    }
    static QString text(const OTAppManager &manager)
    {
        QString excluded = BunchText::text(manager.excludedApps1D());
        std::sort(excluded.begin(), excluded.end());
        return BunchText::text(manager.userApps()) + u' ' + BunchText::text(manager.userApps1D())
            + u' ' + excluded;
    }
    QStringList paths(const QString &letters) const
    {
        QStringList paths;
        for (const QChar letter : letters) {
            paths.append(path(letter));
        }
        return paths;
    }
    int random(int end) { return _random.bounded(end); }
    // One step of the catalogue, and of the states that it should go through.
    void step()
    {
        const int choice = random(10);
        if (choice < 2) {
            _manager->undoLastChange();
            _present = std::max<qsizetype>(0, _present - 1);
        } else if (choice < 4) {
            _manager->redoLastChange();
            _present = std::min(_states.size() - 1, _present + 1);
        } else {
            changeAnything();
            if (const QString now = text(*_manager); now != _states[_present]) {
                _states = _states.mid(0, _present + 1).mid(_present < 20 ? 0 : 1) << now;
                _present = _states.size() - 1;
            }
        }
    }
    // Most indexes lie within the lists, some beyond either end. It may change nothing.
    void changeAnything()
    {
        const AppRef any = app(QChar(u'a' + random(8)));
        const int bunch = random(9) - 1;
        const int index = random(11) - 1;
        switch (random(6)) {
        case 0:
        case 1:
            _manager->moveApp(any, UserGroup, bunch, index);
            break;
        case 2:
            _manager->moveApp(any, User1DGroup, 0, index);
            break;
        case 3:
            _manager->moveAppNewBunchAtIndex(any, UserGroup, bunch);
            break;
        case 4:
            _manager->removeAppsFromUserApps(_manager->userApps1D().mid(bunch + 1, index / 3));
            break;
        default:
            if (indexOfApp(_manager->excludedApps1D(), any) < 0) {
                _manager->excludeApp(any);
            } else {
                _manager->includeApp(any);
            }
        }
    }

    QRandomGenerator _random { 7 };
    QStringList _states;
    qsizetype _present = 0;
    std::unique_ptr<NotificationCenter> _center;
    std::unique_ptr<UserDefaults> _defaults;
    std::unique_ptr<FakeDesktop> _desktop;
    std::unique_ptr<OTAppManager> _manager;
};

QTEST_GUILESS_MAIN(ArrangementHistoryTest)
#include "ArrangementHistoryTest.moc"
