// Puts the program together: the desktop, the preferences, and then what the command line asks for.
// The platform is the one whose folder the build links.

#include "commands/Commands.h"
#include "commands/Output.h"
#include "platform/Platform.h"
#include "shell/OTNSAppSubclass.h"
#include "support/Printable.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"

#include <QGuiApplication>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

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

std::unique_ptr<QCoreApplication> makeApplication(Commands::Drawing drawing, int &argc, char **argv)
{
    switch (drawing) {
    case Commands::Drawing::Widgets:
        return std::make_unique<OTNSAppSubclass>(argc, argv);
    case Commands::Drawing::Pictures:
        return std::make_unique<QGuiApplication>(argc, argv);
    case Commands::Drawing::Nothing:
        break;
    }
    return std::make_unique<QCoreApplication>(argc, argv);
}

// Where Qt writes messages by itself.
QtMessageHandler writeMessage = nullptr;

// Names in a message may hold anything, and it is one line all the same: what follows a line break
// would pass for a message of its own.
void writeEscaped(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    writeMessage(type, context, Printable::escaped(message));
}

void writeAllButWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtWarningMsg) {
        writeEscaped(type, context, message);
    }
}

// Whatever only prints or draws a picture does so without a display even where there is one, so
// that it looks the same everywhere. That the session has no folder for sockets, as Qt then
// remarks, is no concern of it.
std::unique_ptr<QCoreApplication> makeApplicationWithoutDisplay(
    Commands::Drawing drawing, int &argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QtMessageHandler handler = qInstallMessageHandler(writeAllButWarnings);
    auto application = makeApplication(drawing, argc, argv);
    qInstallMessageHandler(handler);
    return application;
}

// The usual end would wait for an icon that is being decoded, which may lie on a disk that does not
// answer, and would take away what its thread uses. Everything has been written by now.
[[noreturn]] void endAtOnce(int result)
{
    std::fflush(nullptr);
    std::_Exit(result);
}

// What the command line asks for; without an instance, all but what shows something.
int carryOut(
    const Invocation &invocation, Platform &platform, Desktop &desktop, SingleInstance *instance)
{
    if (const QString problem = Commands::applySettings(invocation); !problem.isEmpty()) {
        return Output::fail(problem, WrongUse);
    }
    if (instance == nullptr) {
        return Commands::run(invocation, desktop);
    }
    platform.removeOldCrashLogs();
    return Commands::start(invocation, desktop, *instance);
}

// Starts the program where an instance is given, and does anything else without.
int perform(const Invocation &invocation, Platform &platform,
    std::unique_ptr<SingleInstance> instance, char **argv)
{
    // Beside the making of the application, which mostly waits for the display.
    if (instance) {
        platform.readAhead();
    }
    // Qt must not take options of its own from a command line that has been read already.
    int ownArgumentCount = 1;
    const auto application = (instance ? makeApplication : makeApplicationWithoutDisplay)(
        Commands::drawing(invocation), ownArgumentCount, argv);
    if (instance) {
        Commands::readyFonts();
    }
    QCoreApplication::setApplicationName(QStringLiteral("ortu"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.ortu.Ortu"));
    const std::unique_ptr<QTranslator> wording = platform.makeWording();
    QCoreApplication::installTranslator(wording.get());
    // Asked before the wording, which is English.
    const Translations translations(platform.languages());

    // The next start may come once this is gone, so it goes after the desktop with its hot key. It
    // goes before the application, whose end refuses the calls that nothing has handled: a start
    // would take that for the answer of another program while the name is still held.
    std::unique_ptr<SingleInstance> claimed = std::move(instance);
    const std::unique_ptr<Desktop> desktop = platform.makeDesktop();
    auto defaults = std::make_unique<UserDefaults>(
        desktop->searchPaths().configurationFile(QStringLiteral("Preferences.plist")),
        Commands::mayWrite(invocation) ? UserDefaults::Writing::Allowed
                                       : UserDefaults::Writing::Never);
    UserDefaults::setStandard(defaults.get());
    Commands::registerDefaults(*desktop);
    const int result = carryOut(invocation, platform, *desktop, claimed.get());
    UserDefaults::setStandard(nullptr);
    defaults.reset();
    if (Commands::isDecoding()) {
        claimed.reset();
        endAtOnce(result);
    }
    return result;
}

} // namespace

// `isKnownToBeAlone`: the starter has asked, and no other Ortu runs.
extern "C" __attribute__((visibility("default"))) int ortuRun(
    int argc, char **argv, bool isKnownToBeAlone)
{
    writeMessage = qInstallMessageHandler(writeEscaped);
    const Invocation invocation = parseCommandLine(argumentsOf(argc, argv));
    if (!invocation.error.isEmpty()) {
        return Output::fail(invocation.error, WrongUse);
    }
    const std::unique_ptr<Platform> platform = makePlatform();
    if (const QString problem = platform->environmentProblem(); !problem.isEmpty()) {
        return Output::fail(problem);
    }
    platform->installCrashReporter();
    std::unique_ptr<SingleInstance> instance;
    if (Commands::concernsInstance(invocation)) {
        instance = platform->makeInstance();
        const bool isAlone = isKnownToBeAlone && Commands::startsProgram(invocation);
        const auto result = invocation.isService || isAlone
            ? std::nullopt
            : Commands::tellRunningInstance(invocation, *instance);
        if (result) {
            return *result;
        }
    }
    if (instance) {
        if (const QString problem = platform->chooseDisplay(); !problem.isEmpty()) {
            return Output::fail(problem);
        }
    }
    return perform(invocation, *platform, std::move(instance), argv);
}
