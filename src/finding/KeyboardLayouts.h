// What was meant where the keyboard was still set to another layout: the same keys read by the
// layout of another script. Between Latin letters on the one side and Russian, Ukrainian, Greek and
// Hebrew ones on the other.

#pragma once

#include <QChar>
#include <QList>
#include <QString>

namespace KeyboardLayouts {

struct Reading
{
    QString text;
    // Of its letters.
    QChar::Script script;
};

// What else the keys of a text stand for; empty where a letter lies on no key of these layouts.
QList<Reading> otherReadings(const QString &text);

} // namespace KeyboardLayouts
