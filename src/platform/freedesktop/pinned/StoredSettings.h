// Lists of strings in the settings store of GNOME and its kin (GSettings, as a rule dconf).
//
// They are read by their paths, since the schema that describes them goes with the program that
// they are for, and the user's choice may outlast it.

#pragma once

#include <QStringList>

#include <optional>

namespace StoredSettings {

// What the user or an administrator has set; empty when that is nothing, or no list of strings.
std::optional<QStringList> chosenList(const QString &path);

// What holds otherwise, as the schema says; empty when it or the key is not installed.
QStringList standardList(const char *schema, const char *key);

} // namespace StoredSettings
