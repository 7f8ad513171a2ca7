#include "shell/welcome/OTWelcomeAssistant.h"

#include "platform/PageRenderer.h"
#include "shell/welcome/PageView.h"
#include "shell/welcome/TypingChoice.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>

#include <algorithm>

namespace {

constexpr int firstStep = 1;
// The share of its width that a page leaves free at each side.
constexpr int PageMargin = 20;
// The part at the foot of a page that is left to controls.
constexpr double FreeShare = 90.0 / 320;

namespace Key {
const QString showWelcomeWindow = QStringLiteral("showWelcomeWindow");
const QString lastShownWelcomeStep = QStringLiteral("lastShownWelcomeStep");
} // namespace Key

} // namespace

void OTWelcomeAssistant::registerDefaults()
{
    UserDefaults::standard().registerState(
        { { Key::showWelcomeWindow, true }, { Key::lastShownWelcomeStep, 0 } });
}

bool OTWelcomeAssistant::isWanted()
{
    return UserDefaults::standard().boolForKey(Key::showWelcomeWindow);
}

OTWelcomeAssistant::OTWelcomeAssistant(std::unique_ptr<PagedDocument> document,
    const QString &pdfName, const HotKeyChoice &hotKey, HotKeyPractice::NameOfKey nameOfKey)
    : _document(std::move(document))
    , _lastStep(std::max(_document->pageCount(), firstStep))
    , _pdfView(new PageView(*_document))
    , _practice(new HotKeyPractice(hotKey, std::move(nameOfKey), _pdfView))
    , _typingChoice(new TypingChoice(_pdfView))
    , _stepLabel(new QLabel)
    , _prevButton(new QPushButton(tr("Pre&vious")))
    , _nextButton(new QPushButton)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QCoreApplication::translate("ProgramDocuments", pdfName.toUtf8().constData()));
    _nextButton->setDefault(true);
    auto *const buttons = new QHBoxLayout;
    buttons->addWidget(_stepLabel, 1);
    buttons->addWidget(_prevButton);
    buttons->addWidget(_nextButton);
    buttons->setContentsMargins(12, 12, 12, 12);
    auto *const all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->setSpacing(0);
    all->setSizeConstraint(QLayout::SetFixedSize);
    all->addWidget(_pdfView);
    all->addLayout(buttons);
    placeAtFoot(_practice);
    placeAtFoot(_typingChoice);
    addKeys();
    connect(_pdfView, &PageView::pageChanged, this, &OTWelcomeAssistant::updateStepNumberField);
    connect(_nextButton, &QPushButton::clicked, this, &OTWelcomeAssistant::showNextStep);
    connect(_prevButton, &QPushButton::clicked, this, &OTWelcomeAssistant::showPreviousStep);
}

OTWelcomeAssistant::~OTWelcomeAssistant() = default;

// Where the page leaves room for it.
void OTWelcomeAssistant::placeAtFoot(QWidget *controls) const
{
    const int height = std::max(controls->sizeHint().height(), int(_pdfView->height() * FreeShare));
    const int margin = _pdfView->width() / PageMargin;
    controls->setGeometry(QRect(0, _pdfView->height() - height, _pdfView->width(), height)
                              .adjusted(margin, 0, -margin, 0));
}

void OTWelcomeAssistant::present()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const qint64 last = defaults.integerForKey(Key::lastShownWelcomeStep);
    const int step = int(std::clamp<qint64>(last, firstStep, _lastStep));
    showStep(step == _lastStep && !isWanted() ? firstStep : step);
    _practice->begin();
    adjustSize();
    move(screen()->availableGeometry().center() - rect().center());
    show();
    _nextButton->setFocus();
}

int OTWelcomeAssistant::curStep() const
{
    return _pdfView->currentPage() + 1;
}

void OTWelcomeAssistant::showStep(int step)
{
    _pdfView->goToPage(std::clamp(step, firstStep, _lastStep) - 1);
    updateStepNumberField();
}

void OTWelcomeAssistant::updateStepNumberField()
{
    const int step = curStep();
    _stepLabel->setText(tr("%1 of %2").arg(step).arg(_lastStep));
    UserDefaults::standard().setObject(Key::lastShownWelcomeStep, step);
    _nextButton->setText(step == _lastStep ? tr("&Close") : tr("&Next"));
    _prevButton->setEnabled(step > firstStep);
    _practice->setVisible(step == HotKeyStep);
    _typingChoice->setVisible(step == TypingStep);
}

void OTWelcomeAssistant::showNextStep()
{
    if (curStep() == _lastStep) {
        close();
    } else {
        showStep(curStep() + 1);
    }
    if (curStep() == _lastStep) {
        UserDefaults::standard().setObject(Key::showWelcomeWindow, false);
    }
}

void OTWelcomeAssistant::showPreviousStep()
{
    showStep(curStep() - 1);
}

bool OTWelcomeAssistant::takeHotKey()
{
    const bool isAsked = isVisible() && curStep() == HotKeyStep;
    if (isAsked) {
        _practice->tellArrival();
    }
    return isAsked;
}

// Escape closes any dialog, and Return presses the button for the next step.
void OTWelcomeAssistant::addKeys()
{
    const auto add = [this](Qt::Key key, auto action) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, action);
    };
    add(Qt::Key_Right, &OTWelcomeAssistant::showNextStep);
    add(Qt::Key_PageDown, &OTWelcomeAssistant::showNextStep);
    add(Qt::Key_Left, &OTWelcomeAssistant::showPreviousStep);
    add(Qt::Key_PageUp, &OTWelcomeAssistant::showPreviousStep);
    add(Qt::Key_Delete, &QDialog::reject);
}
