#include "shell/KeyboardWait.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <utility>

namespace {

constexpr int longestKeyboardWait = 1000; // milliseconds
// Between two looks whether it has come, in milliseconds: window managers name the active window
// before they give it the keyboard.
constexpr int keyboardLook = 3;

} // namespace

void keepWaitingForKeyboard(
    const std::shared_ptr<void> &caller, std::function<bool()> isDue, QObject *parent)
{
    if (!caller || isDue()) {
        return;
    }
    auto *const wait = new QTimer(parent);
    const QDeadlineTimer deadline(longestKeyboardWait);
    QObject::connect(
        wait, &QTimer::timeout, wait, [wait, caller, isDue = std::move(isDue), deadline] {
            if (isDue() || deadline.hasExpired()) {
                wait->deleteLater();
            }
        });
    wait->start(keyboardLook);
}
