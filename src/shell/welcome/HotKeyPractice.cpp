#include "shell/welcome/HotKeyPractice.h"

#include "shell/triggers/TriggerKeys.h"
#include "support/UserDefaults.h"

#include <QLabel>
#include <QVBoxLayout>

HotKeyPractice::HotKeyPractice(const HotKeyChoice &hotKey, NameOfKey nameOfKey, QWidget *parent)
    : QWidget(parent)
    , _nameOfKey(std::move(nameOfKey))
    , _request(new QLabel)
{
    _request->setAlignment(Qt::AlignCenter);
    auto *const layout = new QVBoxLayout(this);
    layout->addWidget(_request);
    layout->addWidget(new HotKeyControl(hotKey), 1);
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (key == TriggerKeys::hotKeyCode || key == TriggerKeys::hotKeyModifiers) {
            begin();
        }
    });
    begin();
}

void HotKeyPractice::begin()
{
    const QString name = _nameOfKey();
    _request->setText(name.isEmpty() ? tr("Choose a key, then press it.")
                                     : tr("Press it now: <b>%1</b>").arg(name.toHtmlEscaped()));
}

void HotKeyPractice::tellArrival()
{
    _request->setText(tr("<b>It arrived.</b> From now on this key shows and hides Ortu."));
}
