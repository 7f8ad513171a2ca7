#include "commands/Commands.h"

#include "catalogue/OTAppManager.h"
#include "catalogue/files/ScanFolders.h"
#include "commands/Output.h"
#include "commands/PreferenceText.h"
#include "grid/OTIconView.h"
#include "icons/IconLoader.h"
#include "platform/Desktop.h"
#include "shell/OTController.h"
#include "support/UserDefaults.h"

using Verb = Invocation::Verb;

Commands::Drawing Commands::drawing(const Invocation &invocation)
{
    switch (invocation.verb) {
    case Verb::Start:
    case Verb::Toggle:
    case Verb::Show:
    case Verb::Preferences:
    case Verb::Screenshot:
        return Drawing::Widgets;
    case Verb::Colors:
    case Verb::List:
    case Verb::Layout:
        return Drawing::Pictures;
    default:
        return Drawing::Nothing;
    }
}

bool Commands::mayWrite(const Invocation &invocation)
{
    return startsProgram(invocation) || invocation.verb == Verb::Defaults
        || invocation.verb == Verb::Import;
}

void Commands::registerDefaults(const Desktop &desktop)
{
    OTAppManager::registerDefaults();
    OTIconView::registerDefaults();
    OTController::registerDefaults();
    ScanFolders::registerDefaults(UserDefaults::standard(), desktop.searchPaths());
}

QString Commands::applySettings(const Invocation &invocation)
{
    UserDefaults &defaults = UserDefaults::standard();
    for (const auto &[key, text] : invocation.settings) {
        const QVariant registered = defaults.defaultForKey(key);
        if (!registered.isValid()) {
            return QStringLiteral("no such preference: %1").arg(key);
        }
        const auto value = preferenceFromText(key, text, registered);
        if (!value) {
            return preferenceRefusal(key, text, registered);
        }
        defaults.setObjectForThisRun(key, *value);
    }
    return {};
}

int Commands::run(const Invocation &invocation, Desktop &desktop)
{
    switch (invocation.verb) {
    case Verb::List:
        return list(invocation, desktop);
    case Verb::Colors:
        return colors(invocation, desktop);
    case Verb::Layout:
        return layout(invocation, desktop);
    case Verb::Defaults:
        return defaults(invocation, desktop);
    case Verb::Screenshot:
        return screenshot(invocation, desktop);
    case Verb::Export:
        return exportSettings(invocation, desktop);
    case Verb::Import:
        return importSettings(invocation, desktop);
    case Verb::Help:
        return Output::print(commandLineHelp()) ? 0 : 1;
    case Verb::Version:
        return Output::print(QStringLiteral("ortu " ORTU_VERSION "\n")) ? 0 : 1;
    // They have to do with the running program, or become it.
    case Verb::Start:
    case Verb::Toggle:
    case Verb::Show:
    case Verb::Hide:
    case Verb::Preferences:
    case Verb::Rescan:
    case Verb::Quit:
    case Verb::Status:
        break;
    }
    return 1;
}

bool Commands::isDecoding()
{
    return IconLoader::sharedIconLoader().isBusy();
}
