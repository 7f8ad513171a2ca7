#include "platform/freedesktop/icons/IconLookup.h"

#include "platform/freedesktop/icons/IconCircumstances.h"

#include <QFile>

#include <algorithm>
#include <compare>
#include <tuple>
#include <unistd.h>

constexpr unsigned anySuffix = ~0U;

namespace {

struct KnownSuffix
{
    const char *text;
    IconSuffix bit;
};
// In the order in which they are preferred within one directory.
constexpr KnownSuffix suffixOrder[] = { { ".png", PngSuffix }, { ".svg", SvgSuffix },
    { ".svgz", SvgzSuffix }, { ".xpm", XpmSuffix } };

// A directory that has the icon; the smallest one is the best.
struct Candidate
{
    bool isOtherSize;
    int distance;
    int scaling;
    int directory;
    int folder;
    unsigned suffixes;

    auto operator<=>(const Candidate &) const = default;
};

// By how many pixels the picture is to be scaled where its size counts as right: some themes call
// pictures of 512 pixels scalable, and those take ten times as long to decode as the ones drawn for
// the size.
int scalingOf(const IconDirectory &directory, unsigned suffixes, int size)
{
    const bool isDrawing = (suffixes & (PngSuffix | XpmSuffix)) == 0;
    return isDrawing ? 0 : std::abs(directory.size * directory.scale - size);
}

// A file that may stand in for another one; the smallest one is the best.
struct StandIn
{
    // Pictures as large as they are wanted, then drawings, then smaller pictures.
    enum class Rank { Picture, Drawing, SmallPicture };

    Rank rank;
    int distance;
    QByteArray file;

    auto operator<=>(const StandIn &other) const
    {
        return std::tie(rank, distance) <=> std::tie(other.rank, other.distance);
    }
};

// The readable file that begins with `stem`, by preferred extension; empty when there is none.
QByteArray firstReadable(const QByteArray &stem, unsigned suffixes)
{
    for (const KnownSuffix &suffix : suffixOrder) {
        if ((suffixes & suffix.bit) != 0) {
            const QByteArray file = stem + suffix.text;
            if (::access(file.constData(), R_OK) == 0) {
                return file;
            }
        }
    }
    return {};
}

// `excess` is by how many pixels the directory's pictures are larger than wanted.
void addStandIns(
    std::vector<StandIn> &found, const QByteArray &stem, unsigned suffixes, int excess, int size)
{
    for (const KnownSuffix &suffix : suffixOrder) {
        const QByteArray file = stem + suffix.text;
        if ((suffixes & suffix.bit) == 0 || ::access(file.constData(), R_OK) != 0) {
            continue;
        }
        if ((suffix.bit & (PngSuffix | XpmSuffix)) == 0) {
            found.push_back({ StandIn::Rank::Drawing, std::abs(excess), file });
        } else if (excess >= 0) {
            found.push_back({ StandIn::Rank::Picture, excess, file });
        } else if (-2 * excess <= size) {
            found.push_back({ StandIn::Rank::SmallPicture, -excess, file });
        }
    }
}

std::vector<QByteArray> encoded(const QStringList &folders)
{
    std::vector<QByteArray> paths;
    for (const QString &folder : folders) {
        paths.push_back(QFile::encodeName(folder));
    }
    return paths;
}

} // namespace

IconLookup::IconLookup(const IconPlaces &places, const QString &themeName)
    : _unthemedFolders(encoded(places.baseFolders + places.pixmapFolders))
    , _unthemed(_unthemedFolders)
    , _watched(places.baseFolders + places.pixmapFolders)
{
    for (const IconTheme &theme : IconTheme::chain(themeName, places.baseFolders)) {
        addTheme(theme);
    }
    QStringList files = _watched;
    for (const Part &part : _themes) {
        for (const IconFolder &folder : part.folders) {
            files.append(QFile::decodeName(folder.path()) + QStringLiteral("/index.theme"));
        }
    }
    // Before any picture is looked for: what changes after that is found to have changed.
    _circumstances = IconCircumstances::now(places, themeName, files);
    // By content and not by time: base folders change whenever any theme comes or goes.
    _state += _unthemed.summary();
}

