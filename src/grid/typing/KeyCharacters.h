// The characters of a key press as the filter wants them.

#pragma once

#include <QString>

class QKeyEvent;

namespace KeyCharacters {

// The text of the key; for keys without one the control characters by which terminals know them:
// 127 for Backspace and Delete, 3 for the keypad's Enter, 13 for Return, 25 for Backtab. Empty for
// any other key, and for a command.
QString of(const QKeyEvent &event);

// Return, or the keypad's Enter.
bool isReturn(const QString &characters);

} // namespace KeyCharacters
