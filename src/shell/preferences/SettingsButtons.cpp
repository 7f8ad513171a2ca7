#include "shell/preferences/SettingsButtons.h"

#include <QDir>
#include <QHBoxLayout>
#include <QPushButton>

SettingsButtons::SettingsButtons(QWidget *parent)
    : QWidget(parent)
{
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    addButton(tr("E&xport…"), QFileDialog::AcceptSave, &SettingsButtons::exportWanted);
    addButton(tr("&Import…"), QFileDialog::AcceptOpen, &SettingsButtons::importWanted);
    layout->addStretch();
}

void SettingsButtons::closeFileDialog()
{
    delete _dialog;
}

void SettingsButtons::addButton(const QString &text, QFileDialog::AcceptMode mode, Wanted wanted)
{
    auto *const button = new QPushButton(text);
    button->setAutoDefault(false);
    layout()->addWidget(button);
    const QString title =
        mode == QFileDialog::AcceptSave ? tr("Export Settings") : tr("Import Settings");
    connect(button, &QPushButton::clicked, this,
        [this, title, mode, wanted] { openFileDialog(title, mode, wanted); });
}

void SettingsButtons::openFileDialog(
    const QString &title, QFileDialog::AcceptMode mode, Wanted wanted)
{
    if (_dialog) {
        _dialog->raise();
        return;
    }
    _dialog = new QFileDialog(this, title, QDir::homePath());
    _dialog->setAttribute(Qt::WA_DeleteOnClose);
    _dialog->setAttribute(Qt::WA_QuitOnClose, false);
    _dialog->setAcceptMode(mode);
    _dialog->setFileMode(
        mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (mode == QFileDialog::AcceptSave) {
        _dialog->selectFile(tr("Ortu Settings") + QStringLiteral(".plist"));
    }
    // The dialog is gone before anything else is said about the file.
    connect(
        _dialog, &QFileDialog::fileSelected, this,
        [this, wanted](const QString &file) {
            Q_EMIT(this->*wanted)
            (file);
        },
        Qt::QueuedConnection);
    _dialog->open();
}
