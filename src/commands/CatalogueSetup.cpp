#include "commands/CatalogueSetup.h"

#include "catalogue/AppSorting.h"
#include "catalogue/OTAppManager.h"
#include "icons/IconLoader.h"
#include "support/UserDefaults.h"

#include <QEventLoop>

void CatalogueSetup::fill(OTAppManager &manager, int prioritizedGroup, Scan scan)
{
    manager.rescanAllAppsPrioritizingGroup(prioritizedGroup);
    if (scan == Scan::Always) {
        manager.fullScan();
    }
    if (UserDefaults::standard().integerForKey(QStringLiteral("applicationLaunchCount")) == 0) {
        manager.excludeOnFirstStart();
    }
}

bool CatalogueSetup::isOrderByColor()
{
    const qint64 order =
        UserDefaults::standard().integerForKey(QStringLiteral("groupContentsSortOrder"));
    return sortOrderFromPreference(order) == SortOrder::ByColor;
}

void CatalogueSetup::waitForIcons(OTAppManager &manager)
{
    IconLoader &loader = IconLoader::sharedIconLoader();
    if (loader.pendingCount() > 0) {
        QEventLoop loop;
        QObject::connect(&loader, &IconLoader::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }
    if (isOrderByColor()) {
        manager.sortAllArrays();
    }
}
