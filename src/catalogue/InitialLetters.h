// The letters by which an application is found with one key: where its words begin.

#pragma once

#include <QByteArray>
#include <QString>

// Distinct lower-case letters and digits, in the order in which they first start a word of the
// name: after white space, hyphen, underscore or full stop, at a capital that follows none, and
// where a block of capitals runs into a word ("HTMLEdit" gives h and e). Every digit counts.
// Letters beyond ASCII never start one.
QByteArray initialLetters(const QString &name);
