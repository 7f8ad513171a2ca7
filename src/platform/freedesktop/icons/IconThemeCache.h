// The index that a theme's folder may carry (`icon-theme.cache`): which name stands in which
// directories.
//
// Each look-up reads the few bytes it needs: a program that cuts the file short while it is in use
// would end this one if it were mapped. The content may come from anywhere: every number in it is
// checked before it is followed, and a damaged file at worst lacks names. Safe to use from several
// threads.

#pragma once

#include "platform/freedesktop/icons/IconTheme.h"

#include <QByteArrayView>
#include <QVarLengthArray>

#include <array>
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
    // Null when the folder has no cache, or one older than the folder, or one that cannot be used
    // or was cut short.
    static std::unique_ptr<const IconThemeCache> open(const QByteArray &themeFolder);
    ~IconThemeCache();
    Q_DISABLE_COPY_MOVE(IconThemeCache)

    // The directories the cache numbers, as paths below the theme's folder.
    std::vector<QByteArray> directories() const;
    // Where a name without its extension stands, `directory` counted as in directories().
    IconImages find(const QByteArray &name) const;

private:
    // What was read last in one look-up: an icon, its name and its images usually lie together.
    struct Block
    {
        size_t start = 0;
        size_t length = 0;
        std::array<char, 512> bytes;
    };

    // Takes the descriptor over.
    explicit IconThemeCache(int descriptor);

    // False when the file is of no known kind.
    bool readHeader();
    bool hasAllBuckets() const;
    IconImages imagesAt(size_t list, Block &block) const;
    // How many of the `count` bytes are there.
    size_t read(size_t offset, char *bytes, size_t count) const;
    size_t read(size_t offset, char *bytes, size_t count, Block &block) const;
    // Zero past the end: no table begins there.
    uint32_t numberAt(size_t offset, Block &block) const;
    bool hasTextAt(size_t offset, const QByteArray &text, Block &block) const;

    const int _descriptor;
    size_t _hashTable = 0;
    size_t _directoryList = 0;
    uint32_t _bucketCount = 0;
};
