// The languages in which the user wants to read names.

#pragma once

#include <QByteArray>
#include <QList>

namespace Languages {

// The locales whose translations are wanted, the best one first, by LANGUAGE, LC_ALL, LC_MESSAGES
// and LANG. The order is the one that the Desktop Entry Specification asks for; a codeset is never
// part of it.
QList<QByteArray> preferred();

} // namespace Languages
