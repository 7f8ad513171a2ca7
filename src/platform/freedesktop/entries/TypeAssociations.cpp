#include "platform/freedesktop/entries/TypeAssociations.h"

#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/base/SessionFolders.h"
#include "platform/freedesktop/entries/DesktopFileIds.h"
#include "platform/freedesktop/entries/EntryText.h"

namespace {

// The one that counts most first. Those of single desktops can only name defaults.
QStringList listsOf(const QStringList &dataFolders)
{
    QStringList folders { SessionFolders::configurationHome() };
    folders += SessionFolders::sharedConfiguration();
    for (const QString &folder : dataFolders) {
        folders.append(folder + QStringLiteral("/applications"));
    }
    for (QString &folder : folders) {
        folder += QStringLiteral("/mimeapps.list");
    }
    return folders;
}

} // namespace

TypeAssociations::TypeAssociations(const QStringList &dataFolders, const TypeTest &isWanted)
{
    for (const QString &list : listsOf(dataFolders)) {
        read(list, isWanted);
    }
    if (_addedIds.isEmpty() && _removedIds.isEmpty()) {
        return;
    }
    const QHash<QString, QString> pathsById = DesktopFileIds(dataFolders).pathsById();
    for (const auto &[ids, paths] :
        { std::pair(&_addedIds, &_added), std::pair(&_removedIds, &_removed) }) {
        for (const auto &[type, id] : *ids) {
            paths->append(pathsById.value(id));
        }
        paths->removeAll(QString());
    }
}

void TypeAssociations::read(const QString &list, const TypeTest &isWanted)
{
    const QByteArray text = readKeyFile(list);
    QSet<Association> added;
    QSet<Association> removed;
    for (KeyFileReader file({ text.constData(), size_t(text.size()) }); file.readNext();) {
        const bool isAddition = file.group() == "Added Associations";
        const bool isRemoval = file.group() == "Removed Associations";
        const QByteArray type(file.key().data(), qsizetype(file.key().size()));
        if (file.line() == KeyFileReader::Line::Pair && (isAddition || isRemoval)
            && isWanted(type)) {
            for (const QString &id : EntryText::listIn(file.value())) {
                (isAddition ? added : removed).insert({ type, id });
            }
        }
    }
    _addedIds += added - _removedIds;
    // Lists that count less cannot add it again.
    _removedIds += removed;
}
