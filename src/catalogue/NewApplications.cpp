#include "catalogue/NewApplications.h"

#include "platform/Items.h"
#include "support/UserDefaults.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

namespace Key {

const QString newApplications = QStringLiteral("newApplications");
// A dictionary of what the next scan has to know of the last one.
const QString lastScan = QStringLiteral("lastScan");
const QString folders = QStringLiteral("folders");
const QString depth = QStringLiteral("depth");
const QString hidden = QStringLiteral("hidden");

} // namespace Key

QVariantList toArray(const QStringList &list)
{
    return QVariantList(list.begin(), list.end());
}

QSet<QString> toSet(const QStringList &list)
{
    return QSet<QString>(list.begin(), list.end());
}

QVariantMap lastScan()
{
    return UserDefaults::standard().objectForKey(Key::lastScan).toMap();
}

void storeNew(QStringList paths)
{
    paths.sort();
    // The default is that nothing is.
    UserDefaults::standard().setObject(
        Key::newApplications, paths.isEmpty() ? QVariant() : toArray(paths));
}

// What lies on a disk that is away has left an empty folder, or none.
bool isHiddenOrAway(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() || file.dir().isEmpty();
}

} // namespace

bool NewApplications::Reach::covers(const QString &path) const
{
    return std::any_of(folders.begin(), folders.end(), [&](const QString &folder) {
        const QString prefix =
            folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
        return path.startsWith(prefix) && path.mid(prefix.size()).count(QLatin1Char('/')) < depth;
    });
}

NewApplications::NewApplications(const Items &items)
    : _items(items)
    , _paths(toSet(UserDefaults::standard().objectForKey(Key::newApplications).toStringList()))
{
    connect(&UserDefaults::standard(), &UserDefaults::changed, this,
        &NewApplications::preferenceDidChange);
}

void NewApplications::registerDefaults()
{
    UserDefaults::standard().registerState(
        { { Key::newApplications, QVariantList() }, { Key::lastScan, QVariantMap() } });
}

void NewApplications::preferenceDidChange(const QString &key)
{
    if (key != Key::newApplications) {
        return;
    }
    const QSet<QString> now =
        toSet(UserDefaults::standard().objectForKey(Key::newApplications).toStringList());
    const QSet<QString> before = std::exchange(_paths, now);
    Q_EMIT changed(((before - now) + (now - before)).values());
}

void NewApplications::setLastFound(const QStringList &paths)
{
    _known = toSet(paths + lastScan().value(Key::hidden).toStringList());
}

void NewApplications::scanned(const QStringList &found, const Reach &reach)
{
    const QVariantMap last = lastScan();
    const Reach before { last.value(Key::folders).toStringList(), last.value(Key::depth).toInt() };
    const QSet<QString> here = toSet(found);
    const QSet<QString> knownBefore = _known.value_or(here);

    const QSet<QString> known = withStandIns(knownBefore);
    const QSet<QString> stillNew = withStandIns(_paths);
    QStringList paths = here.values();
    paths.removeIf([&](const QString &path) {
        return !stillNew.contains(path) && (known.contains(path) || !before.covers(path));
    });

    QStringList hidden = (knownBefore - here).values();
    hidden.removeIf(
        [&](const QString &path) { return !reach.covers(path) || !isHiddenOrAway(path); });

    hidden.sort();
    _known = here + toSet(hidden);
    UserDefaults::standard().setObject(Key::lastScan,
        QVariantMap { { Key::folders, toArray(reach.folders) },
            { Key::depth, qlonglong(reach.depth) }, { Key::hidden, toArray(hidden) } });
    storeNew(paths);
}

void NewApplications::remove(const QStringList &paths)
{
    const QSet<QString> remaining = _paths - toSet(paths);
    if (remaining.size() < _paths.size()) {
        storeNew(remaining.values());
    }
}

QSet<QString> NewApplications::withStandIns(const QSet<QString> &paths) const
{
    QSet<QString> all = paths;
    for (const QString &path : paths) {
        all.insert(_items.standInFor(path));
    }
    return all;
}
