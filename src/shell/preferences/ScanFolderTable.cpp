#include "shell/preferences/ScanFolderTable.h"

#include "shell/preferences/DirectoriesTable.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

// Qt's dialog chooses one folder only unless its views are told otherwise.
void allowSeveral(QFileDialog &dialog)
{
    for (const QString &name : { QStringLiteral("listView"), QStringLiteral("treeView") }) {
        if (auto *const view = dialog.findChild<QAbstractItemView *>(name)) {
            view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        }
    }
}

} // namespace

ScanFolderTable::ScanFolderTable(UserDefaults &defaults, const Items &items, QWidget *parent)
    : QWidget(parent)
    , _controller(defaults, items)
    , _directoriesTable(new DirectoriesTable(_controller, this))
    , _directoryPlusButton(makeButton(QStringLiteral("+"), tr("Add folders"),
          QKeySequence(Qt::Key_Insert).toString(QKeySequence::NativeText)))
    , _directoryMinusButton(makeButton(QStringLiteral("\u2212"), tr("Remove the selected folders"),
          QKeySequence(Qt::Key_Delete).toString(QKeySequence::NativeText)))
{
    auto *const buttons = new QHBoxLayout;
    buttons->addWidget(_directoryPlusButton);
    buttons->addWidget(_directoryMinusButton);
    buttons->addStretch();
    auto *const all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(_directoriesTable);
    all->addLayout(buttons);
    setFocusProxy(_directoriesTable);

    connect(
        _directoryPlusButton, &QToolButton::clicked, this, &ScanFolderTable::directoryPlusClicked);
    connect(_directoryMinusButton, &QToolButton::clicked, &_controller,
        &OTArrayController::removeSelected);
    connect(_directoriesTable, &DirectoriesTable::additionWanted, this,
        &ScanFolderTable::directoryPlusClicked);
    connect(_directoriesTable, &DirectoriesTable::removalWanted, &_controller,
        &OTArrayController::removeSelected);
    connect(&_controller.selection(), &QItemSelectionModel::selectionChanged, this,
        &ScanFolderTable::updateButtons);
    updateButtons();
}

void ScanFolderTable::closeOpenPanel()
{
    delete _openPanel;
}

QToolButton *ScanFolderTable::makeButton(
    const QString &sign, const QString &name, const QString &key)
{
    auto *const button = new QToolButton(this);
    button->setText(sign);
    button->setAccessibleName(name);
    button->setToolTip(tr("%1 (%2)", "what a button does, and its key").arg(name, key));
    return button;
}

void ScanFolderTable::updateButtons()
{
    _directoryMinusButton->setEnabled(_controller.selection().hasSelection());
}

void ScanFolderTable::directoryPlusClicked()
{
    if (_openPanel) {
        _openPanel->raise();
        return;
    }
    _openPanel = new QFileDialog(this, tr("Choose folders to scan"), QDir::homePath());
    _openPanel->setAttribute(Qt::WA_DeleteOnClose);
    _openPanel->setAttribute(Qt::WA_QuitOnClose, false);
    // The desktop's own dialogs choose one folder only.
    _openPanel->setOption(QFileDialog::DontUseNativeDialog);
    _openPanel->setOption(QFileDialog::ShowDirsOnly);
    _openPanel->setOption(QFileDialog::DontResolveSymlinks);
    _openPanel->setFileMode(QFileDialog::Directory);
    _openPanel->setLabelText(QFileDialog::Accept, tr("Add"));
    allowSeveral(*_openPanel);
    connect(_openPanel, &QFileDialog::finished, this, &ScanFolderTable::openPanelDidEnd);
    _openPanel->open();
}

void ScanFolderTable::openPanelDidEnd(int returnCode)
{
    if (returnCode == QDialog::Accepted) {
        _controller.insertPaths(_openPanel->selectedFiles(), _controller.selectedRow() + 1);
    }
}
