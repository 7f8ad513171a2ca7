#include "catalogue/OTAppManager.h"
#include "commands/CatalogueSetup.h"
#include "commands/Commands.h"
#include "grid/OTIconView.h"
#include "shell/PlainWindow.h"

#include <QCoreApplication>
#include <QTimer>

int Commands::start(const Invocation &, Desktop &desktop)
{
    OTAppManager manager(desktop);
    CatalogueSetup::fill(manager, IncludedGroup, CatalogueSetup::Scan::OnlyWhenNothingIsSaved);
    PlainWindow window(manager);
    window.iconView().setGroupToShow(IncludedGroup);
    window.show();
    QTimer::singleShot(0, &window, &CatalogueSetup::countLaunch);
    return QCoreApplication::exec();
}
