#include "feedback/OpenFeedback.h"

#include "feedback/Log.h"
#include "feedback/OFController.h"
#include "platform/Desktop.h"
#include "support/InfoDictionary.h"
#include "support/UserDefaults.h"

#include <utility>

namespace {

const QString lastCheckKey = QStringLiteral("QSLastCrashCheckTime");

} // namespace

OpenFeedback::OpenFeedback(
    const Desktop &desktop, const InfoDictionary &info, Alerts::Presenter runAlert, QObject *parent)
    : QObject(parent)
    , _desktop(desktop)
    , _info(info)
    , _runAlert(std::move(runAlert))
    , _crashLogs({ desktop.searchPaths().libraryFolder(SearchPaths::Domain::User),
                     desktop.searchPaths().libraryFolder(SearchPaths::Domain::Local) },
          info.stringForKey(QStringLiteral("CFBundleName")))
{ }

OpenFeedback::~OpenFeedback() = default;

QUrl OpenFeedback::submitUrl(const InfoDictionary &info)
{
    const QString address = info.stringForKey(QStringLiteral("OFSubmitFeedbackURL"));
    const QUrl url(address, QUrl::StrictMode);
    if (address.isEmpty() || WebClient::canReach(url)) {
        return url;
    }
    qCWarning(lcFeedback, "no feedback: OFSubmitFeedbackURL is no address of a web server: %s",
        qUtf8Printable(address));
    return {};
}

OFController &OpenFeedback::windowController()
{
    if (!_windowController) {
        _windowController = std::make_unique<OFController>(*this, _desktop, _info);
    }
    return *_windowController;
}

bool OpenFeedback::isWindowVisible() const
{
    return _windowController && _windowController->isVisible();
}

bool OpenFeedback::isSending() const
{
    return _windowController && _windowController->isSending();
}

void OpenFeedback::runAlert(const Alert &alert, OFController &window) const
{
    _runAlert(alert, &window);
}

void OpenFeedback::presentFeedbackPanelForSupport()
{
    windowController().presentFeedbackPanelForSupport();
}

void OpenFeedback::presentFeedbackPanelForFeature()
{
    windowController().presentFeedbackPanelForFeature();
}

void OpenFeedback::presentFeedbackPanelForBug()
{
    windowController().presentFeedbackPanelForBug();
}

void OpenFeedback::presentFeedbackPanelIfCrashed()
{
    const QStringList logs = _crashLogs.crashLogsSince(lastCrashCheckTime());
    if (!logs.isEmpty()) {
        windowController().presentFeedbackPanelForCrash(CrashLogs::latestCrashLogContents(logs));
    }
    setLastCrashCheckTime(QDateTime::currentDateTimeUtc());
}

QDateTime OpenFeedback::lastCrashCheckTime() const
{
    return UserDefaults::standard().objectForKey(lastCheckKey).toDateTime();
}

void OpenFeedback::setLastCrashCheckTime(const QDateTime &time)
{
    UserDefaults::standard().setObject(lastCheckKey, time);
}
