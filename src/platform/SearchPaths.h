// Where a desktop keeps things. The base class is a desktop that knows no folders.

#pragma once

#include <QString>
#include <QStringList>

class SearchPaths
{
public:
    // The numbers by which the catalogue files name the two domains.
    enum class Domain { User = 1, Local = 2 };

    virtual ~SearchPaths() = default;

    // The folder in which programs keep their data, without the program's own name; empty when
    // there is none.
    virtual QString applicationSupportFolder(Domain) const { return {}; }
    // The folder for what a program notes down by itself, the program's own name included.
    virtual QString libraryFolder(Domain) const { return {}; }
    // The program's own folder for preferences.
    virtual QString configurationFolder() const { return {}; }
    // The path of a file in it; empty where there is no such folder.
    QString configurationFile(const QString &name) const
    {
        const QString folder = configurationFolder();
        return folder.isEmpty() ? QString() : folder + QLatin1Char('/') + name;
    }
    // The program's own folder for what can be made anew and may be deleted at any time.
    virtual QString cacheFolder() const { return {}; }
    // The folders in which a user expects applications to be found, in the desktop's order, each
    // once. The home folder is written as a tilde.
    virtual QStringList applicationFolders() const { return {}; }
};
