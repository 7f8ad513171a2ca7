// Text from outside on its way to a terminal or a log: names of applications and files, reasons of
// libraries, values that another program sent.

#pragma once

#include <QString>

namespace Printable {

// The text as one line that neither a terminal nor a reader takes for anything else: line breaks,
// control characters, halves of surrogate pairs and what turns the direction of writing round are
// written as JSON writes them (`\n`, `\u001b`). A backslash stays one, so that text without such
// characters is the same afterwards, and text in JSON still means the same.
QString escaped(const QString &text);

} // namespace Printable
