#include "catalogue/files/PathFile.h"

using PropertyList::State;

namespace {

// Sorts the elements of an array into paths and the rest.
QStringList paths(const QVariantList &array, int &rejected)
{
    QStringList accepted;
    accepted.reserve(array.size());
    for (const QVariant &value : array) {
        if (PathFile::isPath(value)) {
            accepted.append(value.toString());
        } else {
            ++rejected;
        }
    }
    return accepted;
}

PathBunches bunches(const QVariantList &array, int &rejected)
{
    PathBunches accepted;
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

} // namespace

bool PathFile::isPath(const QVariant &value)
{
    const QString path = value.typeId() == QMetaType::QString ? value.toString() : QString();
    // The binary form brings strings that could not be written again.
    return (path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("~/")))
        && PropertyList::canHold(path);
}

PathFile::Document PathFile::read(const QString &path, Shape shape)
{
    const PropertyList::Document document = PropertyList::readFile(path);
    if (document.state != State::Read) {
        return { document.state, {}, document.error };
    }
    return fromPropertyList(document.value, shape);
}

PathFile::Document PathFile::fromPropertyList(const QVariant &value, Shape shape)
{
    if (value.typeId() != QMetaType::QVariantList) {
        return { State::Damaged, {}, QStringLiteral("not an array") };
    }
    const QVariantList array = value.toList();
    Document result { State::Read, {}, {} };
    int rejected = 0;
    if (shape == Shape::Bunched) {
        result.paths = bunches(array, rejected);
    } else if (const QStringList flat = paths(array, rejected); !flat.isEmpty()) {
        result.paths = { flat };
    }
    if (rejected > 0) {
        result.state = State::Damaged;
        result.error = QStringLiteral("%1 of its entries are no paths").arg(rejected);
    }
    return result;
}

QVariant PathFile::propertyList(const PathBunches &bunches, Shape shape)
{
    if (shape == Shape::Flat) {
        return toArray(flattened(bunches));
    }
    QVariantList array;
    array.reserve(bunches.size());
    for (const QStringList &bunch : bunches) {
        array.append(QVariant(toArray(bunch)));
    }
    return array;
}
