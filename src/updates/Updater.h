// Looks for newer versions of the program in a feed of releases.
//
// The address is in the information property list under `SUFeedURL`; without one, or with one that
// is not HTTPS, nothing is ever looked for. Nothing is downloaded but the feed, and nothing is
// installed: the user gets a link. Main thread only.

#pragma once

#include "updates/UpdateFeed.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class InfoDictionary;
class UpdateWindow;
class WebClient;
class WebExchange;
struct Alert;
struct WebAnswer;

class Updater final : public QObject
{
    Q_OBJECT

public:
    // Runs an alert above the windows of the program.
    using RunAlert = std::function<void(const Alert &alert)>;
    // The client must outlive it.
    Updater(const WebClient &webClient, const InfoDictionary &info, RunAlert runAlert,
        QObject *parent = nullptr);
    ~Updater() override;

    // Registers its preferences. To be called once, before anything reads them.
    static void registerDefaults();

    // Empty where nothing is to be looked for; an invalid address, or one that is not safe, costs
    // one log line.
    static QUrl feedUrl(const InfoDictionary &info);

    // Whether it knows a feed.
    bool canCheck() const { return !_feedUrl.isEmpty(); }
    // At the wish of the user, who is told what came of it: of a newer version in a window, of
    // anything else in an alert.
    void checkForUpdates();
    // Whether the user has it look once a day.
    bool automaticallyChecksForUpdates() const;
    // Looks now, unless that was done within a day, and then once a day. A newer version is told on
    // the panel after each look, until the user has seen its window or skips it.
    void checkForUpdatesInBackground();

    // The window of the release found; null while none is shown.
    UpdateWindow *window() const;

Q_SIGNALS:
    // The user's wish sends a request, whose answer may take a while.
    void checkStarted();
    // A window of ours is shown and wants the front.
    void windowShown();

private:
    enum class Check { ByUser, InBackground };

    void start(Check check);
    void answerArrived(const WebAnswer &answer);
    void tellRelease(const Release &release);
    void tellFailure(const QString &problem);
    void showWindow(const Release &release);

    const WebClient &_webClient;
    const QUrl _feedUrl;
    const QString _programName;
    const QVersionNumber _present;
    RunAlert _runAlert;
    // Who gets to know what the exchange brings.
    Check _check = Check::InBackground;
    std::unique_ptr<WebExchange> _exchange;
    QTimer _nextCheck;
    QPointer<UpdateWindow> _window;
    // Of the window that was shown last.
    QVersionNumber _seen;
};
