// Settings out of the user's files into one, and back (SettingsDocument).
//
// An export reads the files as they are. An import checks the whole document before it changes
// anything. Under the locks of the folders it writes the new files, and copies of those that they
// replace (NAME.before), beside the old ones; only when all of them are on the disk do they take
// their places. A program that runs takes the files over as it does any change of another program.
// Main thread only.

#pragma once

#include "catalogue/files/SettingsDocument.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

class SearchPaths;

class SettingsExchange final
{
public:
    struct Import
    {
        // Why nothing was imported, or, when a disk fails at the very end, not all; empty on
        // success.
        QString error;
        // What of the document was not used.
        QList<SettingsDocument::LeftOut> leftOut;
        // The files that are other ones now, and of those that were there before what they were.
        QStringList changed;
        QStringList before;
    };

    // Both must outlive this. Preferences that are not written yet count as written.
    SettingsExchange(const SearchPaths &searchPaths, UserDefaults &defaults);

    // An XML property list; empty when one of the user's files cannot be read, and `error` has the
    // reason.
    QByteArray exported(QString *error) const;
    // Writes that. A file is replaced as a whole or stays as it was; a device or a pipe is written
    // into. The files that are exported are refused. Empty, or the reason of a failure.
    QString exportTo(const QString &file) const;

    // Reads a file of either form of property list.
    Import importFrom(const QString &file) const;
    Import importData(const QByteArray &data) const;

private:
    // One of the user's files, and what an import makes of it.
    struct File
    {
        QString path;
        QVariant wanted;
    };
    class Locks;

    QStringList ownFiles() const;
    QList<File> filesToChange(const SettingsDocument &document) const;
    QVariantMap preferencesWith(const QVariantMap &wanted) const;
    void setPreferences(const QVariantMap &wanted) const;
    Import take(const QVariant &value) const;
    void replaceFiles(const SettingsDocument &document, Import &import) const;
    QStringList filesLeftOut(const SettingsDocument &document) const;
    QVariantMap storedPreferences() const;

    QString _dataFolder;
    // Empty where there is none.
    QString _preferencesFile;
    UserDefaults &_defaults;
};
