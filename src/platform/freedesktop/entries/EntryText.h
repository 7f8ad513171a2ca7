// The text of a desktop entry file, taken apart: the raw values of its main group, and what they
// look like once their escapes are resolved.
//
// Nothing is copied: raw values point into the text.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <limits>
#include <string_view>

namespace EntryText {

// The keys that are read, as places in a table of values.
enum Key {
    Type,
    Name,
    GenericName,
    Icon,
    Exec,
    TryExec,
    NoDisplay,
    Hidden,
    OnlyShowIn,
    NotShowIn,
    StartupWMClass,
    DBusActivatable,
    Terminal,
    Flatpak,
    SnapInstanceName,
    MimeType,
    KeyCount,
};

// A value as it stands in the file, empty when it is not there. The rank says how little its
// language suits.
struct RawValue
{
    std::string_view text;
    qsizetype rank = std::numeric_limits<qsizetype>::max();
};

using Values = std::array<RawValue, KeyCount>;

// Collects the values of the main group in one pass, of translations the best of the wanted
// languages. False, with the reason, when the text is not what a desktop entry has to be.
bool readValues(
    std::string_view text, const QList<QByteArray> &languages, Values &values, QString *problem);

// The value with its escapes resolved; an escape that is not known stays as it is.
QByteArray unescaped(std::string_view text);

// The parts between semicolons, without blank ones; a semicolon that is escaped separates nothing.
QStringList listIn(std::string_view text);

bool isTrue(std::string_view text);

} // namespace EntryText
