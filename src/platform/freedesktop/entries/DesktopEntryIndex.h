// The one memory of desktop entries: each file is read once for as long as it stays the same.
//
// Files are looked at again only after willScan() or lookAgainAt(); until then an entry stands as
// it was first read, also when its file has gone. An entry that is not asked for between two of
// these calls is forgotten. May be used from any thread.

#pragma once

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/entries/DesktopEntry.h"

#include <QHash>
#include <QMutex>
#include <QStringList>

#include <memory>
#include <optional>

class DesktopEntryIndex final
{
public:
    // The locales whose translations are wanted, the best one first.
    explicit DesktopEntryIndex(const QList<QByteArray> &languages);

    const QList<QByteArray> &languages() const { return _languages; }

    void willScan();
    // The same for single files. Nothing is forgotten.
    void lookAgainAt(const QStringList &paths);
    // How often willScan() was called: what was worked out from entries may be out of
    // date after it.
    quint64 scan() const;

    // The entry in the regular file at a path, links followed; null when there is none. A problem
    // with the file is logged once for each content.
    std::shared_ptr<const DesktopEntry> entryAt(const QString &path);

private:
    struct Known
    {
        FileState state;
        // In which the file was looked at last; none when that is due again.
        std::optional<quint64> scan;
        std::shared_ptr<const DesktopEntry> entry;
    };

    std::shared_ptr<const DesktopEntry> remembered(
        const QString &path, const std::optional<FileState> &state);
    std::shared_ptr<const DesktopEntry> remember(
        const QString &path, const FileState &state, DesktopEntry entry);

    const QList<QByteArray> _languages;
    mutable QMutex _mutex;
    QHash<QString, Known> _known;
    quint64 _scan = 0;
};
