// Lets a caller wait until a window has the keyboard: a script that asks for the panel types into
// it next.

#pragma once

#include <functional>
#include <memory>

class QObject;

// Holds on to the caller, who is answered when it is let go, until `isDue` says so, or for a second
// where a window manager refuses the keyboard. Null is not waited for. `parent` ends the wait.
void keepWaitingForKeyboard(
    const std::shared_ptr<void> &caller, std::function<bool()> isDue, QObject *parent);
