// The window in which users write to the developers.
//
// What was written stays until it has been sent, also while the window is closed. Sending goes on
// when the window is closed meanwhile; how it ended is then told on the panel.

#pragma once

#include "feedback/FeedbackForm.h"
#include "feedback/FeedbackOutlets.h"

#include <QDialog>
#include <QUrl>

#include <memory>

class Desktop;
class InfoDictionary;
class OpenFeedback;
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
    QList<QPlainTextEdit *> shownTexts() const;
    void updateSendButton();
    void updateNote();
    FeedbackFields fields() const;
    void setSending(bool isSending);
    void connectionDidFinishLoading();
    void connectionDidFailWithError(const QString &problem);
    void tell(Outcome outcome, const QString &message, const QString &text);
    void sheetDidEnd(Outcome outcome);

    OpenFeedback &openFeedback;
    const Desktop &_desktop;
    const InfoDictionary &_info;
    const QUrl _submitUrl;
    FeedbackOutlets _outlets;
    bool _crashReportMode = false;
    std::unique_ptr<WebExchange> _exchange;
};
