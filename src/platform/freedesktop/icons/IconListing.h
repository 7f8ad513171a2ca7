// The picture files in a list of folders, by name: what a theme without a usable index is searched
// with.
//
// The folders are read once, at the first question; other threads that ask meanwhile wait. After
// that it never changes and may be asked from any thread. Folders that are links to one another are
// read once.

#pragma once

#include "platform/freedesktop/icons/IconThemeCache.h"

#include <mutex>
#include <vector>

class IconListing final
{
public:
    // Absolute paths; one that is no folder is an empty one.
    explicit IconListing(std::vector<QByteArray> folders);
    ~IconListing();
    Q_DISABLE_COPY_MOVE(IconListing)

    // Where a name without its extension stands, `directory` counted as in the list of folders.
    IconImages find(const QByteArray &name) const;
    // The names of all pictures in a text, sorted: equal texts mean equal folders.
    QByteArray summary() const;

private:
    struct Entry
    {
        uint32_t name;
        uint32_t nextInBucket;
        uint16_t length;
        uint16_t folder;
        unsigned suffix;
    };

    void readAll() const;
    void readFolder(int index) const;
    void addFile(int folder, const char *file) const;
    void makeBuckets() const;

    const std::vector<QByteArray> _folders;
    mutable std::once_flag _read;
    // The names one after another, without ends between them.
    mutable std::vector<char> _names;
    mutable std::vector<Entry> _entries;
    mutable std::vector<uint32_t> _buckets;
    // For each folder that was read, itself and those that turned out to be the same one.
    mutable std::vector<std::vector<int>> _alike;
};
