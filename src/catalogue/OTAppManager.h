// The catalogue: every application that the program knows, in the ten lists that the grid shows as
// groups.
//
// It owns the entries, interned by path, and rebuilds the derived lists whenever the scan result or
// the exclusions change. Every change of a list is announced before and after, by the list's name;
// the four lists that outlive the program are written when they change, not at the end, and what
// another program changes in their files is taken over. Exclusions that no scan finds are left out
// of the lists, but not of the files, and come back with what they stand for. Main thread only.

#pragma once

#include "catalogue/AppArray.h"
#include "catalogue/AppSorting.h"
#include "catalogue/ArrangementHistory.h"
#include "catalogue/Favourites.h"
#include "catalogue/NewApplications.h"
#include "catalogue/files/CatalogueFiles.h"
#include "icons/IconParameters.h"
#include "platform/LiveQuery.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QUrl>

#include <optional>

class Desktop;

// The groups, by the numbers that files, preferences and the command line use.
enum AppGroup {
    RunningGroup = 0,
    IncludedGroup = 1,
    Included1DGroup = 2,
    ExcludedGroup = 3,
    Excluded1DGroup = 4,
    AllGroup = 5,
    All1DGroup = 6,
    MissingGroup = 7,
    UserGroup = 8,
    User1DGroup = 9,
    GroupCount = 10,
};

class OTAppManager : public QObject
{
    Q_OBJECT

public:
    // The time in milliseconds from the last sign of a change on disk to the scan that follows it.
    static constexpr int FullScanDelay = 5000;
    // And from the last change of an icon to the sorting by colour that follows it.
    static constexpr int SortColorDelay = 1000;

    // What the catalogue is for. Preview: nothing is written or moved on disk. Inspection: no icons
    // are loaded either.
    enum class Use { Normal, Preview, Inspection };

    // The desktop must outlive the catalogue.
    explicit OTAppManager(Desktop &desktop, Use use = Use::Normal, QObject *parent = nullptr);
    ~OTAppManager() override;

    Desktop &desktop() const { return _desktop; }
    Use use() const { return _use; }

    // Registers the preferences that the catalogue reads. To be called once, before anything reads
    // them.
    static void registerDefaults();
    // What the preferences ask of every icon.
    static IconParameters iconParameters();

    // A cold start uses the saved scan result and scans only when there is none; a catalogue that
    // is filled already is scanned again. The icons of the given group come first; -1 means all
    // applications.
    void rescanAllAppsPrioritizingGroup(int group);

    const BunchList &allApps() const { return _allApps; }
    const AppList &allApps1D() const { return _allApps1D; }
    const BunchList &includedApps() const { return _includedApps; }
    const AppList &includedApps1D() const { return _includedApps1D; }
    const BunchList &excludedApps() const { return _excludedApps; }
    const AppList &excludedApps1D() const { return _excludedApps1D; }
    const BunchList &userApps() const { return _favourites.bunches(); }
    const AppList &userApps1D() const { return _favourites.flat(); }
    const AppList &missingApps() const { return _missingApps; }
    const AppList &runningApps();
    AppList everythingSet() const { return _everythingSet.values(); }

    // Those that were installed and have not been used yet.
    NewApplications &newApplications() { return _newApplications; }

    // The list of a group; the null array for a number that is no group.
    AppArray appArrayForGroup(int group);

    // The catalogue's one entry for a path, made when there is none yet.
    AppRef appForPath(const QString &path);
    // Null when there is none yet.
    AppRef knownAppForPath(const QString &path) const;
    AppList appsFromPaths(const QStringList &paths);
    BunchList appArraysFromPathArrays(const QList<QStringList> &arrays);

    qsizetype allAppsTotalCount() const;
    // Size of the largest bunch; 0 when there is none.
    qsizetype allAppsLongestArrayCount() const;
    qsizetype includedAppsLongestArrayCount() const;

