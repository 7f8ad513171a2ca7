#include "commands/Commands.h"

#include "catalogue/OTAppManager.h"
#include "catalogue/ScanFolders.h"
#include "commands/Output.h"
#include "commands/PreferenceText.h"
#include "grid/OTIconView.h"
#include "platform/Desktop.h"
#include "support/UserDefaults.h"

using Verb = Invocation::Verb;

Commands::Drawing Commands::drawing(const Invocation &invocation)
{
    switch (invocation.verb) {
    case Verb::Start:
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
    return invocation.verb == Verb::Start || invocation.verb == Verb::Defaults;
}

void Commands::registerDefaults(const Desktop &desktop)
{
    OTAppManager::registerDefaults();
    OTIconView::registerDefaults();
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
        const auto value = preferenceFromText(text, registered);
        if (!value) {
            return QStringLiteral("%1 cannot be %2").arg(key, text);
        }
        defaults.setObjectForThisRun(key, *value);
    }
    return {};
}

int Commands::run(const Invocation &invocation, Desktop &desktop)
{
    switch (invocation.verb) {
    case Verb::Start:
        return start(invocation, desktop);
    case Verb::List:
        return list(invocation, desktop);
    case Verb::Colors:
        return colors(invocation, desktop);
    case Verb::Layout:
        return layout(invocation, desktop);
    case Verb::Defaults:
        return defaults(invocation);
    case Verb::Screenshot:
        return screenshot(invocation, desktop);
    case Verb::Help:
        return Output::print(commandLineHelp()) ? 0 : 1;
    case Verb::Version:
        return Output::print(QStringLiteral("ortu " ORTU_VERSION "\n")) ? 0 : 1;
    }
    return 1;
}
