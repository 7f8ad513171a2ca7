#include "shell/welcome/TypingChoice.h"

#include "support/UserDefaults.h"

#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

const QString matchesMoreThanNames = QStringLiteral("matchesMoreThanNames");

} // namespace

TypingChoice::TypingChoice(QWidget *parent)
    : QWidget(parent)
    , _byName(new QRadioButton(tr("by its n&ame")))
    , _byAnything(new QRadioButton(tr("b&y anything: what it is for, its command, what it can do")))
{
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("How shall typing find an application?")));
    layout->addWidget(_byName);
    layout->addWidget(_byAnything);
    UserDefaults &defaults = UserDefaults::standard();
    setEnabled(!defaults.isFixedForThisRun(matchesMoreThanNames));
    connect(_byAnything, &QRadioButton::clicked, this,
        [] { UserDefaults::standard().setObject(matchesMoreThanNames, true); });
    connect(_byName, &QRadioButton::clicked, this,
        [] { UserDefaults::standard().setObject(matchesMoreThanNames, false); });
    connect(&defaults, &UserDefaults::changed, this, [this](const QString &key) {
        if (key == matchesMoreThanNames) {
            takePreference();
        }
    });
    takePreference();
}

void TypingChoice::takePreference()
{
    const bool isByAnything = UserDefaults::standard().boolForKey(matchesMoreThanNames);
    (isByAnything ? _byAnything : _byName)->setChecked(true);
}