    void excludeApp(const AppRef &app);
    void includeApp(const AppRef &app);
    void removeAppsFromUserApps(const AppList &apps);
    // Forgets applications altogether until the next scan. The saved scan result is not rewritten.
    void removeAppsFromAllArrays(const AppList &apps);
    // Moves an application within the favourites, or into them. Nothing happens for a group other
    // than the two of the favourites, or without an application.
    void moveApp(const AppRef &app, int toGroup, qsizetype bunch, qsizetype index);
    // The same into a new bunch; for the bunched favourites only.
    void moveAppNewBunchAtIndex(const AppRef &app, int toGroup, qsizetype newBunchAtIndex);

    // Says which colour of an application counts in the order by colour, from now on and in every
    // run; none for what is measured. The order is right at once.
    void correctColor(const AppRef &app, const std::optional<SortedColor> &color);

    // The changes of favourites, exclusions and colours by the six operations above, whatever asked
    // for them. Those that the catalogue, or another program, makes of itself are not among them.
    const ArrangementHistory &history() const { return _history; }
    bool canUndo() const { return _history.nextToUndo(); }
    bool canRedo() const { return _history.nextToRedo(); }
    // Takes back the last change, or does the last one again that was taken back, and returns it;
    // nothing when there is none. See ArrangementStep::favouritesOn() for what another change
    // since then makes of it.
    std::optional<ArrangementStep> undoLastChange();
    std::optional<ArrangementStep> redoLastChange();

    // Excludes what is pinned in the desktop's dock, and every application whose name holds a word
    // of the exclusion list, as far as a scan has found them. No step of the history.
    void autoExcludeDockApps(bool dockApps, bool namedApps);
    // On a first start, by the words alone; nothing where exclusions are known already, from an
    // import for instance.
    void excludeOnFirstStart();
    // Looks for favourites that are gone, by name, among the applications that are no favourites.
    void locateUserApps();
    // Tries once more to write what could not be written of favourites and exclusions.
    void writeAgain() { _files.writeAgain(); }

    void rebuildDependentApps();
    void rebuildEverythingSet();
    void rebuildAllApps1D();
    void rebuildUserApps1D();
    // Sorts a list by the preferred order. The favourites keep the user's, and the running
    // applications the order of their launch where that is preferred.
    void sortArray(AppList &array);
    void sortAllApps();
    void sortAllArrays();
    // Goes back to the defaults of the preferences by which colours are judged.
    void resetColorSortingOptions();
    bool isColorSortPending() const { return _sortColorTimer.isActive(); }

    QStringList pathsToScan() const;
    bool isBusyScanning() const { return _isBusyScanning; }
    // Whether the scan that goes on follows a change on disk: no user waits for it.
    bool isScanInBackground() const { return _isScanInBackground; }
    void scanSearchFoldersForAllApps();
    void fullScan();
    // Scans FullScanDelay after the last call.
    void startFullScanTimer();
    bool isFullScanPending() const { return _fullScanTimer.isActive(); }
    // The folders that a live query looks through: those to scan that lie in no other one.
    QStringList spotlightScanPaths() const;
    // Follows what comes, goes and changes in the folders to scan, from what is listed now on. A
    // catalogue that writes nothing follows nothing.
    void startSpotlightQuery();

    void readAllAppsFromDisk();
    void readExcludedApps1DFromDisk();
    void readUserAppsFromDisk();
    void readColorsFromDisk();

    void loadIconsForApps(const AppArray &apps);
    void loadAllIconsPrioritizingGroup(int group);
    // Every application shows the placeholder until its icon has been loaded again.
    void clearIconsForAllApps();

    bool isAppRunning(const AppRef &app) const;
    // The application in front; it need not be in any list. Null when there is none.
    AppRef activeApp();
    // The application that was in front before this program.
    AppRef lastActiveApp();
    void quitApp(const AppRef &app) const;
    // Each application of each bunch of all applications, so one may come twice.
    AppList allAppsThatCanAcceptURL(const QUrl &document) const;
    AppList allAppsThatPreferURL(const QUrl &document) const;

Q_SIGNALS:
    // A list changes or has changed: "allApps", "allApps1D", "includedApps" and so on, or
    // "everyApp".
    void willChange(const QString &key);
    void didChange(const QString &key);
    void isBusyScanningChanged(bool isBusyScanning);
    // What can be taken back or done again is another step now.
    void historyChanged();

private:
    class ChangeScope;

