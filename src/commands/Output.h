// What commands print: results to standard output, one line on failure to standard error. All of it
// is English in every language, names of applications apart, since scripts read it.

#pragma once

#include <QJsonDocument>
#include <QString>
#include <QStringList>

class QImage;

namespace Output {

// False, after one line of failure, when standard output does not take it (a full disk, no output
// at all).
//
// Lines of text in which there may be anything: each stays one line.
bool printLines(const QStringList &lines);
// Text as it stands, which is printable already.
bool print(const QString &text);
bool printJson(const QJsonDocument &document);

// Writes a PNG file, the whole of it or nothing, and returns the exit code of the program.
int writePicture(const QImage &picture, const QString &file);

// Prints "ortu: TEXT" to standard error, one line whatever is in it.
void remark(const QString &text);
// The same of a failure. Returns the exit code given.
int fail(const QString &reason, int exitCode = 1);

} // namespace Output
