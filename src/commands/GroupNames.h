// The groups as they are typed and printed: by number, or by the name of the list.

#pragma once

#include <QString>

#include <optional>

// The number of a group; empty for a text that names none.
std::optional<int> groupFromText(const QString &text);

QString groupName(int group);
