#include "platform/freedesktop/icons/IconListing.h"

#include "platform/freedesktop/base/FolderReader.h"

#include <QHash>

#include <algorithm>
#include <bit>
#include <cstring>
#include <map>
#include <sys/stat.h>

constexpr uint32_t nothing = UINT32_MAX;
// Keeps offsets into the names within 32 bits and memory within reason, whatever a folder holds.
constexpr size_t mostEntries = 4'000'000;
constexpr size_t mostFolders = 65535;

static uint32_t hashOf(QByteArrayView name)
{
    return uint32_t(qHashBits(name.data(), size_t(name.size())));
}

// The bit of the extension that begins at a dot, 0 for one that is no picture's.
static unsigned suffixAt(const char *dot)
{
    static constexpr std::pair<const char *, IconSuffix> known[] = { { ".png", PngSuffix },
        { ".svg", SvgSuffix }, { ".xpm", XpmSuffix }, { ".svgz", SvgzSuffix } };
    for (const auto &[text, suffix] : known) {
        if (std::strcmp(dot, text) == 0) {
            return suffix;
        }
    }
    return 0;
}

// One image a folder, whatever number of files it has of the name.
static void addImage(IconImages &images, int folder, unsigned suffix)
{
    const auto known = std::find_if(images.begin(), images.end(),
        [folder](const IconImage &image) { return image.directory == folder; });
    if (known == images.end()) {
        images.append({ folder, suffix });
    } else {
        known->suffixes |= suffix;
    }
}

IconListing::IconListing(std::vector<QByteArray> folders)
    : _folders(std::move(folders))
{ }

IconListing::~IconListing() = default;

IconImages IconListing::find(const QByteArray &name) const
{
    std::call_once(_read, [this] { readAll(); });
    IconImages images;
    if (_buckets.empty()) {
        return images;
    }
    for (uint32_t i = _buckets[hashOf(name) & (_buckets.size() - 1)]; i != nothing;) {
        const Entry &entry = _entries[i];
        i = entry.nextInBucket;
        if (entry.length == name.size()
            && std::memcmp(_names.data() + entry.name, name.constData(), entry.length) == 0) {
            for (const int folder : _alike[entry.folder]) {
                addImage(images, folder, entry.suffix);
            }
        }
    }
    return images;
}

QByteArray IconListing::summary() const
{
    std::call_once(_read, [this] { readAll(); });
    QByteArrayList lines;
    for (const Entry &entry : _entries) {
        lines.append(QByteArray::number(entry.folder) + ' ' + QByteArray::number(entry.suffix) + ' '
            + QByteArray(_names.data() + entry.name, entry.length));
    }
    std::sort(lines.begin(), lines.end());
    return lines.join('\n');
}

void IconListing::readAll() const
{
    const size_t count = std::min(_folders.size(), mostFolders);
    std::map<std::pair<dev_t, ino_t>, int> known;
    _alike.resize(count);
    for (size_t i = 0; i < count; ++i) {
        struct stat status;
        if (::stat(_folders[i].constData(), &status) != 0 || !S_ISDIR(status.st_mode)) {
            continue;
        }
        const int index = int(i);
        const auto [place, isNew] =
            known.try_emplace(std::make_pair(status.st_dev, status.st_ino), index);
        _alike[size_t(place->second)].push_back(index);
        if (isNew) {
            readFolder(index);
        }
    }
    makeBuckets();
}

void IconListing::readFolder(int index) const
{
    FolderReader folder(_folders[size_t(index)]);
    while (const dirent *const entry = folder.next()) {
        addFile(index, entry->d_name);
    }
}

void IconListing::addFile(int folder, const char *file) const
{
    const char *const dot = std::strrchr(file, '.');
    const unsigned suffix = dot == nullptr || dot == file ? 0 : suffixAt(dot);
    if (suffix == 0 || _entries.size() >= mostEntries) {
        return;
    }
    _entries.push_back(
        { uint32_t(_names.size()), nothing, uint16_t(dot - file), uint16_t(folder), suffix });
    _names.insert(_names.end(), file, dot);
}

void IconListing::makeBuckets() const
{
    if (_entries.empty()) {
        return;
    }
    _buckets.assign(std::bit_ceil(_entries.size()), nothing);
    for (uint32_t i = 0; i < _entries.size(); ++i) {
        Entry &entry = _entries[i];
        const uint32_t hash = hashOf({ _names.data() + entry.name, qsizetype(entry.length) });
        uint32_t &bucket = _buckets[hash & (_buckets.size() - 1)];
        entry.nextInBucket = bucket;
        bucket = i;
    }
}
