#include "commands/CatalogueSetup.h"

#include "catalogue/OTAppManager.h"
#include "support/UserDefaults.h"

namespace {

QString launchCountKey()
{
    return QStringLiteral("applicationLaunchCount");
}

} // namespace

void CatalogueSetup::fill(OTAppManager &manager, int prioritizedGroup, Scan scan)
{
    manager.rescanAllAppsPrioritizingGroup(prioritizedGroup);
    if (scan == Scan::Always) {
        manager.fullScan();
    }
    if (UserDefaults::standard().integerForKey(launchCountKey()) == 0) {
        manager.autoExcludeNamedApps();
    }
}

void CatalogueSetup::countLaunch()
{
    UserDefaults &defaults = UserDefaults::standard();
    defaults.setObject(launchCountKey(), defaults.integerForKey(launchCountKey()) + 1);
}
