// A panel that shows a group, with all of its icons, over the catalogue of a ThemedHome.

#pragma once

#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>

inline void settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

inline void waitForIcons()
{
    do {
        QCoreApplication::processEvents();
    } while (IconLoader::sharedIconLoader().pendingCount() > 0);
    settle();
}

class ShownPanel
{
public:
    explicit ShownPanel(int group)
    {
        OTAppManager::registerDefaults();
        OTIconView::registerDefaults();
        OTController::registerDefaults();
        ScanFolders::registerDefaults(UserDefaults::standard(), desktop->searchPaths());
        manager = std::make_unique<OTAppManager>(*desktop, OTAppManager::Use::Preview);
        manager->rescanAllAppsPrioritizingGroup(group);
        panel = std::make_unique<OTWindow>(*manager, *desktop, QSizeF(1248, 768));
        panel->iconView().setGroupToShow(group);
        panel->QWidget::show();
        waitForIcons();
    }

    std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    std::unique_ptr<OTAppManager> manager;
    std::unique_ptr<OTWindow> panel;
};
