#include "shell/preferences/ExclusionWindow.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Lines of the list of words that are seen at once.
constexpr int wordLines = 8;

} // namespace

ExclusionWindow::ExclusionWindow(QWidget *parent)
    : Sheet(tr("Exclude Applications"), parent)
    , _excludeDockAppsCheckbox(new QCheckBox(tr("Those in the &dock or panel of the desktop")))
    , _excludeAppsWithSubstringsCheckbox(
          new QCheckBox(tr("Those whose &name contains one of these words:")))
    , _nameSubstringsTextView(new QPlainTextEdit)
{
    auto *const intro = new QLabel(tr("Excluded applications leave the group “Included”. Each can "
                                      "be included again from the group “Excluded”."));
    intro->setWordWrap(true);
    _excludeAppsWithSubstringsCheckbox->setChecked(true);
    _nameSubstringsTextView->setReadOnly(true);
    _nameSubstringsTextView->setTabChangesFocus(true);
    _nameSubstringsTextView->setAccessibleName(tr("Words"));
    _nameSubstringsTextView->setMinimumHeight(
        wordLines * _nameSubstringsTextView->fontMetrics().lineSpacing());

    auto *const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    _excludeAppsButton = buttons->addButton(tr("&Exclude"), QDialogButtonBox::AcceptRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &ExclusionWindow::exclude);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addWidget(_excludeDockAppsCheckbox);
    layout->addWidget(_excludeAppsWithSubstringsCheckbox);
    layout->addWidget(_nameSubstringsTextView);
    layout->addWidget(buttons);
    for (const QCheckBox *const box :
        { _excludeDockAppsCheckbox, _excludeAppsWithSubstringsCheckbox }) {
        connect(box, &QCheckBox::toggled, this, [this] {
            _excludeAppsButton->setEnabled(_excludeDockAppsCheckbox->isChecked()
                || _excludeAppsWithSubstringsCheckbox->isChecked());
        });
    }
}

void ExclusionWindow::setNameSubstrings(const QStringList &words)
{
    _nameSubstringsTextView->setPlainText(words.join(u'\n'));
}

void ExclusionWindow::exclude()
{
    Q_EMIT exclusionWanted(
        _excludeDockAppsCheckbox->isChecked(), _excludeAppsWithSubstringsCheckbox->isChecked());
    accept();
}
