#include "platform/Platform.h"
#include "platform/freedesktop/FreedesktopDesktop.h"
#include "platform/freedesktop/FreedesktopWording.h"
#include "platform/freedesktop/base/Languages.h"
#include "platform/freedesktop/crash/CrashReporter.h"

#include <QFile>
#include <QThreadPool>

#include <utility>

namespace {

bool isDisplayAnnounced()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

class FreedesktopPlatform final : public Platform
{
public:
    // Qt takes names for UTF-8 and would go on with another folder.
    QString environmentProblem() const override
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
    void installCrashReporter() override { CrashReporter::install(); }
    std::unique_ptr<SingleInstance> makeInstance() override { return makeFreedesktopInstance(); }
    // Only X lets a program have hot keys and choose the places of its windows; nearly every
    // session offers it.
    QString chooseDisplay() override
    {
        if (!isDisplayAnnounced()) {
            return QStringLiteral("there is no display to show anything on");
        }
        if (!qEnvironmentVariableIsEmpty("DISPLAY")
            && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "xcb;wayland");
        }
        return {};
    }
    void readAhead() override { _reading = readFreedesktopEntries(); }

    QList<QByteArray> languages() const override { return Languages::preferred(); }
    std::unique_ptr<QTranslator> makeWording() const override
    {
        return std::make_unique<FreedesktopWording>();
    }
    std::unique_ptr<Desktop> makeDesktop() override
    {
        return makeFreedesktopDesktop(std::move(_reading));
    }
    void removeOldCrashLogs() override
    {
        QThreadPool::globalInstance()->start(CrashReporter::removeOldLogs);
    }

private:
    std::shared_ptr<EntryReading> _reading;
};

} // namespace

std::unique_ptr<Platform> makePlatform()
{
    return std::make_unique<FreedesktopPlatform>();
}
