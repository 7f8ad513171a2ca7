#include "updates/UpdateWindow.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

UpdateWindow::UpdateWindow(
    const QString &programName, const QVersionNumber &present, const Release &release)
    : _automaticChecks(new QCheckBox(tr("&Look for new versions once a day")))
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("%1 %2 is available").arg(programName, release.version.toString()));
    auto *const all = new QVBoxLayout(this);
    auto *const title = new QLabel(windowTitle());
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    all->addWidget(title);
    all->addWidget(new QLabel(tr("This is version %1.").arg(present.toString())));
    if (!release.notes.isEmpty()) {
        auto *const label = new QLabel(tr("&What is new:"));
        auto *const notes = new QPlainTextEdit(release.notes);
        notes->setReadOnly(true);
        // Keys scroll it, as they do not where nothing can be written.
        notes->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        notes->setTabChangesFocus(true);
        label->setBuddy(notes);
        all->addWidget(label);
        all->addWidget(notes, 1);
    }
    all->addWidget(_automaticChecks);
    addButtons(release);
}

void UpdateWindow::addButtons(const Release &release)
{
    auto *const box = new QDialogButtonBox;
    layout()->addWidget(box);
    QPushButton *const skip =
        box->addButton(tr("&Skip This Version"), QDialogButtonBox::DestructiveRole);
    // Return never presses it by itself.
    skip->setAutoDefault(false);
    connect(skip, &QPushButton::clicked, this, [this] {
        Q_EMIT skipWanted();
        reject();
    });
    QPushButton *const later = box->addButton(tr("&Remind Me Later"), QDialogButtonBox::RejectRole);
    connect(later, &QPushButton::clicked, this, &QDialog::reject);
    later->setAutoDefault(release.link.isEmpty());
    later->setDefault(release.link.isEmpty());
    if (!release.link.isEmpty()) {
        QPushButton *const show =
            box->addButton(tr("Show in &Browser"), QDialogButtonBox::AcceptRole);
        show->setDefault(true);
        connect(show, &QPushButton::clicked, this, [this, page = release.link] {
            Q_EMIT pageWanted(page);
            accept();
        });
    }
}
