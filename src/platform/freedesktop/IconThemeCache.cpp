#include "platform/freedesktop/IconThemeCache.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

// Layout, all numbers big-endian. Header: version 1.0 (two 16-bit numbers), offset of the hash
// table, offset of the directory list. Hash table: count, then the offset of each bucket's first
// icon. Icon: offset of the next one in the bucket, of its name, of its image list. Image list:
// count, then for each a 16-bit directory, 16 bits of flags and the offset of data nobody writes
// any more. Directory list: count, then offsets of names. Names end with a zero byte.
constexpr size_t headerSize = 12;
constexpr size_t smallestImageSize = 8;
// Offsets have 32 bits; the largest theme known needs 3 MB.
constexpr off_t largestCache = 256 * 1024 * 1024;
// A bucket holds one or two icons; a ring of them must come to an end.
constexpr int longestBucket = 1000;
constexpr unsigned knownSuffixes = XpmSuffix | SvgSuffix | PngSuffix;

std::unique_ptr<const IconThemeCache> IconThemeCache::open(const QByteArray &themeFolder)
{
    struct stat folder;
    struct stat file;
    if (::stat(themeFolder.constData(), &folder) != 0) {
        return {};
    }
    const QByteArray path = themeFolder + "/icon-theme.cache";
    const int descriptor = ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return {};
    }
    void *data = MAP_FAILED;
    // Whole seconds: writing the cache touches the folder, and the tools set both times to the same
    // second.
    if (::fstat(descriptor, &file) == 0 && S_ISREG(file.st_mode) && file.st_mtime >= folder.st_mtime
        && file.st_size >= off_t(headerSize) && file.st_size <= largestCache) {
        data = ::mmap(nullptr, size_t(file.st_size), PROT_READ, MAP_PRIVATE, descriptor, 0);
    }
    ::close(descriptor);
    if (data == MAP_FAILED) {
        return {};
    }
    std::unique_ptr<const IconThemeCache> cache(
        new IconThemeCache(static_cast<const unsigned char *>(data), size_t(file.st_size)));
    const bool isKnown = cache->number16(0) == 1 && cache->number16(2) == 0;
    const bool hasTables = cache->number32(cache->number32(4)) > 0
        && cache->number32(cache->number32(8)) > 0 && !cache->directories().empty();
    return isKnown && hasTables ? std::move(cache) : nullptr;
}

IconThemeCache::IconThemeCache(const unsigned char *data, size_t size)
    : _data(data)
    , _size(size)
{ }

IconThemeCache::~IconThemeCache()
{
    ::munmap(const_cast<unsigned char *>(_data), _size);
}

void IconThemeCache::giveBack() const
{
    ::madvise(const_cast<unsigned char *>(_data), _size, MADV_DONTNEED);
}

std::vector<QByteArray> IconThemeCache::directories() const
{
    std::vector<QByteArray> paths;
    const size_t list = number32(8);
    const size_t count = present(std::min<size_t>(number32(list), 65536), 4, list + 4);
    paths.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const size_t offset = number32(list + 4 + 4 * i);
        // A name that runs past the end belongs to no directory, but its number stays taken.
        const size_t room = offset < _size ? std::min<size_t>(_size - offset, PATH_MAX) : 0;
        const char *text = reinterpret_cast<const char *>(_data + offset);
        const size_t length = room > 0 ? strnlen(text, room) : 0;
        paths.push_back(length < room ? QByteArray(text, qsizetype(length)) : QByteArray());
    }
    return paths;
}

static uint32_t hashOf(const QByteArray &name)
{
    uint32_t hash = 0;
    for (const char c : name) {
        // Bytes count as signed ones in this hash, so that names beyond ASCII are found on every
        // machine.
        hash = hash * 31 + uint32_t(int32_t(static_cast<signed char>(c)));
    }
    return hash;
}

IconImages IconThemeCache::find(const QByteArray &name) const
{
    IconImages images;
    const size_t table = number32(4);
    const uint32_t buckets = number32(table);
    if (name.isEmpty() || buckets == 0) {
        return images;
    }
    size_t icon = number32(table + 4 + 4 * size_t(hashOf(name) % buckets));
    for (int steps = 0; icon >= headerSize && icon < _size && steps < longestBucket; ++steps) {
        if (!hasTextAt(number32(icon + 4), name)) {
            icon = number32(icon);
            continue;
        }
        const size_t list = number32(icon + 8);
        const size_t count = present(number32(list), smallestImageSize, list + 4);
        for (size_t i = 0; i < count; ++i) {
            const size_t image = list + 4 + smallestImageSize * i;
            images.append({ int(number16(image)), number16(image + 2) & knownSuffixes });
        }
        break;
    }
    return images;
}

uint32_t IconThemeCache::number16(size_t offset) const
{
    return offset + 2 <= _size ? qFromBigEndian<uint16_t>(_data + offset) : 0;
}

uint32_t IconThemeCache::number32(size_t offset) const
{
    return offset + 4 <= _size ? qFromBigEndian<uint32_t>(_data + offset) : 0;
}

size_t IconThemeCache::present(size_t count, size_t recordSize, size_t offset) const
{
    return offset < _size ? std::min(count, (_size - offset) / recordSize) : 0;
}

bool IconThemeCache::hasTextAt(size_t offset, const QByteArray &text) const
{
    const size_t length = size_t(text.size()) + 1;
    return offset < _size && length <= _size - offset
        && std::memcmp(_data + offset, text.constData(), length) == 0;
}
