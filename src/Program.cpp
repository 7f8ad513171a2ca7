// Puts the program together: the desktop, the preferences, and then what the command line asks for.

#include "commands/Commands.h"
#include "commands/Output.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/FreedesktopWording.h"
#include "platform/freedesktop/base/Languages.h"
#include "platform/freedesktop/crash/CrashReporter.h"
#include "shell/OTNSAppSubclass.h"
#include "support/Printable.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"

#include <QFile>
#include <QThreadPool>

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

// What is wrong with the folders that the environment names; empty when nothing is. Qt takes names
// for UTF-8 and would go on with another folder.
QString wrongFolder()
{
    for (const char *const variable :
        { "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME" }) {
        const QByteArray value = qgetenv(variable);
        const QString folder = QFile::decodeName(value);
        if (QFile::encodeName(folder) != value) {
            return QStringLiteral("cannot use %1=%2: not valid UTF-8")
                .arg(QLatin1String(variable), folder);
        }
    }
    return {};
}

bool isDisplayAnnounced()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

// Only X lets a program have hot keys and choose the places of its windows; nearly every session
// offers it.
void preferX()
{
    if (!qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb;wayland");
    }
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
int carryOut(const Invocation &invocation, Desktop &desktop, SingleInstance *instance)
{
    if (const QString problem = Commands::applySettings(invocation); !problem.isEmpty()) {
        return Output::fail(problem, WrongUse);
    }
    if (instance == nullptr) {
        return Commands::run(invocation, desktop);
    }
    QThreadPool::globalInstance()->start(CrashReporter::removeOldLogs);
    return Commands::start(invocation, desktop, *instance);
}

// Starts the program where an instance is given, and does anything else without.
int perform(const Invocation &invocation, std::unique_ptr<SingleInstance> instance, char **argv)
{
    // Beside the making of the application, which mostly waits for the display.
    std::shared_ptr<EntryReading> reading;
    if (instance) {
        reading = readFreedesktopEntries();
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
    FreedesktopWording wording;
    QCoreApplication::installTranslator(&wording);
    // Asked before the wording, which is English.
    const Translations translations(Languages::preferred());

    // The next start may come once this is gone, so it goes after the desktop with its hot key. It
    // goes before the application, whose end refuses the calls that nothing has handled: a start
    // would take that for the answer of another program while the name is still held.
    std::unique_ptr<SingleInstance> claimed = std::move(instance);
    const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop(std::move(reading));
    auto defaults = std::make_unique<UserDefaults>(
        desktop->searchPaths().configurationFolder() + QStringLiteral("/Preferences.plist"),
        Commands::mayWrite(invocation) ? UserDefaults::Writing::Allowed
                                       : UserDefaults::Writing::Never);
    UserDefaults::setStandard(defaults.get());
    Commands::registerDefaults(*desktop);
    const int result = carryOut(invocation, *desktop, claimed.get());
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
    if (const QString problem = wrongFolder(); !problem.isEmpty()) {
        return Output::fail(problem);
    }
    CrashReporter::install();
    std::unique_ptr<SingleInstance> instance;
    if (Commands::concernsInstance(invocation)) {
        instance = makeFreedesktopInstance();
        const bool isAlone = isKnownToBeAlone && Commands::startsProgram(invocation);
        const auto result = invocation.isService || isAlone
            ? std::nullopt
            : Commands::tellRunningInstance(invocation, *instance);
        if (result) {
            return *result;
        }
    }
    if (instance && !isDisplayAnnounced()) {
        return Output::fail(QStringLiteral("there is no display to show anything on"));
    }
    if (instance) {
        preferX();
    }
    return perform(invocation, std::move(instance), argv);
}
