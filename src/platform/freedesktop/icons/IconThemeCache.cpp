#include "platform/freedesktop/icons/IconThemeCache.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Layout, all numbers big-endian. Header: version 1.0 (two 16-bit numbers), offset of the hash
// table, offset of the directory list. Hash table: count, then the offset of each bucket's first
// icon. Icon: offset of the next one in the bucket, of its name, of its image list. Image list:
// count, then for each a 16-bit directory, 16 bits of flags and the offset of data that no program
// writes any more. Directory list: count, then offsets of names. Names end with a zero byte.
constexpr size_t headerSize = 12;
constexpr size_t iconSize = 12;
constexpr size_t imageSize = 8;
// Offsets have 32 bits; the largest theme known needs 3 MB.
constexpr off_t largestCache = 256 * 1024 * 1024;
// The largest theme known has 10,000.
constexpr uint32_t mostBuckets = 1'000'000;
// A bucket holds one or two icons; a ring of them must come to an end.
constexpr int longestBucket = 1000;
// The largest themes have some hundred directories, and an icon is in each at most once.
constexpr size_t mostDirectories = 8192;
constexpr size_t mostImages = 1000;
constexpr unsigned knownSuffixes = XpmSuffix | SvgSuffix | PngSuffix;

namespace {

uint32_t number32(const char *at)
{
    return qFromBigEndian<uint32_t>(at);
}

uint32_t hashOf(const QByteArray &name)
{
    uint32_t hash = 0;
    for (const char c : name) {
        // Bytes count as signed ones in this hash, so that names beyond ASCII are found on every
        // machine.
        hash = hash * 31 + uint32_t(int32_t(static_cast<signed char>(c)));
    }
    return hash;
}

} // namespace

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
    std::unique_ptr<IconThemeCache> cache(new IconThemeCache(descriptor));
    // Whole seconds: writing the cache touches the folder, and the tools set both times to the same
    // second.
    if (::fstat(descriptor, &file) != 0 || !S_ISREG(file.st_mode) || file.st_mtime < folder.st_mtime
        || file.st_size > largestCache) {
        return {};
    }
    return cache->readHeader() ? std::move(cache) : nullptr;
}

IconThemeCache::IconThemeCache(int descriptor)
    : _descriptor(descriptor)
{ }

IconThemeCache::~IconThemeCache()
{
    ::close(_descriptor);
}

bool IconThemeCache::readHeader()
{
    std::array<char, headerSize> header;
    if (read(0, header.data(), header.size()) != header.size()
        || number32(header.data()) != 0x00010000) {
        return false;
    }
    _hashTable = number32(header.data() + 4);
    _directoryList = number32(header.data() + 8);
    Block block;
    _bucketCount = numberAt(_hashTable, block);
    return _bucketCount > 0 && _bucketCount <= mostBuckets && hasAllBuckets()
        && !directories().empty();
}

// Whether the first icon of each bucket is there, which it is not in a file that was cut short.
bool IconThemeCache::hasAllBuckets() const
{
    constexpr uint32_t unused = ~0U;
    QByteArray buckets(4 * qsizetype(_bucketCount), Qt::Uninitialized);
    struct stat file;
    if (::fstat(_descriptor, &file) != 0
        || read(_hashTable + 4, buckets.data(), size_t(buckets.size())) != size_t(buckets.size())) {
        return false;
    }
    for (qsizetype i = 0; i < buckets.size(); i += 4) {
        const uint32_t icon = number32(buckets.constData() + i);
        if (icon != unused && off_t(icon + iconSize) > file.st_size) {
            return false;
        }
    }
    return true;
}

std::vector<QByteArray> IconThemeCache::directories() const
{
    Block block;
    QByteArray offsets(
        4 * qsizetype(std::min<size_t>(numberAt(_directoryList, block), mostDirectories)), '\0');
    offsets.truncate(
        qsizetype(read(_directoryList + 4, offsets.data(), size_t(offsets.size())) / 4 * 4));
    std::vector<QByteArray> paths;
    paths.reserve(size_t(offsets.size()) / 4);
    for (qsizetype i = 0; i < offsets.size(); i += 4) {
        std::array<char, PATH_MAX> name;
        const size_t offset = number32(offsets.constData() + i);
        // Nearly all are short.
        size_t room = read(offset, name.data(), 64, block);
        if (room == 64 && std::memchr(name.data(), 0, room) == nullptr) {
            room = read(offset, name.data(), name.size());
        }
        // A name that runs past the end belongs to no directory, but its number stays taken.
        const size_t length = strnlen(name.data(), room);
        paths.push_back(length < room ? QByteArray(name.data(), qsizetype(length)) : QByteArray());
    }
    return paths;
}

IconImages IconThemeCache::find(const QByteArray &name) const
{
    if (name.isEmpty() || name.size() >= PATH_MAX) {
        return {};
    }
    Block block;
    size_t icon = numberAt(_hashTable + 4 + 4 * size_t(hashOf(name) % _bucketCount), block);
    for (int steps = 0; icon >= headerSize && steps < longestBucket; ++steps) {
        std::array<char, iconSize> record;
        if (read(icon, record.data(), record.size(), block) != record.size()) {
            break;
        }
        if (hasTextAt(number32(record.data() + 4), name, block)) {
            return imagesAt(number32(record.data() + 8), block);
        }
        icon = number32(record.data());
    }
    return {};
}

IconImages IconThemeCache::imagesAt(size_t list, Block &block) const
{
    IconImages images;
    std::array<char, 16 * imageSize> some;
    size_t count = std::min<size_t>(numberAt(list, block), mostImages);
    for (size_t at = list + 4; count > 0;) {
        const size_t wanted = std::min(count, some.size() / imageSize);
        const size_t present = read(at, some.data(), wanted * imageSize, block) / imageSize;
        for (size_t i = 0; i < present; ++i) {
            const char *const image = some.data() + i * imageSize;
            images.append({ qFromBigEndian<uint16_t>(image),
                qFromBigEndian<uint16_t>(image + 2) & knownSuffixes });
        }
        count = present < wanted ? 0 : count - present;
        at += present * imageSize;
    }
    return images;
}

size_t IconThemeCache::read(size_t offset, char *bytes, size_t count) const
{
    ssize_t length = 0;
    do {
        length = ::pread(_descriptor, bytes, count, off_t(offset));
    } while (length < 0 && errno == EINTR);
    return length > 0 ? size_t(length) : 0;
}

size_t IconThemeCache::read(size_t offset, char *bytes, size_t count, Block &block) const
{
    if (count > block.bytes.size()) {
        return read(offset, bytes, count);
    }
    if (offset < block.start || offset + count > block.start + block.length) {
        block.length = read(offset, block.bytes.data(), block.bytes.size());
        block.start = offset;
    }
    const size_t present = std::min(count, block.length - (offset - block.start));
    std::copy_n(block.bytes.data() + (offset - block.start), present, bytes);
    return present;
}

uint32_t IconThemeCache::numberAt(size_t offset, Block &block) const
{
    std::array<char, 4> bytes;
    return read(offset, bytes.data(), bytes.size(), block) == bytes.size() ? number32(bytes.data())
                                                                           : 0;
}

bool IconThemeCache::hasTextAt(size_t offset, const QByteArray &text, Block &block) const
{
    QVarLengthArray<char, 256> bytes(text.size() + 1);
    return read(offset, bytes.data(), size_t(bytes.size()), block) == size_t(bytes.size())
        && std::memcmp(bytes.constData(), text.constData(), size_t(bytes.size())) == 0;
}
