// Reading of key files: groups in brackets, one `key=value` a line, comments after `#` or `;`.
// Theme descriptions and the settings files of several desktops look like this. Values are handed
// on as they stand, without escapes resolved.

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>

using KeyFileVisitor =
    std::function<void(QByteArrayView group, QByteArrayView key, QByteArrayView value)>;

// Calls the visitor for each key in the order of the text; a line that is none of the above is
// skipped. The views point into `text`.
void visitKeyFile(const QByteArray &text, const KeyFileVisitor &visitor);

// The whole text of a regular file; empty when there is none, it cannot be read, or it is larger
// than any description or settings file (4 MiB).
QByteArray readKeyFile(const QString &path);

// The first value of a key; an empty group means any group. Quotes around the value are taken off.
QString keyFileValue(const QByteArray &text, QByteArrayView group, QByteArrayView key);
