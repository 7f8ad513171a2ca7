// The window in which users write to the developers.
//
// What was written stays until it has been sent, also while the window is closed and in the next
// run of the program; a report of a crash does not outlive the run. After sending, the texts of all
// forms but that report are cleared. Sending goes on when the window is closed meanwhile; how it
// ended is then told on the panel, and a failure once more when the window is shown again.

#pragma once

#include "feedback/FeedbackDraft.h"
#include "feedback/FeedbackForm.h"
#include "feedback/FeedbackOutlets.h"

#include <QDialog>
#include <QPointer>
#include <QUrl>

#include <memory>

class Desktop;
class InfoDictionary;
class OpenFeedback;
class QScreen;
class WebExchange;
struct WebAnswer;

class OFController final : public QDialog
{
    Q_OBJECT

public:
    // All of them must outlive the window.
    OFController(OpenFeedback &reporter, const Desktop &desktop, const InfoDictionary &info);
    ~OFController() override;

    void presentFeedbackPanelForSupport();
    void presentFeedbackPanelForFeature();
    void presentFeedbackPanelForBug();
    void presentFeedbackPanelForCrash(const QString &crashLog);
    // The third form, whichever of the two it is at present.
    void presentFeedbackPanelForBugOrCrash();
    void showFeedbackWindow();

    // Whether the form that is shown may be sent as it is.
    bool sendButtonIsEnabled() const;
    bool isSending() const { return _exchange != nullptr; }
    // Sends the form that is shown.
    void sendFeedback();

    const FeedbackOutlets &outlets() const { return _outlets; }

private:
    enum class Outcome { FeedbackSentSuccessfully, FeedbackNotSentSuccessfully };

    void awakeFromNib();
    void populateEmailAddresses();
    void selectSegment(FeedbackOutlets::Segment segment);
    void selectedTabDidChange();
    void setFirstResponder(QWidget *text);
    void chkIncludeEmail();
    void place();
    const QPlainTextEdit &mainText() const;
    QMap<QString, QPlainTextEdit *> draftTexts() const;
    void restoreDraft();
    void keepDraft();
    void updateSendButton();
    void updateNote();
    FeedbackFields fields() const;
    void setSending(bool isSending);
    void connectionDidFinishLoading();
    void connectionDidFailWithError(const QString &problem);
    void tell(Outcome outcome);
    void sheetDidEnd(Outcome outcome);

    OpenFeedback &openFeedback;
    const Desktop &_desktop;
    const InfoDictionary &_info;
    const QUrl _submitUrl;
    FeedbackOutlets _outlets;
    bool _crashReportMode = false;
    FeedbackDraft _draft;
    std::unique_ptr<WebExchange> _exchange;
    // Not yet told in the window.
    bool _isFailurePending = false;
    QPointer<QWidget> _focusBeforeSending;
    // Where the window was placed last.
    QPointer<QScreen> _screen;
};
