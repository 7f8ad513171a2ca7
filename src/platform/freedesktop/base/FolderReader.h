// The items of a folder one after the other, "." and ".." among them, in no order. A folder that
// cannot be read has none.

#pragma once

#include <QByteArray>

#include <dirent.h>
#include <memory>

class FolderReader final
{
public:
    explicit FolderReader(const QByteArray &path)
        : _folder(::opendir(path.constData()))
    { }

    bool isOpen() const { return _folder != nullptr; }
    // Of the open folder.
    int descriptor() const { return ::dirfd(_folder.get()); }

    // Valid until the next call; null at the end.
    const dirent *next() { return isOpen() ? ::readdir(_folder.get()) : nullptr; }

private:
    struct Close
    {
        void operator()(DIR *folder) const { ::closedir(folder); }
    };

    std::unique_ptr<DIR, Close> _folder;
};
