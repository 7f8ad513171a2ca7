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
#include <QCursor>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabBar>

#include <algorithm>
#include <utility>

namespace {

// What window managers put around a window; it is not known before that is shown.
constexpr QSize UsualFrame { 16, 48 };

} // namespace

OFController::OFController(
    OpenFeedback &reporter, const Desktop &desktop, const InfoDictionary &info)
    : openFeedback(reporter)
    , _desktop(desktop)
    , _info(info)
    , _submitUrl(OpenFeedback::submitUrl(info))
    , _outlets(layOutFeedback(*this))
    , _draft(desktop.searchPaths().libraryFolder(SearchPaths::Domain::User))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    awakeFromNib();
}

OFController::~OFController()
{
    if (isSending()) {
        qCWarning(lcFeedback, "feedback may not have been sent: the program ends before %s answers",
            qUtf8Printable(_submitUrl.host()));
    }
    keepDraft();
}

void OFController::awakeFromNib()
{
    const QString name = _info.stringForKey(QStringLiteral("CFBundleName"));
    setWindowTitle(OFUtilities::tr("%1 Feedback").arg(name));
    _outlets.txtCrashTitle->setText(_outlets.txtCrashTitle->text().arg(name));
    populateEmailAddresses();
    restoreDraft();
    connect(this, &QDialog::finished, this, &OFController::keepDraft);
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
        place();
        show();
    }
    if (std::exchange(_isFailurePending, false)) {
        QMetaObject::invokeMethod(
            this, [this] { tell(Outcome::FeedbackNotSentSuccessfully); }, Qt::QueuedConnection);
    }
}

// In the middle of the screen that the user looks at, and where it was before on that one.
void OFController::place()
{
    QScreen *const pointed = QGuiApplication::screenAt(QCursor::pos());
    QScreen *const wanted = pointed != nullptr ? pointed : QGuiApplication::primaryScreen();
    if (wanted == nullptr || wanted == _screen) {
        return;
    }
    const QRect available = wanted->availableGeometry();
    if (_screen == nullptr) {
        // Qt would leave it two thirds of the screen, too little for large fonts.
        const QSize most = available.size() - UsualFrame;
        const int width = std::min(sizeHint().width(), most.width());
        resize(width, std::min(layout()->totalHeightForWidth(width), most.height()));
    }
    _screen = wanted;
    const QPoint place = available.center() - QRect({}, size() + UsualFrame).center();
    move(std::max(place.x(), available.left()), std::max(place.y(), available.top()));
}

// Of the form that is shown, the one that must not be empty.
const QPlainTextEdit &OFController::mainText() const
{
    switch (_outlets.tabs->currentIndex()) {
    case FeedbackOutlets::Support:
        return *_outlets.txtQuestion;
    case FeedbackOutlets::Feature:
        return *_outlets.txtFeature;
    default:
        return _crashReportMode ? *_outlets.txtCrashDescription : *_outlets.txtWhatHappened;
    }
}

QMap<QString, QPlainTextEdit *> OFController::draftTexts() const
{
    return { { QStringLiteral("question"), _outlets.txtQuestion },
        { QStringLiteral("feature"), _outlets.txtFeature },
        { QStringLiteral("whatHappened"), _outlets.txtWhatHappened },
        { QStringLiteral("stepsToReproduce"), _outlets.txtStepsToReproduce } };
}

void OFController::restoreDraft()
{
    const QVariantMap kept = _draft.read();
    const QMap<QString, QPlainTextEdit *> texts = draftTexts();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        text.value()->setPlainText(kept.value(text.key()).toString());
    }
}

void OFController::keepDraft()
{
    QVariantMap kept;
    const QMap<QString, QPlainTextEdit *> texts = draftTexts();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        kept.insert(text.key(), text.value()->toPlainText());
    }
    _draft.write(kept);
}

bool OFController::sendButtonIsEnabled() const
{
    const bool isAnswerable = !_outlets.btnIncludeMyEmail->isChecked()
        || !_outlets.cboEmailAddress->currentText().isEmpty();
    return isAnswerable && !mainText().document()->isEmpty();
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
    const FeedbackFields sent = fields();
    QString note =
        OFUtilities::tr("Goes to %1, with the versions of %2 (%3) and of the system (%4).")
            .arg(_submitUrl.host(), sent.value(QStringLiteral("appname")),
                sent.value(QStringLiteral("appversion")),
                sent.value(QStringLiteral("systemversion")));
    const bool arrives = std::all_of(sent.cbegin(), sent.cend(), &FeedbackForm::canCarry);
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
    _isFailurePending = false;
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

// Text typed while sending would be cleared as if it had been sent.
void OFController::setSending(bool isSending)
{
    if (isSending) {
        _focusBeforeSending = focusWidget();
    }
    _outlets.piStatus->setVisible(isSending);
    for (QWidget *const control :
        { static_cast<QWidget *>(_outlets.tabs), static_cast<QWidget *>(_outlets.tabView),
            static_cast<QWidget *>(_outlets.btnIncludeMyEmail) }) {
        control->setEnabled(!isSending);
    }
    _outlets.cboEmailAddress->setEnabled(!isSending && _outlets.btnIncludeMyEmail->isChecked());
    updateSendButton();
    if (!isSending && _focusBeforeSending) {
        _focusBeforeSending->setFocus();
    }
}

void OFController::connectionDidFinishLoading()
{
    for (QPlainTextEdit *const text : draftTexts()) {
        text->clear();
    }
    keepDraft();
    tell(Outcome::FeedbackSentSuccessfully);
}

void OFController::connectionDidFailWithError(const QString &problem)
{
    qCWarning(lcFeedback, "cannot send feedback to %s: %s", qUtf8Printable(_submitUrl.host()),
        qUtf8Printable(problem));
    tell(Outcome::FeedbackNotSentSuccessfully);
}

void OFController::tell(Outcome outcome)
{
    const bool isSent = outcome == Outcome::FeedbackSentSuccessfully;
    const QString text = isSent
        ? OFUtilities::tr("Your feedback has been sent successfully. Thank you!")
        : OFUtilities::tr("We were unable to send your feedback. Please check your internet "
                          "connection and try again.");
    if (!isVisible()) {
        _isFailurePending = !isSent;
        Q_EMIT NotificationCenter::defaultCenter().N_UserMessage(text);
        return;
    }
    const QPointer<OFController> self(this);
    openFeedback.runAlert({ .style = isSent ? Alert::Style::Informational : Alert::Style::Warning,
                              .messageText = isSent ? OFUtilities::tr("Feedback Sent")
                                                    : OFUtilities::tr("Can't Send Feedback"),
                              .informativeText = text,
                              .buttons = { OFUtilities::tr("OK") } },
        *this);
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
