// Settings out of the user's files into one, and back (SettingsDocument).
//
// An export reads the files as they are. An import checks the whole document before it changes
// anything, keeps each file that it is about to replace as NAME.before, and writes under the locks
// of the folders; a program that runs takes the files over as it does any change of another
// program. When a file cannot be written, those that were are put back. Main thread only.

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
        // Why nothing was imported; empty on success.
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
    Import importFrom(const QString &file);
    Import importData(const QByteArray &data);

private:
    // One of the user's files, and what an import makes of it.
    struct File
    {
        QString path;
        QVariant wanted;
        // When it is replaced: what it was, if anything, so that it can be put back.
        std::optional<QByteArray> before;
    };

    QStringList ownFiles() const;
    QList<File> filesToChange(const SettingsDocument &document) const;
    Import take(const QVariant &value);
    void replaceAll(const SettingsDocument &document, Import &import);
    QString writeFiles(const SettingsDocument &document, Import &import);
    QString writePreferences(const QVariantMap &wanted, Import &import);
    void setPreferences(const QVariantMap &wanted);
    QVariantMap storedPreferences() const;
    QVariantMap preferencesAsStored() const;
    static void putBack(Import &import);

    QString _dataFolder;
    QString _preferencesFile;
    UserDefaults &_defaults;
};
