#include "platform/freedesktop/icons/IconTheme.h"

#include "platform/freedesktop/base/KeyFile.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

// Caches number directories with 16 bits.
constexpr size_t mostDirectories = 65536;
constexpr int mostThemes = 64;
// Keeps sums and products of sizes and scales far from overflow.
constexpr int largestNumber = 16384;

bool IconDirectory::matches(int wanted) const
{
    if (scale != 1) {
        return false;
    }
    switch (type) {
    case Type::Fixed:
        return size == wanted;
    case Type::Scalable:
        return minSize <= wanted && wanted <= maxSize;
    case Type::Threshold:
        return std::abs(size - wanted) <= threshold;
    }
    return false;
}

int IconDirectory::distance(int wanted) const
{
    int low = size;
    int high = size;
    if (type == Type::Scalable) {
        low = minSize;
        high = maxSize;
    } else if (type == Type::Threshold && std::abs(size * scale - wanted) <= threshold * scale) {
        return 0;
    }
    return std::max({ 0, low * scale - wanted, wanted - high * scale });
}

static void setNumber(IconDirectory &directory, QByteArrayView key, QByteArrayView value)
{
    bool isNumber = false;
    const int number = value.toByteArray().toInt(&isNumber);
    if (!isNumber || number < 0 || number > largestNumber) {
        return;
    }
    if (key == "Size") {
        directory.size = number;
    } else if (key == "Scale") {
        directory.scale = std::max(1, number);
    } else if (key == "MinSize") {
        directory.minSize = number;
    } else if (key == "MaxSize") {
        directory.maxSize = number;
    } else if (key == "Threshold") {
        directory.threshold = number;
    }
}

static void setKey(IconDirectory &directory, QByteArrayView key, QByteArrayView value)
{
    if (key != "Type") {
        setNumber(directory, key, value);
    } else if (value == "Fixed") {
        directory.type = IconDirectory::Type::Fixed;
    } else if (value == "Scalable") {
        directory.type = IconDirectory::Type::Scalable;
    }
}

static bool staysInside(const QByteArray &path)
{
    return !path.isEmpty() && !path.startsWith('/') && path != ".." && !path.startsWith("../")
        && !path.contains("/../") && !path.endsWith("/..");
}

static void addDirectories(std::vector<IconDirectory> &directories,
    QHash<QByteArray, size_t> &indexes, QByteArrayView list)
{
    for (const QByteArray &part : list.toByteArray().split(',')) {
        QByteArray path = part.trimmed();
        while (path.endsWith('/')) {
            path.chop(1);
        }
        if (staysInside(path) && !indexes.contains(path) && directories.size() < mostDirectories) {
            indexes.insert(path, directories.size());
            IconDirectory directory;
            directory.path = path;
            directories.push_back(directory);
        }
    }
}

static QByteArrayView viewOf(std::string_view text)
{
    return { text.data(), qsizetype(text.size()) };
}

static void parseDescription(IconTheme &theme, const QByteArray &text)
{
    QHash<QByteArray, size_t> indexes;
    IconDirectory *current = nullptr;
    for (KeyFileReader file({ text.constData(), size_t(text.size()) }); file.readNext();) {
        const QByteArrayView key = viewOf(file.key());
        const QByteArrayView value = viewOf(file.value());
        if (file.line() == KeyFileReader::Line::Group) {
            const std::string_view group = file.group();
            const auto found =
                indexes.constFind(QByteArray::fromRawData(group.data(), qsizetype(group.size())));
            current = found == indexes.constEnd() ? nullptr : &theme.directories[*found];
        } else if (file.line() == KeyFileReader::Line::Other) {
            continue;
        } else if (file.group() == "Icon Theme") {
            if (key == "Directories" || key == "ScaledDirectories") {
                addDirectories(theme.directories, indexes, value);
            } else if (key == "Inherits") {
                theme.inherits = QString::fromUtf8(value).split(u',', Qt::SkipEmptyParts);
            }
        } else if (current != nullptr && !file.group().empty()) {
            setKey(*current, key, value);
        }
    }
    for (IconDirectory &directory : theme.directories) {
        directory.minSize = directory.minSize > 0 ? directory.minSize : directory.size;
        directory.maxSize = directory.maxSize > 0 ? directory.maxSize : directory.size;
    }
    std::erase_if(
        theme.directories, [](const IconDirectory &directory) { return directory.size <= 0; });
}

static bool isPlainName(const QString &name)
{
    return !name.isEmpty() && !name.contains(u'/') && name != QLatin1String(".")
        && name != QLatin1String("..");
}

std::optional<IconTheme> IconTheme::load(const QString &name, const QStringList &baseFolders)
{
    IconTheme theme;
    if (!isPlainName(name)) {
        return {};
    }
    theme.name = name;
    QByteArray description;
    for (const QString &base : baseFolders) {
        const QString folder = base + u'/' + name;
        if (!QFileInfo::exists(folder)) {
            continue;
        }
        theme.folders.append(folder);
        if (description.isEmpty()) {
            description = readKeyFile(folder + QLatin1String("/index.theme"));
        }
    }
    if (description.isEmpty()) {
        return {};
    }
    parseDescription(theme, description);
    return theme;
}

std::vector<IconTheme> IconTheme::chain(const QString &name, const QStringList &baseFolders)
{
    const QString last = QStringLiteral("hicolor");
    std::vector<IconTheme> themes;
    QStringList seen { last };
    // A stack of names still to visit: parents go on top in reverse, so that the first is next.
    QStringList waiting { name };
    while (!waiting.isEmpty() && seen.size() < mostThemes) {
        const QString next = waiting.takeLast().trimmed();
        if (seen.contains(next)) {
            continue;
        }
        seen.append(next);
        if (std::optional<IconTheme> theme = load(next, baseFolders)) {
            for (auto parent = theme->inherits.crbegin(); parent != theme->inherits.crend();
                 ++parent) {
                waiting.append(*parent);
            }
            themes.push_back(std::move(*theme));
        }
    }
    if (std::optional<IconTheme> theme = load(last, baseFolders)) {
        themes.push_back(std::move(*theme));
    }
    return themes;
}

bool IconTheme::isInstalled(const QString &name, const QStringList &baseFolders)
{
    return isPlainName(name)
        && std::any_of(baseFolders.begin(), baseFolders.end(), [&name](const QString &base) {
               return QFileInfo::exists(base + u'/' + name + QLatin1String("/index.theme"));
           });
}