void IconLookup::addTheme(const IconTheme &theme)
{
    Part &part = _themes.emplace_back();
    part.directories = theme.directories;
    for (const QString &path : theme.folders) {
        const IconFolder &folder = part.folders.emplace_back(path, part.directories);
        _state += folder.state();
        _watched += folder.watched();
    }
}

QString IconLookup::find(const QString &name, int size) const
{
    QByteArray stem = QFile::encodeName(name);
    if (stem.isEmpty() || stem.contains('/')) {
        return {};
    }
    for (const KnownSuffix &suffix : suffixOrder) {
        if (stem.size() > qsizetype(qstrlen(suffix.text)) && stem.endsWith(suffix.text)) {
            stem.chop(qsizetype(qstrlen(suffix.text)));
            const QByteArray file = findUnthemed(stem, suffix.bit);
            if (!file.isEmpty()) {
                return QFile::decodeName(file);
            }
            break;
        }
    }
    const QByteArray themed = findThemed(stem, size);
    return QFile::decodeName(themed.isEmpty() ? findUnthemed(stem, anySuffix) : themed);
}

QByteArray IconLookup::findThemed(const QByteArray &name, int size) const
{
    for (const Part &part : _themes) {
        QVarLengthArray<Candidate, 64> candidates;
        for (size_t i = 0; i < part.folders.size(); ++i) {
            for (const IconImage &image : part.folders[i].find(name)) {
                const IconDirectory &directory = part.directories[size_t(image.directory)];
                candidates.append({ !directory.matches(size), directory.distance(size),
                    scalingOf(directory, image.suffixes, size), image.directory, int(i),
                    image.suffixes });
            }
        }
        std::sort(candidates.begin(), candidates.end());
        for (const Candidate &best : candidates) {
            const QByteArray stem = part.folders[size_t(best.folder)].path() + '/'
                + part.directories[size_t(best.directory)].path + '/' + name;
            const QByteArray file = firstReadable(stem, best.suffixes);
            if (!file.isEmpty()) {
                return file;
            }
        }
    }
    return {};
}

QByteArray IconLookup::findUnthemed(const QByteArray &name, unsigned suffixes) const
{
    IconImages images = _unthemed.find(name);
    std::sort(images.begin(), images.end(),
        [](const IconImage &a, const IconImage &b) { return a.directory < b.directory; });
    for (const IconImage &image : images) {
        const QByteArray stem = _unthemedFolders[size_t(image.directory)] + '/' + name;
        const QByteArray file = firstReadable(stem, image.suffixes & suffixes);
        if (!file.isEmpty()) {
            return file;
        }
    }
    return {};
}

QStringList IconLookup::standIns(const QString &name, int size, const QString &file) const
{
    QByteArray stem = QFile::encodeName(name);
    for (const KnownSuffix &suffix : suffixOrder) {
        if (stem.endsWith(suffix.text)) {
            stem.chop(qsizetype(qstrlen(suffix.text)));
        }
    }
    if (stem.isEmpty() || stem.contains('/')) {
        return {};
    }
    QStringList files;
    for (const Part &part : _themes) {
        std::vector<StandIn> found;
        for (const IconFolder &folder : part.folders) {
            for (const IconImage &image : folder.find(stem)) {
                const IconDirectory &directory = part.directories[size_t(image.directory)];
                addStandIns(found, folder.path() + '/' + directory.path + '/' + stem,
                    image.suffixes, directory.size * directory.scale - size, size);
            }
        }
        std::stable_sort(found.begin(), found.end());
        for (const StandIn &other : found) {
            files.append(QFile::decodeName(other.file));
        }
    }
    // Of unknown size.
    const QByteArray unthemed = findUnthemed(stem, anySuffix);
    if (!unthemed.isEmpty()) {
        files.append(QFile::decodeName(unthemed));
    }
    files.removeAll(file);
    return files;
}
