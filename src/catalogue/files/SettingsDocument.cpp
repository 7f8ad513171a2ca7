#include "catalogue/files/SettingsDocument.h"

#include "catalogue/files/PathFile.h"
#include "catalogue/files/PreferenceRanges.h"
#include "support/UserDefaults.h"

using PathFile::Shape;
using PropertyList::State;

namespace {

namespace Key {

const QString version = QStringLiteral("OrtuSettingsVersion");
const QString favourites = QStringLiteral("UserApplications");
const QString favouritesInOneList = QStringLiteral("UserApplications1D");
const QString exclusions = QStringLiteral("ExcludedApplications");
const QString colorCorrections = QStringLiteral("ColorCorrections");
const QString preferences = QStringLiteral("Preferences");

} // namespace Key

bool isShare(const QVariant &value)
{
    const bool isNumber =
        value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
    // Not a number fails the comparison.
    return isNumber && value.toDouble() >= 0 && value.toDouble() <= 1;
}

QStringList without(const QStringList &paths, const QStringList &others)
{
    const QSet<QString> known(others.begin(), others.end());
    QStringList rest = paths;
    rest.removeIf([&known](const QString &path) { return known.contains(path); });
    return rest;
}

// Both orders hold the same applications: what stands in one alone comes to the end of the other.
void completeOrders(SettingsDocument &document)
{
    PathBunches bunches = document.favourites.value_or(PathBunches());
    QStringList flat = document.favouritesInOneList.value_or(QStringList());
    const QStringList bunched = flattened(bunches);
    if (const QStringList unbunched = without(flat, bunched); !unbunched.isEmpty()) {
        bunches.append(unbunched);
    }
    flat += without(bunched, flat);
    document.favourites = bunches;
    document.favouritesInOneList = flat;
}

class Reader final
{
public:
    Reader(const QVariantMap &parts, const UserDefaults &defaults)
        : _parts(parts)
        , _defaults(defaults)
    { }

    SettingsDocument read();

    QString error;
    QList<SettingsDocument::LeftOut> leftOut;

private:
    std::optional<PathBunches> paths(const QString &key, Shape shape);
    std::optional<QVariantMap> dictionary(const QString &key);
    std::optional<QVariantMap> colorCorrections();
    std::optional<QVariantMap> preferences();
    void nameUnknownParts();
    void leave(const QString &name, const char *reason)
    {
        leftOut.append({ name, QLatin1String(reason) });
    }

    const QVariantMap &_parts;
    const UserDefaults &_defaults;
};

SettingsDocument Reader::read()
{
    SettingsDocument document;
    document.favourites = paths(Key::favourites, Shape::Bunched);
    if (const auto flat = paths(Key::favouritesInOneList, Shape::Flat)) {
        document.favouritesInOneList = flattened(*flat);
    }
    if (const auto excluded = paths(Key::exclusions, Shape::Flat)) {
        document.exclusions = flattened(*excluded);
    }
    document.colorCorrections = colorCorrections();
    document.preferences = preferences();
    if (document.favourites || document.favouritesInOneList) {
        completeOrders(document);
    }
    nameUnknownParts();
    return document;
}

std::optional<PathBunches> Reader::paths(const QString &key, Shape shape)
{
    if (!_parts.contains(key)) {
        return std::nullopt;
    }
    const PathFile::Document document = PathFile::fromPropertyList(_parts.value(key), shape);
    if (document.state != State::Read) {
        error = QStringLiteral("%1: %2").arg(key, document.error);
    }
    return standardized(document.paths);
}

std::optional<QVariantMap> Reader::dictionary(const QString &key)
{
    if (!_parts.contains(key)) {
        return std::nullopt;
    }
    if (_parts.value(key).typeId() != QMetaType::QVariantMap) {
        error = QStringLiteral("%1: not a dictionary").arg(key);
    }
    return _parts.value(key).toMap();
}

std::optional<QVariantMap> Reader::colorCorrections()
{
    std::optional<QVariantMap> corrections = dictionary(Key::colorCorrections);
    if (!corrections) {
        return std::nullopt;
    }
    const auto isUseless = [this](const std::pair<const QString &, QVariant &> &entry) {
        const QVariantMap color = entry.second.toMap();
        const bool isColor = isShare(color.value(QStringLiteral("red")))
            && isShare(color.value(QStringLiteral("green")))
            && isShare(color.value(QStringLiteral("blue")));
        const bool isKept = isColor && PathFile::isPath(entry.first);
        if (!isKept) {
            leave(entry.first, QT_TRANSLATE_NOOP("Reason", "its corrected colour is none"));
        }
        return !isKept;
    };
    corrections->removeIf(isUseless);
    return corrections;
}

std::optional<QVariantMap> Reader::preferences()
{
    std::optional<QVariantMap> preferences = dictionary(Key::preferences);
    if (!preferences) {
        return std::nullopt;
    }
    const auto isUseless = [this](const std::pair<const QString &, QVariant &> &entry) {
        const QString &key = entry.first;
        const bool isKnown = _defaults.defaultForKey(key).isValid() && !_defaults.isState(key);
        if (!isKnown) {
            leave(key, QT_TRANSLATE_NOOP("Reason", "no such preference"));
        } else if (!_defaults.isUsable(key, PropertyList::plain(entry.second))
            || !PreferenceRanges::holds(key, entry.second.toDouble())) {
            leave(key, QT_TRANSLATE_NOOP("Reason", "the preference cannot have this value"));
            // The preference stays what it is.
            entry.second = _defaults.storedValue(key);
        }
        return !isKnown || !entry.second.isValid();
    };
    preferences->removeIf(isUseless);
    return preferences;
}

void Reader::nameUnknownParts()
{
    const QStringList known { Key::version, Key::favourites, Key::favouritesInOneList,
        Key::exclusions, Key::colorCorrections, Key::preferences };
    for (auto part = _parts.cbegin(); part != _parts.cend(); ++part) {
        if (!known.contains(part.key())) {
            leave(part.key(), QT_TRANSLATE_NOOP("Reason", "this Ortu does not know it"));
        }
    }
}

} // namespace

QVariant SettingsDocument::propertyList() const
{
    QVariantMap parts { { Key::version, Version } };
    if (favourites) {
        parts.insert(Key::favourites, PathFile::propertyList(*favourites, Shape::Bunched));
    }
    if (favouritesInOneList) {
        parts.insert(Key::favouritesInOneList, QVariant(*favouritesInOneList));
    }
    if (exclusions) {
        parts.insert(Key::exclusions, QVariant(*exclusions));
    }
    if (colorCorrections) {
        parts.insert(Key::colorCorrections, *colorCorrections);
    }
    if (preferences) {
        parts.insert(Key::preferences, *preferences);
    }
    return parts;
}

std::optional<SettingsDocument> SettingsDocument::fromPropertyList(
    const QVariant &value, const UserDefaults &defaults, QString *error, QList<LeftOut> *leftOut)
{
    const QVariantMap parts = value.toMap();
    const QVariant version = parts.value(Key::version);
    if (version.typeId() != QMetaType::LongLong || version.toLongLong() < 1) {
        *error = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "no settings that Ortu has exported"));
        return std::nullopt;
    }
    if (version.toLongLong() > Version) {
        *error = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "a newer Ortu has exported them"));
        return std::nullopt;
    }
    Reader reader(parts, defaults);
    SettingsDocument document = reader.read();
    if (!reader.error.isEmpty()) {
        *error = reader.error;
        return std::nullopt;
    }
    *leftOut = reader.leftOut;
    return document;
}
