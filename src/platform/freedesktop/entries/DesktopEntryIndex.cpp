#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include "platform/freedesktop/base/Log.h"

DesktopEntryIndex::DesktopEntryIndex(const QList<QByteArray> &languages)
    : _languages(languages)
{ }

void DesktopEntryIndex::willScan()
{
    const QMutexLocker lock(&_mutex);
    // Most of what the scan that ends now did not come across is gone; anything else is read again
    // when it is asked for.
    _known.removeIf([this](const auto &known) { return known.value().scan != _scan; });
    ++_scan;
}

void DesktopEntryIndex::lookAgainAt(const QStringList &paths)
{
    const QMutexLocker lock(&_mutex);
    for (const QString &path : paths) {
        const auto known = _known.find(path);
        if (known != _known.end()) {
            known->scan.reset();
        }
    }
}

quint64 DesktopEntryIndex::scan() const
{
    const QMutexLocker lock(&_mutex);
    return _scan;
}

std::shared_ptr<const DesktopEntry> DesktopEntryIndex::entryAt(const QString &path)
{
    {
        const QMutexLocker lock(&_mutex);
        const auto known = _known.constFind(path);
        if (known != _known.constEnd() && known->scan == _scan) {
            return known->entry;
        }
    }
    // The disk is asked outside the lock. The state is older than the content, so that a change
    // between the two is found the next time.
    const std::optional<FileState> state = FileState::of(path);
    if (std::shared_ptr<const DesktopEntry> entry = remembered(path, state); entry || !state) {
        return entry;
    }
    return remember(path, *state, DesktopEntry::fromFile(path, _languages));
}

// What is known of the file if it still is in that state.
std::shared_ptr<const DesktopEntry> DesktopEntryIndex::remembered(
    const QString &path, const std::optional<FileState> &state)
{
    const QMutexLocker lock(&_mutex);
    const auto known = _known.find(path);
    if (known == _known.end()) {
        return nullptr;
    }
    if (!state) {
        _known.erase(known);
        return nullptr;
    }
    if (known->state != *state) {
        return nullptr;
    }
    known->scan = _scan;
    return known->entry;
}

std::shared_ptr<const DesktopEntry> DesktopEntryIndex::remember(
    const QString &path, const FileState &state, DesktopEntry entry)
{
    const QMutexLocker lock(&_mutex);
    Known &known = _known[path];
    // Another thread may have read the same content meanwhile.
    if (known.entry == nullptr || known.state != state) {
        if (!entry.problem.isEmpty()) {
            qCWarning(lcPlatform, "%s: %s", qUtf8Printable(path), qUtf8Printable(entry.problem));
        }
        known.entry = std::make_shared<const DesktopEntry>(std::move(entry));
        known.state = state;
    }
    known.scan = _scan;
    return known.entry;
}
