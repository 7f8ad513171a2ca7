// The index that a theme's folder may carry (`icon-theme.cache`): which name stands in which
// directories.
//
// The file is mapped, not read, and nobody vouches for it: every number in it is checked before it
// is followed, and a damaged file at worst lacks names. Safe to use from several threads.

#pragma once

#include "platform/freedesktop/IconTheme.h"

#include <QByteArrayView>
#include <QVarLengthArray>

#include <cstdint>
#include <memory>

// A directory in which a name was found, and the kinds of file (IconSuffix bits) it has there.
struct IconImage
{
    int directory = 0;
    unsigned suffixes = 0;
};
using IconImages = QVarLengthArray<IconImage, 64>;

class IconThemeCache final
{
public:
    // Null when the folder has no cache, or one older than the folder, or one that cannot be used.
    static std::unique_ptr<const IconThemeCache> open(const QByteArray &themeFolder);
    ~IconThemeCache();
    Q_DISABLE_COPY_MOVE(IconThemeCache)

    // The directories the cache numbers, as paths below the theme's folder.
    std::vector<QByteArray> directories() const;
    // Where a name without its extension stands, `directory` counted as in directories().
    IconImages find(const QByteArray &name) const;

    // Lets the system have the memory back; what is needed again is read again.
    void giveBack() const;

private:
    IconThemeCache(const unsigned char *data, size_t size);

    // Zero past the end: no table begins there.
    uint32_t number16(size_t offset) const;
    uint32_t number32(size_t offset) const;
    // How many records of `recordSize` bytes really follow at `offset`, at most `count`.
    size_t present(size_t count, size_t recordSize, size_t offset) const;
    bool hasTextAt(size_t offset, const QByteArray &text) const;

    const unsigned char *_data;
    size_t _size;
};
