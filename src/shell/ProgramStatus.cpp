#include "shell/ProgramStatus.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "grid/OTIconView.h"
#include "shell/panel/OTWindow.h"
#include "shell/triggers/Triggers.h"

QJsonObject programStatus(
    const OTWindow &panel, const OTAppManager &appManager, const Triggers &triggers, bool isActive)
{
    const OTIconView &grid = panel.iconView();
    const AppRef selected = grid.selectedApp();
    const QString &problem = triggers.hotKeyProblem();
    QJsonObject status {
        { QStringLiteral("visible"), panel.isShown() },
        { QStringLiteral("active"), isActive },
        { QStringLiteral("group"), grid.groupShown() },
        { QStringLiteral("filter"), grid.filterSubstring() },
        { QStringLiteral("selected"), selected ? QJsonValue(selected->path()) : QJsonValue() },
        { QStringLiteral("hotKey"), problem.isEmpty() ? triggers.hotKeyString() : QJsonValue() },
        { QStringLiteral("scanning"), appManager.isBusyScanning() },
    };
    if (!problem.isEmpty()) {
        status.insert(QStringLiteral("hotKeyProblem"), problem);
    }
    return status;
}
