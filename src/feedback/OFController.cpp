#include "feedback/OFController.h"

#include "feedback/Log.h"
#include "feedback/OFUtilities.h"
#include "feedback/OpenFeedback.h"
#include "platform/Desktop.h"
#include "support/Alerts.h"
#include "support/InfoDictionary.h"
#include "support/NotificationCenter.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>

#include <algorithm>
#include <utility>

OFController::OFController(
    OpenFeedback &reporter, const Desktop &desktop, const InfoDictionary &info)
    : openFeedback(reporter)
    , _desktop(desktop)
    , _info(info)
    , _submitUrl(OpenFeedback::submitUrl(info))
    , _outlets(layOutFeedback(*this))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    awakeFromNib();
}

OFController::~OFController() = default;

void OFController::awakeFromNib()
{
    const QString name = _info.stringForKey(QStringLiteral("CFBundleName"));
    setWindowTitle(OFUtilities::tr("%1 Feedback").arg(name));
    _outlets.txtCrashTitle->setText(_outlets.txtCrashTitle->text().arg(name));
    populateEmailAddresses();
    connect(_outlets.tabs, &QTabBar::currentChanged, this, &OFController::selectedTabDidChange);
    for (QPlainTextEdit *const text : findChildren<QPlainTextEdit *>()) {
        connect(text, &QPlainTextEdit::textChanged, this, &OFController::updateSendButton);
    }
    connect(_outlets.cboEmailAddress, &QComboBox::editTextChanged, this,
        &OFController::updateSendButton);
    connect(_outlets.btnIncludeMyEmail, &QCheckBox::toggled, this, &OFController::chkIncludeEmail);
    connect(_outlets.btnClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(_outlets.btnSend, &QPushButton::clicked, this, &OFController::sendFeedback);
    // Return alone is a line of its own in a text.
    const auto *const send = new QShortcut(Qt::CTRL | Qt::Key_Return, this);
    connect(send, &QShortcut::activated, _outlets.btnSend, &QPushButton::click);
    updateSendButton();
}

void OFController::populateEmailAddresses()
{
    _desktop.account().findEmailAddresses(this, [this](const QStringList &addresses) {
        const QString written = _outlets.cboEmailAddress->currentText();
        _outlets.cboEmailAddress->addItems(addresses);
        if (written.isEmpty()) {
            _outlets.cboEmailAddress->setCurrentIndex(0);
        } else {
            _outlets.cboEmailAddress->setEditText(written);
        }
    });
}

void OFController::presentFeedbackPanelForSupport()
{
    selectSegment(FeedbackOutlets::Support);
    _outlets.tabView->setCurrentIndex(FeedbackOutlets::SupportView);
    showFeedbackWindow();
    setFirstResponder(_outlets.txtQuestion);
}

void OFController::presentFeedbackPanelForFeature()
{
    selectSegment(FeedbackOutlets::Feature);
    _outlets.tabView->setCurrentIndex(FeedbackOutlets::FeatureView);
    showFeedbackWindow();
    setFirstResponder(_outlets.txtFeature);
}

void OFController::presentFeedbackPanelForBug()
{
    _crashReportMode = false;
    _outlets.tabs->setTabText(FeedbackOutlets::Bug, FeedbackOutlets::bugTitle());
    presentFeedbackPanelForBugOrCrash();
}

void OFController::presentFeedbackPanelForCrash(const QString &crashLog)
{
    _crashReportMode = true;
    _outlets.tabs->setTabText(FeedbackOutlets::Bug, FeedbackOutlets::crashTitle());
    _outlets.txtCrashDescription->setPlainText(
        OFUtilities::tr("\n\n\n\nThe text below is application's crash log, please leave it "
                        "unchanged to help us determine possible cause!\n\n%1")
            .arg(crashLog));
    presentFeedbackPanelForBugOrCrash();
}

void OFController::presentFeedbackPanelForBugOrCrash()
{
    selectSegment(FeedbackOutlets::Bug);
    _outlets.tabView->setCurrentIndex(
        _crashReportMode ? FeedbackOutlets::CrashView : FeedbackOutlets::BugView);
    showFeedbackWindow();
    setFirstResponder(_crashReportMode ? _outlets.txtCrashDescription : _outlets.txtWhatHappened);
}

void OFController::selectSegment(FeedbackOutlets::Segment segment)
{
    const QSignalBlocker quiet(_outlets.tabs);
    _outlets.tabs->setCurrentIndex(segment);
}

void OFController::selectedTabDidChange()
{
    switch (_outlets.tabs->currentIndex()) {
    case FeedbackOutlets::Support:
        presentFeedbackPanelForSupport();
        break;
    case FeedbackOutlets::Feature:
        presentFeedbackPanelForFeature();
        break;
    default:
        presentFeedbackPanelForBugOrCrash();
        break;
    }
}

// Arrow keys go on along the tabs.
void OFController::setFirstResponder(QWidget *text)
{
    if (!_outlets.tabs->hasFocus()) {
        text->setFocus();
    }
}

void OFController::showFeedbackWindow()
{
    updateSendButton();
    if (!isVisible()) {
        adjustSize();
        move(screen()->availableGeometry().center() - rect().center());
        show();
    }
}

// Those of the form that is shown; the first one must not be empty.
QList<QPlainTextEdit *> OFController::shownTexts() const
{
    switch (_outlets.tabs->currentIndex()) {
    case FeedbackOutlets::Support:
        return { _outlets.txtQuestion };
    case FeedbackOutlets::Feature:
        return { _outlets.txtFeature };
    default:
        break;
    }
    if (_crashReportMode) {
        return { _outlets.txtCrashDescription, _outlets.txtCrashStepsToReproduce };
    }
    return { _outlets.txtWhatHappened, _outlets.txtStepsToReproduce };
}

bool OFController::sendButtonIsEnabled() const
{
    const bool isAnswerable = !_outlets.btnIncludeMyEmail->isChecked()
        || !_outlets.cboEmailAddress->currentText().isEmpty();
    return isAnswerable && !shownTexts().first()->document()->isEmpty();
}

void OFController::chkIncludeEmail()
{
    const bool isIncluded = _outlets.btnIncludeMyEmail->isChecked();
    _outlets.cboEmailAddress->setEnabled(isIncluded);
    if (isIncluded) {
        _outlets.cboEmailAddress->setFocus();
    }
    updateSendButton();
}

void OFController::updateSendButton()
{
    _outlets.btnSend->setEnabled(sendButtonIsEnabled() && !isSending());
    updateNote();
}

void OFController::updateNote()
{
    const FeedbackFields sent = FeedbackForm::commonFields(_info);
    QString note =
        OFUtilities::tr("Goes to %1, with the versions of %2 (%3) and of the system (%4).")
            .arg(_submitUrl.host(), sent.value(QStringLiteral("appname")),
                sent.value(QStringLiteral("appversion")),
                sent.value(QStringLiteral("systemversion")));
    const QList<QPlainTextEdit *> texts = shownTexts();
    const bool arrives = std::all_of(texts.cbegin(), texts.cend(),
        [](const QPlainTextEdit *text) { return FeedbackForm::canCarry(text->toPlainText()); });
    if (!arrives) {
        note += QLatin1Char(' ')
            + OFUtilities::tr("Letters with accents and other scripts arrive as “?”.");
    }
    _outlets.note->setText(note);
}

FeedbackFields OFController::fields() const
{
    FeedbackFields all = FeedbackForm::commonFields(_info);
    if (_outlets.btnIncludeMyEmail->isChecked()) {
        all.insert(QStringLiteral("email"), _outlets.cboEmailAddress->currentText());
    }
    switch (_outlets.tabs->currentIndex()) {
    case FeedbackOutlets::Support:
        all.insert(FeedbackForm::supportFields(_outlets.txtQuestion->toPlainText()));
        break;
    case FeedbackOutlets::Feature:
        all.insert(FeedbackForm::featureFields(
            _outlets.txtFeature->toPlainText(), _outlets.btnImportance->currentData().toString()));
        break;
    default:
        if (_crashReportMode) {
            all.insert(FeedbackForm::crashFields(_outlets.txtCrashDescription->toPlainText(),
                _outlets.txtCrashStepsToReproduce->toPlainText()));
        } else {
            all.insert(FeedbackForm::bugFields(_outlets.txtWhatHappened->toPlainText(),
                _outlets.txtStepsToReproduce->toPlainText(),
                _outlets.btnIsCritical->isChecked() ? FeedbackForm::Severity::Critical
                                                    : FeedbackForm::Severity::Usual));
        }
        break;
    }
    return all;
}

void OFController::sendFeedback()
{
    OpenFeedbackDelegate *const delegate = openFeedback.delegate();
    if (_submitUrl.isEmpty() && delegate == nullptr) {
        qCWarning(lcFeedback, "OpenFeedback Error: You must set OFSubmitFeedbackURL in Info.plist");
        return;
    }
    FeedbackFields form = fields();
    if (delegate != nullptr && !delegate->openFeedbackWillSendData(openFeedback, form)) {
        close();
        return;
    }
    const WebRequest request { .url = _submitUrl,
        .contentType = FeedbackForm::ContentType,
        .body = FeedbackForm::encoded(form) };
    _exchange = _desktop.webClient().send(request, [this](const WebAnswer &answer) {
        _exchange.reset();
        setSending(false);
        if (answer.problem.isEmpty()) {
            connectionDidFinishLoading();
        } else {
            connectionDidFailWithError(answer.problem);
        }
    });
    setSending(true);
}

// What is written meanwhile would be taken for sent.
void OFController::setSending(bool isSending)
{
    _outlets.piStatus->setVisible(isSending);
    for (QWidget *const control :
        { static_cast<QWidget *>(_outlets.tabs), static_cast<QWidget *>(_outlets.tabView),
            static_cast<QWidget *>(_outlets.btnIncludeMyEmail) }) {
        control->setEnabled(!isSending);
    }
    _outlets.cboEmailAddress->setEnabled(!isSending && _outlets.btnIncludeMyEmail->isChecked());
    updateSendButton();
}

void OFController::connectionDidFinishLoading()
{
    for (QPlainTextEdit *const text : { _outlets.txtQuestion, _outlets.txtFeature,
             _outlets.txtWhatHappened, _outlets.txtStepsToReproduce }) {
        text->clear();
    }
    tell(Outcome::FeedbackSentSuccessfully, OFUtilities::tr("Feedback Sent"),
        OFUtilities::tr("Your feedback has been sent successfully. Thank you!"));
}

void OFController::connectionDidFailWithError(const QString &problem)
{
    qCWarning(lcFeedback, "cannot send feedback to %s: %s", qUtf8Printable(_submitUrl.host()),
        qUtf8Printable(problem));
    tell(Outcome::FeedbackNotSentSuccessfully, OFUtilities::tr("Can't Send Feedback"),
        OFUtilities::tr("We were unable to send your feedback. Please check your internet "
                        "connection and try again."));
}

void OFController::tell(Outcome outcome, const QString &message, const QString &text)
{
    if (!isVisible()) {
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(text);
        return;
    }
    const bool isSent = outcome == Outcome::FeedbackSentSuccessfully;
    const QPointer<OFController> self(this);
    Alerts::run({ .style = isSent ? Alert::Style::Informational : Alert::Style::Warning,
                    .messageText = message,
                    .informativeText = text,
                    .buttons = { OFUtilities::tr("OK") } },
        this);
    if (self) {
        sheetDidEnd(outcome);
    }
}

void OFController::sheetDidEnd(Outcome outcome)
{
    if (outcome == Outcome::FeedbackSentSuccessfully) {
        close();
    }
}
