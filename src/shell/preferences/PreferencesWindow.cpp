#include "shell/preferences/PreferencesWindow.h"

#include "shell/preferences/PreferenceControls.h"
#include "shell/preferences/SettingsButtons.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

PreferencesWindow::PreferencesWindow(const HotKeyChoice &hotKey, const Items &items,
    PreferenceTabs::UpdateChecks updates, QWidget *parent)
    : Sheet(tr("Preferences of Ortu"), parent)
    , _tabs(new QTabWidget)
    , _problems(new QLabel)
{
    setObjectName(QStringLiteral("Ortu Preferences"));
    addTabs(hotKey, items, updates);
    auto *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults);
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("&Defaults of This Tab"));
    // Escape does that; the key that Qt gives it belongs to a control of a tab.
    buttons->button(QDialogButtonBox::Close)->setText(tr("Close"));
    _prefsQuitButton = buttons->addButton(tr("&Quit Ortu"), QDialogButtonBox::ActionRole);
    connect(_prefsQuitButton, &QPushButton::clicked, this, &PreferencesWindow::quitWanted);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
        [this] { _controls[size_t(_tabs->currentIndex())]->reset(); });
    _problems->setWordWrap(true);
    _problems->setTextFormat(Qt::PlainText);
    connect(&UserDefaults::standard(), &UserDefaults::writeProblemChanged, this,
        &PreferencesWindow::showProblems);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(_tabs);
    layout->addWidget(_problems);
    layout->addWidget(buttons);
    // In the window, or Qt 6.8 lets Return press the first button of the row.
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    showProblems();
}

PreferencesWindow::~PreferencesWindow() = default;

void PreferencesWindow::addTabs(
    const HotKeyChoice &hotKey, const Items &items, PreferenceTabs::UpdateChecks updates)
{
    addTab(tr("Ge&neral"), [updates](PreferenceControls &controls) {
        return PreferenceTabs::general(controls, updates);
    });
    addTab(tr("&Appearance"), &PreferenceTabs::appearance);
    addTab(tr("Gro&ups and Order"), [this](PreferenceControls &controls) {
        return PreferenceTabs::groupsAndOrder(
            controls, [this] { Q_EMIT colorSortingOptionsWanted(); });
    });
    addTab(tr("&Folders"), [&items](PreferenceControls &controls) {
        return PreferenceTabs::folders(controls, items);
    });
    addTab(tr("Tri&ggers"), [&hotKey](PreferenceControls &controls) {
        return PreferenceTabs::triggers(controls, hotKey);
    });
    auto *const settings = new SettingsButtons;
    connect(settings, &SettingsButtons::exportWanted, this, &PreferencesWindow::exportWanted);
    connect(settings, &SettingsButtons::importWanted, this, &PreferencesWindow::importWanted);
    addTab(tr("Ad&vanced"), [settings](PreferenceControls &controls) {
        return PreferenceTabs::advanced(controls, settings);
    });
}

void PreferencesWindow::addTab(const QString &title, const Page &page)
{
    _controls.push_back(std::make_unique<PreferenceControls>());
    _tabs->addTab(page(*_controls.back()), title);
}

void PreferencesWindow::hotKeyProblemDidChange()
{
    findChild<HotKeyControl *>()->takeStates();
}

void PreferencesWindow::setQuitButtonHidden(bool isHidden)
{
    _prefsQuitButton->setVisible(!isHidden);
}

void PreferencesWindow::setHiddenPreferencesShown(bool areShown)
{
    for (const std::unique_ptr<PreferenceControls> &controls : _controls) {
        controls->setHiddenShown(areShown);
    }
}

void PreferencesWindow::setProblem(const QString &problem)
{
    _problem = problem;
    showProblems();
}

void PreferencesWindow::showProblems()
{
    QStringList lines;
    if (const QString &reason = UserDefaults::standard().writeProblem(); !reason.isEmpty()) {
        lines.append(tr("Changes are not kept: %1.").arg(Translations::ofReason(reason)));
    }
    if (!_problem.isEmpty()) {
        lines.append(_problem);
    }
    _problems->setText(lines.join(u'\n'));
    _problems->setHidden(lines.isEmpty());
}

void PreferencesWindow::showEvent(QShowEvent *event)
{
    setHiddenPreferencesShown(false);
    Sheet::showEvent(event);
}

// Its choosers of colours hang on it.
void PreferencesWindow::hideEvent(QHideEvent *event)
{
    for (const std::unique_ptr<PreferenceControls> &controls : _controls) {
        controls->closeChoosers();
    }
    setProblem({});
    Sheet::hideEvent(event);
}
