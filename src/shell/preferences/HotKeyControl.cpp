#include "shell/preferences/HotKeyControl.h"

#include "shell/preferences/HotKeyRecorder.h"
#include "shell/preferences/PreferenceControls.h"
#include "shell/triggers/KeyTable.h"
#include "shell/triggers/TriggerKeys.h"
#include "support/Translations.h"
#include "support/UserDefaults.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>

#include <algorithm>

namespace {

constexpr int NoKey = -1;

} // namespace

HotKeyControl::HotKeyControl(HotKeyChoice choice, QWidget *parent)
    : QWidget(parent)
    , _choice(std::move(choice))
    , _keys(new QComboBox)
    , _problem(new QLabel)
{
    auto *const row = new QHBoxLayout;
    addModifiers(*row);
    _keys->addItem(tr("No hot key"), NoKey);
    for (const KeyTable::Key &key : KeyTable().keys()) {
        _keys->addItem(key.title, key.tag);
    }
    connect(_keys, &QComboBox::activated, this, &HotKeyControl::choose);
    row->addWidget(_keys, 1);
    _keys->setAccessibleDescription(tr("Key"));
    setFocusProxy(_keys);
    setFocusPolicy(_keys->focusPolicy());
    addRecorder(*row);
    _problem->setWordWrap(true);
    // A line stays free for it, so that nothing moves.
    _problem->setMinimumHeight(_problem->fontMetrics().lineSpacing());
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(row);
    layout->addWidget(_problem);

    PreferenceControls::disableIfFixed(
        *this, { TriggerKeys::hotKeyCode, TriggerKeys::hotKeyModifiers });
    connect(&UserDefaults::standard(), &UserDefaults::changed, this, [this](const QString &key) {
        if (key == TriggerKeys::hotKeyCode || key == TriggerKeys::hotKeyModifiers) {
            takeStates();
        }
    });
    takeStates();
}

void HotKeyControl::addModifiers(QHBoxLayout &row)
{
    for (const auto &[bit, name] : { std::pair<int, QString>(KeyTable::Control, tr("control")),
             { KeyTable::Option, tr("option") }, { KeyTable::Command, tr("command") },
             { KeyTable::Shift, tr("shift") } }) {
        auto *const box = new QCheckBox(name.left(1).toUpper() + name.mid(1));
        connect(box, &QCheckBox::clicked, this, &HotKeyControl::choose);
        row.addWidget(box);
        _modifiers.emplace_back(bit, box);
    }
}

void HotKeyControl::addRecorder(QHBoxLayout &row)
{
    auto *const recorder = new HotKeyRecorder(_choice.namesOfKey);
    connect(recorder, &HotKeyRecorder::recorded, this, [this](int code, int modifiers) {
        _choice.choose(code, modifiers);
        takeStates();
    });
    connect(recorder, &HotKeyRecorder::statusChanged, this, [this](const QString &text) {
        showProblem();
        if (!text.isEmpty()) {
            _problem->setText(text);
        }
    });
    row.addWidget(recorder);
}

void HotKeyControl::showProblem()
{
    const QString problem = _choice.problem();
    const UserDefaults &defaults = UserDefaults::standard();
    if (!problem.isEmpty()) {
        const QString text = tr("No key summons Ortu: %1.").arg(Translations::ofReason(problem));
        _problem->setText((text + QLatin1Char(' ') + _choice.advice()).trimmed());
    } else if (KeyTable().isTaken(int(defaults.integerForKey(TriggerKeys::hotKeyCode)),
                   int(defaults.integerForKey(TriggerKeys::hotKeyModifiers)))) {
        _problem->setText(tr("Without Control or the like, this key reaches no other program."));
    } else {
        _problem->clear();
    }
}

// The preferences may name a key that is not in the menu, or none by any negative code.
void HotKeyControl::takeStates()
{
    const UserDefaults &defaults = UserDefaults::standard();
    const auto mask = int(defaults.integerForKey(TriggerKeys::hotKeyModifiers));
    for (const auto &[bit, box] : _modifiers) {
        box->setChecked((mask & bit) != 0);
    }
    const qint64 code = defaults.integerForKey(TriggerKeys::hotKeyCode);
    _keys->setCurrentIndex(_keys->findData(int(std::max<qint64>(code, NoKey))));
    showProblem();
}

void HotKeyControl::showEvent(QShowEvent *event)
{
    takeStates();
    QWidget::showEvent(event);
}

void HotKeyControl::reset()
{
    const UserDefaults &defaults = UserDefaults::standard();
    if (isEnabled()) {
        _choice.choose(defaults.defaultForKey(TriggerKeys::hotKeyCode).toInt(),
            defaults.defaultForKey(TriggerKeys::hotKeyModifiers).toInt());
    }
}

void HotKeyControl::choose()
{
    int mask = 0;
    for (const auto &[bit, box] : _modifiers) {
        mask |= box->isChecked() ? bit : 0;
    }
    const QVariant code = _keys->currentData();
    if (code.isValid()) {
        _choice.choose(code.toInt(), mask);
    }
    takeStates();
}
