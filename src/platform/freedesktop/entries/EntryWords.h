// By what else than its name the application of a desktop entry can be found.
//
// Not part of what DesktopEntry reads, which each start has to wait for.

#pragma once

#include "platform/Items.h"

#include <QByteArray>
#include <QList>

namespace EntryWords {

// What the text of an entry says, of translations the best of the wanted languages. Nothing for a
// text that is no desktop entry.
ItemWords in(const QByteArray &data, const QList<QByteArray> &languages);

// What the entry at a path says; nothing when it cannot be read.
ItemWords at(const QString &path, const QList<QByteArray> &languages);

} // namespace EntryWords
