// Which applications open a document: by the types that their entries claim, and by those that
// users and distributions have associated with them (TypeAssociations). GIO tells types apart.
//
// A local document's type is told by its name and content, any other one's by the scheme of its
// URL. The entries come from the memory of entries, whether or not a table of the desktop lists
// them; only desktop entries open documents. May be used from any thread.

#pragma once

#include "platform/Documents.h"

class DesktopEntryIndex;

class FreedesktopDocuments final : public Documents
{
public:
    // What a document's type has to be to another type.
    enum class Relation { SameType, KindOf };

    // The index outlives this. Of the data folders the one that counts most is the first.
    FreedesktopDocuments(DesktopEntryIndex &entries, QStringList dataFolders);

    QSet<QString> applicationsThatAccept(
        const QUrl &document, const QStringList &bundlePaths) const override;
    QSet<QString> applicationsThatPrefer(
        const QUrl &document, const QStringList &bundlePaths) const override;

private:
    QSet<QString> applicationsFor(
        const QUrl &document, const QStringList &bundlePaths, Relation relation) const;

    DesktopEntryIndex &_entries;
    const QStringList _dataFolders;
};
