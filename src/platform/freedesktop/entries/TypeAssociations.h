// Which applications users, administrators and distributions have associated with a type, beside
// what the entries say of themselves: the `mimeapps.list` files of a session.
//
// https://specifications.freedesktop.org/mime-apps-spec/ A type's default is not read here.

#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <utility>

class TypeAssociations final
{
public:
    using TypeTest = std::function<bool(const QByteArray &type)>;

    // Reads the files as they are now, for the types that pass the test. Of the data folders the
    // one that counts most is the first.
    TypeAssociations(const QStringList &dataFolders, const TypeTest &isWanted);

    // The paths of the entries that were added, and of those whose claim was withdrawn.
    const QStringList &added() const { return _added; }
    const QStringList &removed() const { return _removed; }

private:
    using Association = std::pair<QByteArray, QString>;

    void read(const QString &list, const TypeTest &isWanted);

    QSet<Association> _addedIds;
    QSet<Association> _removedIds;
    QStringList _added;
    QStringList _removed;
};
