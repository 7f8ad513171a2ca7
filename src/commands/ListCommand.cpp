#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "commands/CatalogueSetup.h"
#include "commands/Commands.h"
#include "commands/GroupNames.h"
#include "commands/Output.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>

namespace {

QJsonObject toJson(const AppRef &app)
{
    return { { QStringLiteral("path"), app->path() }, { QStringLiteral("name"), app->name() },
        { QStringLiteral("displayName"), app->displayName() },
        { QStringLiteral("valid"), app->isPathValid() } };
}

QJsonObject toJson(int group, const AppArray &array)
{
    QJsonArray bunches;
    const BunchList lists = array.bunches();
    for (const AppList &bunch : lists) {
        QJsonArray apps;
        for (const AppRef &app : bunch) {
            apps.append(toJson(app));
        }
        bunches.append(apps);
    }
    return { { QStringLiteral("group"), group }, { QStringLiteral("bunches"), bunches } };
}

QStringList toText(int group, const AppArray &array)
{
    const BunchList bunches = array.bunches();
    const qsizetype count = flattened(bunches).size();
    QStringList lines {
        QStringLiteral("%1 %2: %3 %4")
            .arg(group)
            .arg(groupName(group))
            .arg(count)
            .arg(count == 1 ? QStringLiteral("application") : QStringLiteral("applications")),
    };
    for (qsizetype bunch = 0; bunch < bunches.size(); ++bunch) {
        if (bunch > 0) {
            lines.append(QString());
        }
        for (const AppRef &app : bunches[bunch]) {
            lines.append(QStringLiteral("  %1  %2%3")
                             .arg(app->displayName().leftJustified(30), app->path(),
                                 app->isPathValid() ? QString() : QStringLiteral("  (missing)")));
        }
    }
    return lines;
}

} // namespace

int Commands::list(const Invocation &invocation, Desktop &desktop)
{
    OTAppManager manager(desktop,
        CatalogueSetup::isOrderByColor() ? OTAppManager::Use::Preview
                                         : OTAppManager::Use::Inspection);
    CatalogueSetup::fill(manager, -1,
        invocation.isFresh ? CatalogueSetup::Scan::Always
                           : CatalogueSetup::Scan::OnlyWhenNothingIsSaved);
    CatalogueSetup::waitForIcons(manager);
    QList<int> groups;
    if (invocation.group) {
        groups.append(groupFromText(*invocation.group).value());
    } else {
        for (int group = 0; group < GroupCount; ++group) {
            groups.append(group);
        }
    }
    if (!invocation.isJson) {
        QStringList lines;
        for (const int group : std::as_const(groups)) {
            lines += toText(group, manager.appArrayForGroup(group));
        }
        return Output::printLines(lines) ? 0 : 1;
    }
    QJsonArray array;
    for (const int group : std::as_const(groups)) {
        array.append(toJson(group, manager.appArrayForGroup(group)));
    }
    const auto document =
        invocation.group ? QJsonDocument(array.first().toObject()) : QJsonDocument(array);
    return Output::printJson(document) ? 0 : 1;
}
