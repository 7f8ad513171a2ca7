#include "catalogue/files/StandIns.h"

#include "platform/Items.h"

#include <QHash>

PathBunches StandIns::replaced(const PathBunches &stored) const
{
    PathBunches paths = stored;
    for (QStringList &bunch : paths) {
        for (QString &path : bunch) {
            path = _items.standInFor(path);
        }
    }
    return paths;
}

CatalogueFiles::Change StandIns::toStore(
    const CatalogueFiles::Change &change, const PathBunches &stored) const
{
    CatalogueFiles::Change result = change;
    QHash<QString, QString> storedByShown;
    for (const QString &path : flattened(stored)) {
        const QString standIn = _items.standInFor(path);
        if (!storedByShown.contains(standIn)) {
            storedByShown.insert(standIn, path);
        }
        if (change.changed.contains(standIn)) {
            result.changed.insert(path);
        }
    }
    for (QStringList &bunch : result.paths) {
        for (QString &path : bunch) {
            path = storedByShown.value(path, path);
        }
    }
    return result;
}
