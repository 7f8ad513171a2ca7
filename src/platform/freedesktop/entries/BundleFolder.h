// Applications that come as a folder: `*.app` in its two layouts and `*.AppDir`.
//
// Everything is looked up when asked; nothing here is common enough to be remembered.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace BundleFolder {

// Whether a folder of this name is shown as one thing.
bool isPackageName(const QString &name);

// Whether the folder at a path is an application.
bool isApplication(const QString &path);

// The program to start, empty when the folder holds none for this system.
QString executableOf(const QString &path);

// The absolute path of its picture, empty when there is none. Should a desktop entry have to be
// asked, the languages say which translation of it is wanted.
QString iconOf(const QString &path, const QList<QByteArray> &languages);

} // namespace BundleFolder