    void preferenceDidChange(
        const QString &key, const QVariant &oldValue, const QVariant &newValue);
    void scanPathListDidChange();
    void fullScanTimerFire();
    void queryDidUpdate(const LiveQuery::Update &update);
    void reloadApps(const AppList &apps);
    bool isListed(const AppRef &app);
    void setAllApps(const BunchList &found);
    void sortGroup(BunchList &bunches, AppList &flat, const QStringList &keys);
    bool isAnnouncementDue() const { return _isScanOther || _areNamesChanged; }
    void scanDidEnd();
    void appIconChanged(const AppRef &app);
    void sortIconColorTimerFire();
    void showProgressStep(int step, int count, const QString &label);
    void runningAppsListDidChange();
    void handleAppFrontSwitched();
    AppList launchedOTApps() const;
    AppRef ownApp();
    void reloadAllIcons();
    void takeKeptIcons();

    // Whether the lists on disk can hold its path; one log line when they cannot.
    static bool canKeep(const AppRef &app);
    // These answer whether anything changed.
    bool addExclusion(const AppRef &app);
    bool removeExclusion(const AppRef &app);
    // What moving an application into the favourites is called.
    ArrangementStep::Kind kindOfMove(const AppRef &app) const;
    // Announces and writes other favourites; the first also keeps the step in the history.
    void arrangeUserApps(
        ArrangementStep::Kind kind, const Favourites &arranged, const QStringList &paths);
    void setUserApps(const Favourites &favourites, const QStringList &changed);
    void addToHistory(const ArrangementStep &step);
    void goTo(ArrangementStep::Side side, const ArrangementStep &step);
    void findMissingApps();
    void divideAllApps();
    void takeOverFiles();
    void followStandIns();
    // A stored list by what stands in for its paths.
    PathBunches shownPaths(CatalogueFiles::List list) const;
    void takeStoredExclusions();
    void takeStoredUserApps();
    void takeStoredColors();
    void takeCorrectedColor(const AppRef &app) const;
    void setCorrectedColor(const QString &path, const std::optional<SortedColor> &color);
    // These tell the files what was moved, removed or added.
    void writeExcludedApps(const AppList &changed);
    void writeUserApps(const QStringList &changed, const QStringList &changedInFlatOrder = {});
    // Shown paths, which the files may call otherwise.
    void store(const QList<CatalogueFiles::Change> &changes);
    void writeAllApps();
    SortOrder sortOrder() const;
    static bool sortsRunningByLaunchOrder();
    // The preferences by which colours are judged.
    static const QStringList &colorSortingKeys();

    Desktop &_desktop;
    Use _use;
    CatalogueFiles _files;
    NewApplications _newApplications;
    AppList _runningApps;
    AppList _frontApps;
    QString _ownPath;
    AppRef _ownApp;
    QHash<QString, AppRef> _everythingSet;
    // By the paths of the applications that have one.
    QHash<QString, SortedColor> _correctedColors;
    BunchList _allApps;
    AppList _allApps1D;
    BunchList _includedApps;
    AppList _includedApps1D;
    BunchList _excludedApps;
    AppList _excludedApps1D;
    Favourites _favourites;
    ArrangementHistory _history;
    AppList _missingApps;
    bool _isBusyScanning = false;
    bool _isScanInBackground = false;
    // The paths of _allApps1D, once they were asked for.
    std::optional<PathSet> _listedPaths;
    bool _hasQuery = false;
    // What has changed in the lists, and is not announced yet.
    bool _isScanOther = false;
    bool _areNamesChanged = false;
    int _prioritizedGroup = AllGroup;
    QTimer _fullScanTimer;
    QTimer _sortColorTimer;
};
