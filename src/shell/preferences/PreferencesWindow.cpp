#include "shell/preferences/PreferencesWindow.h"

#include "shell/preferences/PreferenceControls.h"
#include "shell/preferences/PreferenceTabs.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

PreferencesWindow::PreferencesWindow(
    const HotKeyChoice &hotKey, const Items &items, QWidget *parent)
    : QDialog(parent)
    , _tabs(new QTabWidget)
{
    setWindowTitle(tr("Preferences of Ortu"));
    setObjectName(QStringLiteral("Ortu Preferences"));
    setWindowModality(Qt::WindowModal);
    addTab(tr("Ge&neral"), &PreferenceTabs::general);
    addTab(tr("&Appearance"), &PreferenceTabs::appearance);
    addTab(tr("Gro&ups and Order"), &PreferenceTabs::groupsAndOrder);
    addTab(tr("&Folders"), [&items](PreferenceControls &controls) {
        return PreferenceTabs::folders(controls, items);
    });
    addTab(tr("Tri&ggers"), [&hotKey](PreferenceControls &controls) {
        return PreferenceTabs::triggers(controls, hotKey);
    });

    auto *const buttons =
        new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults);
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("&Defaults of This Tab"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
        [this] { _controls[size_t(_tabs->currentIndex())]->reset(); });
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(_tabs);
    layout->addWidget(buttons);
}

PreferencesWindow::~PreferencesWindow() = default;

void PreferencesWindow::addTab(const QString &title, const Page &page)
{
    _controls.push_back(std::make_unique<PreferenceControls>());
    _tabs->addTab(page(*_controls.back()), title);
}

void PreferencesWindow::showUnder(const QPoint &middleOfUpperEdge)
{
    adjustSize();
    QRect place(QPoint(middleOfUpperEdge.x() - width() / 2, middleOfUpperEdge.y()), size());
    const QRect available = parentWidget()->screen()->availableGeometry();
    place.moveRight(std::min(place.right(), available.right()));
    place.moveBottom(std::min(place.bottom(), available.bottom()));
    place.moveLeft(std::max(place.left(), available.left()));
    place.moveTop(std::max(place.top(), available.top()));
    move(place.topLeft());
    show();
}

// Its choosers of colours hang on it.
void PreferencesWindow::hideEvent(QHideEvent *event)
{
    for (const std::unique_ptr<PreferenceControls> &controls : _controls) {
        controls->closeChoosers();
    }
    QDialog::hideEvent(event);
}
