// What the choice of an icon's file depends on, in a form that can be kept from one run to the next
// and compared without opening an index: the session's folders, the theme's name, the languages,
// and the states of the theme's files and folders.

#pragma once

#include "platform/freedesktop/base/IconPlaces.h"

#include <QByteArray>

namespace IconCircumstances {

// `files` are those whose states count, folders among them.
QByteArray now(const IconPlaces &places, const QString &themeName, const QStringList &files);

// Whether these would be the same now, with the same files. False for anything else than now() has
// given.
bool areStill(const QByteArray &circumstances, const IconPlaces &places, const QString &themeName);

} // namespace IconCircumstances
