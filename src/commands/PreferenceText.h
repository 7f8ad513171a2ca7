// Preferences as text: typed on the command line, printed for people.

#pragma once

#include <QString>
#include <QVariant>

#include <optional>

// Reads a text by the type of a registered default: numbers and booleans (true, false, yes, no, 1,
// 0) as usual, lists and dictionaries as JSON, anything else as it stands. Empty when the text does
// not fit, as a word does not where the default is a colour, nor a number that leaves nothing to be
// seen.
std::optional<QVariant> preferenceFromText(
    const QString &key, const QString &text, const QVariant &registeredDefault);

// What to say of a text that does not fit.
QString preferenceRefusal(
    const QString &key, const QString &text, const QVariant &registeredDefault);

// The other way round, on one line.
QString preferenceText(const QVariant &value);
