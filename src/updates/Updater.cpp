#include "updates/Updater.h"

#include "platform/WebClient.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"
#include "updates/Log.h"
#include "updates/UpdateWindow.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDesktopServices>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds Interval = 24h;
constexpr std::chrono::milliseconds MaxTime = 30s;
// Of a feed, in bytes.
constexpr qint64 MaxFeed = 1'048'576;

namespace Key {
const QString checksAutomatically = QStringLiteral("SUEnableAutomaticChecks");
const QString lastCheck = QStringLiteral("SULastCheckTime");
const QString skippedVersion = QStringLiteral("SUSkippedVersion");
} // namespace Key

} // namespace

Updater::Updater(
    const WebClient &webClient, const InfoDictionary &info, RunAlert runAlert, QObject *parent)
    : QObject(parent)
    , _webClient(webClient)
    , _feedUrl(feedUrl(info))
    , _programName(info.stringForKey(QStringLiteral("CFBundleName")))
    , _present(
          UpdateFeed::versionOf(info.stringForKey(QStringLiteral("CFBundleShortVersionString"))))
    , _runAlert(std::move(runAlert))
{
    _nextCheck.setSingleShot(true);
    _nextCheck.setTimerType(Qt::VeryCoarseTimer);
    connect(&_nextCheck, &QTimer::timeout, this, &Updater::checkForUpdatesInBackground);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (key == Key::checksAutomatically) {
            checkForUpdatesInBackground();
        }
    });
}

Updater::~Updater()
{
    delete _window;
}

void Updater::registerDefaults()
{
    UserDefaults::standard().registerDefaults({ { Key::checksAutomatically, true } });
    UserDefaults::standard().registerState({ { Key::skippedVersion, QString() } });
}

QUrl Updater::feedUrl(const InfoDictionary &info)
{
    const QString address = info.stringForKey(QStringLiteral("SUFeedURL"));
    const QUrl url(address, QUrl::StrictMode);
    const bool isSafe = WebClient::canReach(url) && url.scheme() == QLatin1String("https");
    if (address.isEmpty() || isSafe) {
        return url;
    }
    qCWarning(
        lcUpdates, "no updates: SUFeedURL is no address of HTTPS: %s", qUtf8Printable(address));
    return {};
}

UpdateWindow *Updater::window() const
{
    return _window && _window->isVisible() ? _window.data() : nullptr;
}

bool Updater::automaticallyChecksForUpdates() const
{
    return !_feedUrl.isEmpty() && UserDefaults::standard().boolForKey(Key::checksAutomatically);
}

void Updater::checkForUpdates()
{
    if (window() != nullptr) {
        Q_EMIT windowShown();
    } else if (!_feedUrl.isEmpty()) {
        start(Check::ByUser);
        Q_EMIT checkStarted();
    }
}

// A last check in the future is the work of a clock that was wrong.
void Updater::checkForUpdatesInBackground()
{
    if (!automaticallyChecksForUpdates()) {
        return;
    }
    const QDateTime last = UserDefaults::standard().objectForKey(Key::lastCheck).toDateTime();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const bool isRecent = last.isValid() && last <= now && last.addSecs(Interval.count()) > now;
    if (isRecent) {
        _nextCheck.start(std::chrono::milliseconds(now.msecsTo(last.addSecs(Interval.count()))));
    } else {
        start(Check::InBackground);
    }
}

// The time of the check counts from its start, so that a server that fails is not asked more often.
void Updater::start(Check check)
{
    if (_exchange) {
        // The user gets the answer of the check that is running.
        _check = check == Check::ByUser ? check : _check;
        return;
    }
    _check = check;
    UserDefaults::standard().setObject(Key::lastCheck, QDateTime::currentDateTimeUtc());
    if (automaticallyChecksForUpdates()) {
        _nextCheck.start(Interval);
    }
    const WebRequest request { .url = _feedUrl, .maxTime = MaxTime, .maxAnswerSize = MaxFeed };
    _exchange =
        _webClient.send(request, [this](const WebAnswer &answer) { answerArrived(answer); });
}

void Updater::answerArrived(const WebAnswer &answer)
{
    _exchange.reset();
    constexpr int Ok = 200;
    QString problem = answer.problem;
    if (problem.isEmpty() && answer.status != Ok) {
        problem = QStringLiteral("the server answered with status %1").arg(answer.status);
    } else if (problem.isEmpty() && answer.isCut) {
        problem = QStringLiteral("the feed is larger than %1 bytes").arg(MaxFeed);
    }
    std::optional<Release> release;
    if (problem.isEmpty()) {
        release = UpdateFeed::newestRelease(answer.body, &problem);
    }
    if (release) {
        tellRelease(*release);
    } else {
        tellFailure(problem);
    }
}

void Updater::tellRelease(const Release &release)
{
    const QString version = release.version.toString();
    const bool isNewer = UpdateFeed::isNewer(release.version, _present);
    if (_check == Check::InBackground) {
        const bool isSkipped =
            UserDefaults::standard().stringForKey(Key::skippedVersion) == version;
        if (isNewer && !isSkipped && release.version != _seen) {
            Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(
                tr("%1 %2 is available. “Check for Updates…” in the menu shows what is new.")
                    .arg(_programName, version));
        }
    } else if (isNewer) {
        showWindow(release);
    } else {
        _runAlert(Alert::information(tr("There is no newer version."),
            tr("%1 %2 is the newest one.").arg(_programName, _present.toString())));
    }
}

void Updater::tellFailure(const QString &problem)
{
    qCWarning(lcUpdates, "cannot look for updates at %s: %s", qUtf8Printable(_feedUrl.host()),
        qUtf8Printable(problem));
    if (_check == Check::ByUser) {
        _runAlert(Alert::warning(tr("Could not look for a newer version."),
            tr("Please check the connection to the internet, and try again later.")));
    }
}

void Updater::showWindow(const Release &release)
{
    UserDefaults *const defaults = &UserDefaults::standard();
    _seen = release.version;
    _window = new UpdateWindow(_programName, _present, release);
    _window->setAttribute(Qt::WA_DeleteOnClose);
    QCheckBox &automatic = _window->automaticChecks();
    automatic.setChecked(defaults->boolForKey(Key::checksAutomatically));
    automatic.setEnabled(!defaults->isFixedForThisRun(Key::checksAutomatically));
    connect(&automatic, &QCheckBox::toggled, this,
        [defaults](bool isOn) { defaults->setObject(Key::checksAutomatically, isOn); });
    connect(_window, &UpdateWindow::pageWanted, this,
        [](const QUrl &page) { QDesktopServices::openUrl(page); });
    connect(
        _window, &UpdateWindow::skipWanted, this, [defaults, version = release.version.toString()] {
            defaults->setObject(Key::skippedVersion, version);
        });
    _window->adjustSize();
    _window->move(_window->screen()->availableGeometry().center() - _window->rect().center());
    _window->show();
    Q_EMIT windowShown();
}
