// Where each desktop lets its user bind a command to a key.

#pragma once

#include <QStringList>

// One sentence that says, by the desktop's name, how to bind `ortu --toggle` there. The desktops
// are those of the session, the most particular one first; one that is not known gets a sentence
// that holds everywhere.
QString shortcutAdvice(const QStringList &desktops);
