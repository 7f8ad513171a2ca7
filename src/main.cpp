// Puts the program together: the desktop, the preferences, and then what the command line asks for.

#include "commands/Commands.h"
#include "commands/Output.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "support/UserDefaults.h"

#include <QApplication>

#include <memory>

namespace {

constexpr int WrongUse = 2;

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    return arguments;
}

bool isDisplayAnnounced()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// A picture is drawn without a display even where there is one, so that it looks the same
// everywhere.
std::unique_ptr<QCoreApplication> makeApplication(
    const Invocation &invocation, int &argc, char **argv)
{
    if (!Commands::drawsWidgets(invocation)) {
        return std::make_unique<QCoreApplication>(argc, argv);
    }
    if (invocation.verb == Invocation::Verb::Screenshot) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    return std::make_unique<QApplication>(argc, argv);
}

} // namespace

int main(int argc, char **argv)
{
    const Invocation invocation = parseCommandLine(argumentsOf(argc, argv));
    if (!invocation.error.isEmpty()) {
        return Output::fail(invocation.error, WrongUse);
    }
    if (invocation.verb == Invocation::Verb::Start && !isDisplayAnnounced()) {
        return Output::fail(QStringLiteral("there is no display to show anything on"));
    }
    // Qt must not take options of its own from a command line that has been read already.
    int ownArgumentCount = 1;
    const auto application = makeApplication(invocation, ownArgumentCount, argv);
    QCoreApplication::setApplicationName(QStringLiteral("ortu"));

    const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    UserDefaults defaults(
        desktop->searchPaths().configurationFolder() + QStringLiteral("/Preferences.plist"),
        Commands::mayWrite(invocation) ? UserDefaults::Writing::Allowed
                                       : UserDefaults::Writing::Never);
    UserDefaults::setStandard(&defaults);
    Commands::registerDefaults(*desktop);
    const QString wrongSetting = Commands::applySettings(invocation);
    const int result = wrongSetting.isEmpty() ? Commands::run(invocation, *desktop)
                                              : Output::fail(wrongSetting, WrongUse);
    UserDefaults::setStandard(nullptr);
    return result;
}
