// The part of the catalogue that decides which icons are loaded, in which order, and when their
// colours are sorted.

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"

IconParameters OTAppManager::iconParameters()
{
    const UserDefaults &defaults = UserDefaults::standard();
    IconParameters parameters;
    parameters.maximumIconSize = defaults.integerForKey(QStringLiteral("maximumIconSize"));
    parameters.grayThreshold = defaults.floatForKey(QStringLiteral("colorSortGrayThreshold"));
    parameters.graysBySecondaryColor =
        defaults.boolForKey(QStringLiteral("colorSortGraysBySecondaryColor"));
    parameters.wrapHue = defaults.floatForKey(QStringLiteral("colorSortWrapHue"));
    parameters.minSaturation = defaults.floatForKey(QStringLiteral("colorSortMinSaturation"));
    parameters.minLuminosity = defaults.floatForKey(QStringLiteral("colorSortMinLuminosity"));
    return parameters;
}

void OTAppManager::loadIconsForApps(const AppArray &apps)
{
    if (apps.count() == 0) {
        return;
    }
    const IconParameters parameters = iconParameters();
    for (const AppRef &app : apps.apps()) {
        takeCorrectedColor(app);
        if (_use == Use::Inspection) {
            app->refreshNameAndPath();
        } else {
            app->setIconParameters(parameters);
        }
    }
}

void OTAppManager::loadAllIconsPrioritizingGroup(int group)
{
    AppList first = _includedApps1D;
    switch (group) {
    case ExcludedGroup:
    case Excluded1DGroup:
        first = _excludedApps1D;
        break;
    case AllGroup:
    case All1DGroup:
        first = _allApps1D;
        break;
    case UserGroup:
    case User1DGroup:
        first = userApps1D();
        break;
    default:
        break;
    }
    _prioritizedGroup = group;
    AppList rest = everythingSet();
    removeFromList(rest, PathSet(first));
    loadIconsForApps(AppArray(first));
    loadIconsForApps(AppArray(rest));
}

void OTAppManager::clearIconsForAllApps()
{
    for (const AppRef &app : std::as_const(_allApps1D)) {
        app->resetIconToDot();
    }
    loadIconsForApps(AppArray(_allApps1D));
}

void OTAppManager::reloadAllIcons()
{
    for (const AppRef &app : everythingSet() + _runningApps) {
        app->forgetIconSource();
    }
    loadAllIconsPrioritizingGroup(_prioritizedGroup);
    loadIconsForApps(AppArray(_runningApps));
}

void OTAppManager::takeKeptIcons()
{
    for (const AppRef &app : everythingSet() + _runningApps) {
        app->takeKeptIcon();
    }
}

const QStringList &OTAppManager::colorSortingKeys()
{
    static const QStringList keys { QStringLiteral("colorSortGrayThreshold"),
        QStringLiteral("colorSortWrapHue"), QStringLiteral("colorSortMinSaturation"),
        QStringLiteral("colorSortMinLuminosity"),
        QStringLiteral("colorSortGraysBySecondaryColor") };
    return keys;
}

void OTAppManager::resetColorSortingOptions()
{
    UserDefaults &defaults = UserDefaults::standard();
    for (const QString &key : colorSortingKeys()) {
        defaults.setObject(key, defaults.defaultForKey(key));
    }
}

void OTAppManager::readColorsFromDisk()
{
    _files.readColors();
    takeStoredColors();
}

// Those of what stands in for the applications that they were given to.
void OTAppManager::takeStoredColors()
{
    _files.takeOutsideChangeOfColors();
    QHash<QString, SortedColor> corrected;
    const StoredColors::Colors &stored = _files.colors();
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        const QString shown = _desktop.items().standInFor(entry.key());
        if (shown == entry.key() || !corrected.contains(shown)) {
            corrected.insert(shown, { entry->red, entry->green, entry->blue });
        }
    }
    if (corrected != _correctedColors) {
        _correctedColors = corrected;
        for (const AppRef &app : everythingSet() + _runningApps) {
            takeCorrectedColor(app);
        }
    }
}

void OTAppManager::takeCorrectedColor(const AppRef &app) const
{
    const auto color = _correctedColors.constFind(app->path());
    app->setCorrectedColor(color == _correctedColors.cend() ? std::nullopt : std::optional(*color));
}

void OTAppManager::correctColor(const AppRef &app, const std::optional<SortedColor> &color)
{
    const std::optional<SortedColor> before = app->correctedColor();
    if (color != before && canKeep(app)) {
        // It may stand in one of the lists that change.
        const QString path = app->path();
        setCorrectedColor(path, color);
        addToHistory({ ArrangementStep::Kind::Recolor, { path }, {}, {}, before, color });
    }
}

// The file may call the application otherwise.
void OTAppManager::setCorrectedColor(const QString &path, const std::optional<SortedColor> &color)
{
    const std::optional<StoredColor> stored =
        color ? std::optional(StoredColor { color->red, color->green, color->blue }) : std::nullopt;
    StoredColors::Change change;
    for (const QString &known : _files.colors().keys()) {
        if (_desktop.items().standInFor(known) == path) {
            change.insert(known, stored);
        }
    }
    if (change.isEmpty()) {
        change.insert(path, stored);
    }
    _files.storeColors(change);
    takeStoredColors();
    sortIconColorTimerFire();
}

// Each change puts the sorting off: while icons arrive, the order would change under the user's
// eyes.
void OTAppManager::appIconChanged(const AppRef &app)
{
    if (app) {
        _sortColorTimer.start();
    } else {
        _sortColorTimer.stop();
    }
}

void OTAppManager::sortIconColorTimerFire()
{
    if (sortOrder() == SortOrder::ByColor) {
        sortAllArrays();
    }
}
