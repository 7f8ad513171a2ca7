// Feedback to the developers: questions, wishes and reports of faults, and the logs of crashes.
//
// Main thread only. The window is made when it is first shown.

#pragma once

#include "feedback/CrashLogs.h"
#include "feedback/FeedbackForm.h"
#include "support/Alerts.h"

#include <QDateTime>
#include <QObject>
#include <QUrl>

#include <memory>

class Desktop;
class InfoDictionary;
class OFController;
class OpenFeedback;

class OpenFeedbackDelegate
{
public:
    OpenFeedbackDelegate() = default;
    virtual ~OpenFeedbackDelegate() = default;
    Q_DISABLE_COPY_MOVE(OpenFeedbackDelegate)

    // Called before a form is sent, whose fields it may change. False cancels the sending.
    virtual bool openFeedbackWillSendData(OpenFeedback & /*feedback*/, FeedbackFields & /*fields*/)
    {
        return true;
    }
};

class OpenFeedback final : public QObject
{
    Q_OBJECT

public:
    // Desktop and dictionary must outlive this. Alerts are shown by `runAlert`.
    OpenFeedback(const Desktop &desktop, const InfoDictionary &info, Alerts::Presenter runAlert,
        QObject *parent = nullptr);
    ~OpenFeedback() override;

    // Where forms go to, from the key `OFSubmitFeedbackURL`; empty where there is no address, and
    // where it is invalid, which costs one log line.
    static QUrl submitUrl(const InfoDictionary &info);

    // Show the window with one of its forms.
    void presentFeedbackPanelForSupport();
    void presentFeedbackPanelForFeature();
    void presentFeedbackPanelForBug();
    // With the newest log of a crash since the last call; without one nothing is shown.
    void presentFeedbackPanelIfCrashed();

    // The logs of this program in the desktop's Library folders.
    const CrashLogs &crashLogs() const { return _crashLogs; }

    // When logs were looked for last; invalid when they never were.
    QDateTime lastCrashCheckTime() const;
    void setLastCrashCheckTime(const QDateTime &time);

    // Not owned; null for none.
    OpenFeedbackDelegate *delegate() const { return _delegate; }
    void setDelegate(OpenFeedbackDelegate *delegate) { _delegate = delegate; }

    OFController &windowController();
    // Whether the window is shown; it is not made for this.
    bool isWindowVisible() const;
    // Whether a form is on its way.
    bool isSending() const;
    void runAlert(const Alert &alert, OFController &window) const;

private:
    const Desktop &_desktop;
    const InfoDictionary &_info;
    const Alerts::Presenter _runAlert;
    const CrashLogs _crashLogs;
    OpenFeedbackDelegate *_delegate = nullptr;
    std::unique_ptr<OFController> _windowController;
};
