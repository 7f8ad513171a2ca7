#include "catalogue/OTAppManager.h"
#include "commands/Commands.h"
#include "commands/EndingSignals.h"
#include "icons/IconLoader.h"
#include "icons/store/IconStore.h"
#include "platform/Desktop.h"
#include "platform/SingleInstance.h"
#include "shell/AlertDialog.h"
#include "shell/OTController.h"
#include "shell/panel/OTWindow.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QThreadPool>

void Commands::readyFonts()
{
    QThreadPool::globalInstance()->start([font = QGuiApplication::font()] {
        QFontMetricsF(font).horizontalAdvance(QLatin1Char('0'));
    });
}

namespace {

// Icons are kept from one start to the next, for as long as this lives.
class KeptIcons final
{
public:
    explicit KeptIcons(Desktop &desktop)
    {
        const QString folder = desktop.searchPaths().cacheFolder();
        if (!folder.isEmpty()) {
            IconLoader::sharedIconLoader().keepIcons(
                std::make_shared<IconStore>(folder), desktop.icons());
        }
    }
    ~KeptIcons() { IconLoader::sharedIconLoader().stopKeeping(); }
    Q_DISABLE_COPY_MOVE(KeptIcons)
};

} // namespace

int Commands::start(const Invocation &invocation, Desktop &desktop, SingleInstance &instance)
{
    // Ends after the catalogue, whose icons come from it.
    const KeptIcons keptIcons(desktop);
    // Null until the controller can be asked.
    OTController *running = nullptr;
    const auto status = [&running] {
        return running ? QJsonDocument(running->status()).toJson(QJsonDocument::Compact)
                       : QByteArray("{}");
    };
    while (instance.claim(status) == SingleInstance::Claim::Taken) {
        // Another start was quicker, and has ended since when there is no answer.
        const auto result =
            invocation.isService ? std::optional(0) : tellRunningInstance(invocation, instance);
        if (result) {
            return *result;
        }
    }
    const Alerts::PresenterScope alerts(AlertDialog::run);
    const InfoDictionary info(
        desktop.searchPaths().configurationFile(QStringLiteral("Info.plist")));
    OTAppManager manager(desktop);
    OTWindow window(manager, desktop);
    OTController controller(desktop, manager, window, info);
    running = &controller;
    QObject::connect(&instance, &SingleInstance::requested, &controller,
        qOverload<const InstanceRequest &>(&OTController::perform));
    std::optional<InstanceRequest> request;
    if (!invocation.isService) {
        request = instanceRequest(invocation);
    }
    QMetaObject::invokeMethod(
        &controller, [&controller, request] { controller.launch(request); }, Qt::QueuedConnection);
    const EndingSignals endingSignals;
    const int result = QCoreApplication::exec();
    running = nullptr;
    return result;
}
