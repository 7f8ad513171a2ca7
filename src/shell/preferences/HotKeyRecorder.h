// A button that takes the next key that is pressed, with the modifier keys that are held, for the
// hot key. Meanwhile it has the keyboard to itself, so that keys which the desktop uses reach it
// too. Escape, another click, the loss of the focus and LongestGrab give up.

#pragma once

#include <QPushButton>
#include <QStringList>
#include <QTimer>

#include <chrono>
#include <functional>

class HotKeyRecorder final : public QPushButton
{
    Q_OBJECT

public:
    // Meanwhile no other program, such as one that locks the screen, gets the keyboard.
    static constexpr std::chrono::seconds LongestGrab { 10 };
    // The names of a key's place by its native scan code, as HotKey tells them.
    using NamesOfKey = std::function<QStringList(quint32 nativeScanCode)>;

    explicit HotKeyRecorder(NamesOfKey namesOfKey, QWidget *parent = nullptr);

    bool isRecording() const { return isChecked(); }

Q_SIGNALS:
    // By the key's code and the mask of its modifiers.
    void recorded(int code, int modifiers);
    // To be shown: which modifiers are held, or why a key will not do. Empty when there is nothing
    // to say.
    void statusChanged(const QString &text);

protected:
    bool event(QEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setRecording(bool isRecording);
    void tellHeld(int modifiers);
    void take(const QKeyEvent &event);
    void refuse(const QString &reason);

    NamesOfKey _namesOfKey;
    bool _hasRefused = false;
    QTimer _limit;
};
