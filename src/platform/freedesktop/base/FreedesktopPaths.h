// Where applications and our own files are in this session, by SessionFolders as they were at
// construction.

#pragma once

#include "platform/SearchPaths.h"

class FreedesktopPaths final : public SearchPaths
{
public:
    FreedesktopPaths();

    // $XDG_DATA_HOME and then SessionFolders::sharedData(), in standard form, each once.
    const QStringList &dataFolders() const { return _dataFolders; }

    // The same as libraryFolder(Domain::User), for those who need no more than that.
    static QString userLibraryFolder();

    QString applicationSupportFolder(Domain domain) const override;
    QString libraryFolder(Domain domain) const override;
    QString configurationFolder() const override;
    QString cacheFolder() const override;
    QStringList applicationFolders() const override;

private:
    QStringList _dataFolders;
    QString _userLibrary;
    QString _configurationHome;
    QString _cacheHome;
};
