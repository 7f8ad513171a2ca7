#include "catalogue/CatalogueFiles.h"

#include "catalogue/Log.h"
#include "support/PropertyList.h"

#include <QDir>

namespace {

bool isPath(const QVariant &value)
{
    const QString path = value.typeId() == QMetaType::QString ? value.toString() : QString();
    // The binary form brings strings that could not be written again.
    return (path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("~/")))
        && PropertyList::canHold(path);
}

// Sorts the elements of an array into paths and the rest.
QStringList paths(const QVariantList &array, int &rejected)
{
    QStringList accepted;
    accepted.reserve(array.size());
    for (const QVariant &value : array) {
        if (isPath(value)) {
            accepted.append(value.toString());
        } else {
            ++rejected;
        }
    }
    return accepted;
}

QList<QStringList> pathArrays(const QVariantList &array, int &rejected)
{
    QList<QStringList> accepted;
    for (const QVariant &value : array) {
        if (value.typeId() != QMetaType::QVariantList) {
            ++rejected;
            continue;
        }
        const int rejectedBefore = rejected;
        const QStringList bunch = paths(value.toList(), rejected);
        // A bunch that was stored empty stays, one of nothing but damage goes.
        if (!bunch.isEmpty() || rejected == rejectedBefore) {
            accepted.append(bunch);
        }
    }
    return accepted;
}

QVariantList toArray(const QStringList &list)
{
    return QVariantList(list.begin(), list.end());
}

QVariantList toArray(const QList<QStringList> &bunches)
{
    QVariantList array;
    array.reserve(bunches.size());
    for (const QStringList &bunch : bunches) {
        array.append(QVariant(toArray(bunch)));
    }
    return array;
}

} // namespace

CatalogueFiles::CatalogueFiles(const SearchPaths &searchPaths, Writing writing)
    : _searchPaths(searchPaths)
    , _writing(writing)
{ }

QString CatalogueFiles::folder(Domain domain) const
{
    const QString base = _searchPaths.applicationSupportFolder(domain);
    return (base.isEmpty() ? QDir::tempPath() : base) + QStringLiteral("/Ortu");
}

std::optional<CatalogueFiles::PathArrays> CatalogueFiles::readPathArrays(
    const QString &fileName, Domain inDomain, Shape shape)
{
    const PropertyList::Document document =
        PropertyList::readFile(folder(inDomain) + QLatin1Char('/') + fileName);
    if (document.state == PropertyList::State::Absent) {
        return std::nullopt;
    }
    if (document.state == PropertyList::State::Damaged) {
        reportDamage(fileName, inDomain, document.error, {});
        return std::nullopt;
    }
    if (document.value.typeId() != QMetaType::QVariantList) {
        reportDamage(fileName, inDomain, QStringLiteral("not an array"), {});
        return std::nullopt;
    }
    const QVariantList array = document.value.toList();
    PathArrays arrays;
    int rejected = 0;
    if (shape == Shape::Flat) {
        arrays.flat = paths(array, rejected);
    } else {
        arrays.bunched = pathArrays(array, rejected);
    }
    if (rejected > 0) {
        reportDamage(fileName, inDomain,
            QStringLiteral("%1 of its entries are no paths").arg(rejected),
            shape == Shape::Flat ? toArray(arrays.flat) : toArray(arrays.bunched));
    }
    return arrays;
}

void CatalogueFiles::reportDamage(
    const QString &fileName, Domain domain, const QString &reason, const QVariantList &remaining)
{
    _damaged.insert(fileName);
    const QString path = folder(domain) + QLatin1Char('/') + fileName;
    if (_writing == Writing::Never || domain != Domain::User) {
        qCWarning(lcCatalogue, "cannot use %s: %s", qUtf8Printable(path), qUtf8Printable(reason));
    } else if (!PropertyList::setAside(path, reason)) {
        _untouchable.insert(fileName);
    } else if (!remaining.isEmpty()) {
        write(remaining, fileName);
    }
}

bool CatalogueFiles::writePaths(const QStringList &paths, const QString &fileName)
{
    return write(toArray(paths), fileName);
}

bool CatalogueFiles::writePathArrays(const QList<QStringList> &bunches, const QString &fileName)
{
    return write(toArray(bunches), fileName);
}

bool CatalogueFiles::write(const QVariantList &array, const QString &fileName)
{
    if (_writing == Writing::Never || _untouchable.contains(fileName)) {
        return _writing == Writing::Never;
    }
    const QString folder = userApplicationSupportFolder();
    // Missing folders above it are made too: a new account has no data folder yet, and the
    // favourites of its first day must last. A failure shows in the write.
    QDir().mkpath(folder);
    return PropertyList::writeFile(folder + QLatin1Char('/') + fileName, array);
}
