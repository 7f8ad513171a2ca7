#include "shell/preferences/HotKeyRecorder.h"

#include "shell/triggers/KeyTable.h"

#include <QKeyEvent>

namespace {

int maskOf(Qt::KeyboardModifiers modifiers)
{
    int mask = 0;
    for (const auto &[modifier, bit] :
        { std::pair(Qt::ControlModifier, KeyTable::Control), { Qt::AltModifier, KeyTable::Option },
            { Qt::MetaModifier, KeyTable::Command }, { Qt::ShiftModifier, KeyTable::Shift } }) {
        mask |= modifiers.testFlag(modifier) ? bit : 0;
    }
    return mask;
}

bool isModifierKey(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock)
        || (key >= Qt::Key_Super_L && key <= Qt::Key_Hyper_R) || key == Qt::Key_AltGr
        || key == Qt::Key_Mode_switch;
}

} // namespace

HotKeyRecorder::HotKeyRecorder(NamesOfKey namesOfKey, QWidget *parent)
    : QPushButton(parent)
    , _namesOfKey(std::move(namesOfKey))
{
    setCheckable(true);
    _limit.setSingleShot(true);
    _limit.setInterval(LongestGrab);
    connect(&_limit, &QTimer::timeout, this, [this] { setChecked(false); });
    setAutoDefault(false);
    connect(this, &QPushButton::toggled, this, &HotKeyRecorder::setRecording);
    setRecording(false);
    // Not narrower while it records.
    setMinimumWidth(sizeHint().width());
}

void HotKeyRecorder::setRecording(bool isRecording)
{
    if (isRecording) {
        _hasRefused = false;
        setFocus();
        grabKeyboard();
        _limit.start();
        setText(tr("Press It Now"));
    } else {
        releaseKeyboard();
        _limit.stop();
        setText(tr("Set by &Pressing…"));
    }
    Q_EMIT statusChanged({});
}

void HotKeyRecorder::tellHeld(int modifiers)
{
    Q_EMIT statusChanged(
        modifiers == 0 ? QString() : KeyTable::modifierString(modifiers) + QChar(u'…'));
}

bool HotKeyRecorder::event(QEvent *event)
{
    if (!isRecording()) {
        return QPushButton::event(event);
    }
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    case QEvent::KeyPress:
        _hasRefused = false;
        take(*static_cast<QKeyEvent *>(event));
        return true;
    case QEvent::KeyRelease:
        if (!_hasRefused) {
            tellHeld(maskOf(static_cast<QKeyEvent *>(event)->modifiers()));
        }
        return true;
    default:
        return QPushButton::event(event);
    }
}

void HotKeyRecorder::take(const QKeyEvent &event)
{
    const int modifiers = maskOf(event.modifiers());
    if (isModifierKey(event.key()) || event.isAutoRepeat()) {
        tellHeld(modifiers);
        return;
    }
    if (event.key() == Qt::Key_Escape && modifiers == 0) {
        setChecked(false);
        return;
    }
    const KeyTable table;
    const std::optional<int> code = table.codeOf(_namesOfKey(event.nativeScanCode()));
    if (!code) {
        refuse(tr("That key cannot be the hot key."));
    } else if (table.isTaken(*code, modifiers)) {
        refuse(tr("Hold a modifier key with it: alone, it would no longer reach other programs."));
    } else {
        setChecked(false);
        Q_EMIT recorded(*code, modifiers);
    }
}

// To be read until the next key is pressed.
void HotKeyRecorder::refuse(const QString &reason)
{
    _hasRefused = true;
    Q_EMIT statusChanged(reason);
}

void HotKeyRecorder::focusOutEvent(QFocusEvent *event)
{
    setChecked(false);
    QPushButton::focusOutEvent(event);
}

void HotKeyRecorder::hideEvent(QHideEvent *event)
{
    setChecked(false);
    QPushButton::hideEvent(event);
}
