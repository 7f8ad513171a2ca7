#include "platform/freedesktop/live/WatchedFolders.h"

#include "platform/Items.h"
#include "platform/freedesktop/entries/BundleFolder.h"
#include "platform/freedesktop/live/FolderItems.h"

#include <QFile>

#include <algorithm>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace FolderItems;

namespace {

constexpr uint32_t ComingsAndGoings = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr uint32_t OfItself = IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t OfFolder = ComingsAndGoings | OfItself | IN_CLOSE_WRITE | IN_ATTRIB;
// The watch has come to its end, or the folder is no longer where it was.
constexpr uint32_t Lost = OfItself | IN_IGNORED | IN_UNMOUNT;

// Between the folder of a bundle and what makes it one.
constexpr int DeepestInBundle = 3;

bool isEntryName(const QString &name)
{
    return name.endsWith(QLatin1String(".desktop"));
}

// A new file, which is told once more when it is closed. It is made with its only name, unlike a
// link to another one.
bool isBeingWritten(const Inotify::Event &event, const QString &folder, const QString &name)
{
    struct stat status = {};
    return (event.mask & IN_CREATE) != 0
        && ::lstat(QFile::encodeName(inFolder(folder, name)).constData(), &status) == 0
        && S_ISREG(status.st_mode) && status.st_nlink == 1;
}

// The folder's other items may count otherwise when this one is written: it lists those that are
// hidden, or is what installers write last, when the programs of all entries are there.
bool concernsAll(const QString &name)
{
    return name == QLatin1String(".hidden") || name == QLatin1String("mimeinfo.cache");
}

// What is awaited in the folder above one that leads to a folder of the scope, or is it itself. A
// home folder, where much else happens, often lacks one of them.
uint32_t eventsAwaited(const QString &path, bool isItself)
{
    if (isLink(path)) {
        return ComingsAndGoings;
    }
    if (!isFolder(path)) {
        return IN_CREATE | IN_MOVED_TO;
    }
    const bool isReadable = ::access(QFile::encodeName(path).constData(), R_OK | X_OK) == 0;
    return isItself && !isReadable ? IN_ATTRIB : 0;
}

QStringList withoutRepetition(QStringList paths)
{
    paths.removeDuplicates();
    return paths;
}

} // namespace

WatchedFolders::WatchedFolders(Items &items, const LiveQuery::Scope &scope,
    std::function<bool()> isStale, qsizetype mostWatches)
    : _items(items)
    , _scope(scope)
    , _isStale(std::move(isStale))
    , _inotify(mostWatches)
    , _roots(withoutRepetition(scope.folders + scope.nested))
    , _rootSet(_roots.begin(), _roots.end())
{
    touchAll();
}

QList<QStringList> WatchedFolders::results() const
{
    QHash<QString, QStringList> byRoot;
    for (auto folder = _folders.begin(); folder != _folders.end(); ++folder) {
        for (auto result = folder->results.keyBegin(); result != folder->results.keyEnd();
             ++result) {
            byRoot[folder->root].append(inFolder(folder.key(), *result));
        }
    }
    return byRoot.values();
}

void WatchedFolders::readEvents()
{
    _inotify.read([this](const Inotify::Event &event) { take(event); });
}

void WatchedFolders::take(const Inotify::Event &event)
{
    if ((event.mask & IN_Q_OVERFLOW) != 0) {
        _isIncomplete = true;
        touchAll();
        return;
    }
    const QList<Way> ways = _waysByWatch.values(event.watch);
    const QString name = QFile::decodeName(event.name);
    for (const Way &way : ways) {
        if ((event.mask & Lost) != 0 || (!name.isEmpty() && name == way.name)) {
            _touchedRoots.insert(way.root);
        }
    }
    const QStringList paths = _pathsByWatch.values(event.watch);
    for (const QString &path : paths) {
        touch(path, event);
    }
    if ((event.mask & IN_IGNORED) != 0) {
        for (const QString &path : paths) {
            _folders[path].watch = Inotify::NoWatch;
        }
        _pathsByWatch.remove(event.watch);
        _waysByWatch.remove(event.watch);
    }
}

void WatchedFolders::touch(const QString &path, const Inotify::Event &event)
{
    const QString bundle = _folders.value(path).bundle;
    const QString name = QFile::decodeName(event.name);
    const bool isLost = (event.mask & Lost) != 0;
    if (_rootSet.contains(path) && (isLost || name.isEmpty())) {
        _touchedRoots.insert(path);
    } else if (!bundle.isEmpty()) {
        _touchedNames[parentOf(bundle)].insert(nameOf(bundle));
    } else if (isLost) {
        _touchedNames[parentOf(path)].insert(nameOf(path));
    } else if (name.isEmpty() || concernsAll(name)) {
        _touchedFolders.insert(path);
    } else if (QFile::encodeName(name) == event.name && !isBeingWritten(event, path, name)) {
        _touchedNames[path].insert(name);
        const bool isNew = !_folders.value(path).results.contains(name);
        if (((event.mask & ComingsAndGoings) != 0 || isNew) && isEntryName(name)) {
            _movedEntries.insert(name);
        }
    }
}

// An entry in one folder stands in front of those of its name in others.
void WatchedFolders::touchShadowed()
{
    const QSet<QString> names = std::exchange(_movedEntries, {});
    for (const QString &name : names) {
        for (auto folder = _folders.begin(); folder != _folders.end(); ++folder) {
            if (folder->results.contains(name) || isThere(inFolder(folder.key(), name))) {
                _touchedNames[folder.key()].insert(name);
            }
        }
    }
}

void WatchedFolders::touchRemounted()
{
    for (const QString &root : _roots) {
        if (!_folders.contains(root)) {
            _touchedRoots.insert(root);
        }
    }
    for (auto folder = _folders.begin(); folder != _folders.end(); ++folder) {
        const auto status = statusOf(folder.key());
        if (!status || status->st_dev != folder->device || status->st_ino != folder->number) {
            _touchedRoots.insert(folder->root);
        }
    }
}

void WatchedFolders::touchAll()
{
    _touchedRoots = _rootSet;
}

bool WatchedFolders::isTouched() const
{
    return !_touchedRoots.isEmpty() || !_touchedFolders.isEmpty() || !_touchedNames.isEmpty();
}

ChangeSet WatchedFolders::lookAtTouched()
{
    _isShort = _isShort && _touchedRoots != _rootSet;
    touchShadowed();
    lookOnce();
    if (std::exchange(_areShadowsOther, false) && _isGathered) {
        _touchedFolders = _rootSet;
        lookOnce();
        _areShadowsOther = false;
    }
    _isGathered = true;
    _isShort = _inotify.takeIsShort() || _isShort;
    return std::exchange(_changes, {});
}

void WatchedFolders::lookOnce()
{
    const QSet<QString> roots = std::exchange(_touchedRoots, {});
    const QSet<QString> folders = std::exchange(_touchedFolders, {});
    const auto names = std::exchange(_touchedNames, {});
    QStringList paths;
    for (auto folder = names.begin(); folder != names.end(); ++folder) {
        for (const QString &name : *folder) {
            paths.append(inFolder(folder.key(), name));
        }
    }
    _items.lookAgainAt(paths);
    for (const QString &root : roots) {
        lookAtRoot(root);
    }
    for (const QString &folder : folders) {
        lookAtFolder(folder);
    }
    for (auto folder = names.begin(); folder != names.end(); ++folder) {
        for (const QString &name : *folder) {
            lookAtName(folder.key(), name);
        }
    }
}

void WatchedFolders::lookAtRoot(const QString &root)
{
    if (_isStale()) {
        return;
    }
    // Watched first, so that a folder that comes meanwhile is told.
    leaveWayTo(root);
    watchWayTo(root);
    if (isFolder(root)) {
        enter(root, { root });
    } else {
        leave(root);
    }
}

void WatchedFolders::lookAtFolder(const QString &path)
{
    const auto folder = _folders.constFind(path);
    if (folder != _folders.constEnd() && folder->bundle.isEmpty()) {
        const Folder place { folder->root, folder->level };
        enter(path, place);
    }
}

void WatchedFolders::lookAtName(const QString &folderPath, const QString &name)
{
    const auto folder = _folders.find(folderPath);
    if (folder == _folders.end() || _isStale()) {
        return;
    }
    const QString path = inFolder(folderPath, name);
    if (_rootSet.contains(path)) {
        return;
    }
    const LiveQuery::Kind kind = _scope.kindOf(path);
    if (kind == LiveQuery::Kind::Result) {
        keepResult(*folder, name, path);
    } else if (folder->results.remove(name) > 0) {
        _changes.remove(path);
    }
    Folder place { folder->root, folder->level + 1 };
    const bool isEntered = kind == LiveQuery::Kind::Folder && folder->level < _scope.levels;
    const bool isIncomplete = kind == LiveQuery::Kind::Neither && BundleFolder::isPackageName(name)
        && !isLink(path) && isFolder(path);
    if (!isEntered && !isIncomplete) {
        if (folder->folders.remove(name)) {
            leave(path);
        }
        return;
    }
    folder->folders.insert(name);
    if (isEntered) {
        enter(path, place);
    } else {
        place.bundle = path;
        place.level = 1;
        enterBundle(path, place);
    }
}

void WatchedFolders::keepResult(Folder &folder, const QString &name, const QString &path)
{
    const FileState state = stateOf(path);
    const auto known = folder.results.find(name);
    if (known == folder.results.end()) {
        folder.results.insert(name, state);
        _changes.add(path);
    } else if (*known != state) {
        *known = state;
        _changes.change(path);
    }
}

// Also when it is known already.
void WatchedFolders::enter(const QString &path, const Folder &place)
{
    auto folder = _folders.find(path);
    const bool isKnown = folder != _folders.end();
    if (!isKnown) {
        folder = _folders.insert(path, place);
    }
    // Watched first, so that what comes while it is listed is told.
    watch(path, *folder);
    QStringList names = namesIn(path);
    folder->hasEntries =
        folder->hasEntries || std::any_of(names.cbegin(), names.cend(), isEntryName);
    _areShadowsOther = _areShadowsOther || (!isKnown && folder->hasEntries);
    if (isKnown) {
        names += folder->results.keys() + folder->folders.values();
        names.removeDuplicates();
        QStringList paths;
        for (const QString &name : std::as_const(names)) {
            paths.append(inFolder(path, name));
        }
        _items.lookAgainAt(paths);
    }
    for (const QString &name : std::as_const(names)) {
        lookAtName(path, name);
    }
}

// A bundle is copied file by file, and one that is complete needs no watching inside.
void WatchedFolders::enterBundle(const QString &path, const Folder &place)
{
    auto folder = _folders.find(path);
    if (folder == _folders.end()) {
        folder = _folders.insert(path, place);
    }
    watch(path, *folder);
    if (place.level >= DeepestInBundle) {
        return;
    }
    Folder inner = place;
    ++inner.level;
    const QStringList names = namesIn(path);
    for (const QString &name : names) {
        const QString item = inFolder(path, name);
        if (!isLink(item) && isFolder(item) && !_isStale()) {
            _folders[path].folders.insert(name);
            enterBundle(item, inner);
        }
    }
}

void WatchedFolders::leave(const QString &path)
{
    const auto known = _folders.find(path);
    if (known == _folders.end()) {
        return;
    }
    const Folder folder = *known;
    _folders.erase(known);
    _areShadowsOther = _areShadowsOther || folder.hasEntries;
    _pathsByWatch.remove(folder.watch, path);
    release(folder.watch);
    for (auto result = folder.results.keyBegin(); result != folder.results.keyEnd(); ++result) {
        _changes.remove(inFolder(path, *result));
    }
    for (const QString &name : folder.folders) {
        const QString inner = inFolder(path, name);
        if (!_rootSet.contains(inner)) {
            leave(inner);
        }
    }
}

void WatchedFolders::watch(const QString &path, Folder &folder)
{
    const int watch = _inotify.add(path, OfFolder);
    const auto status = statusOf(path);
    const quint64 device = status ? status->st_dev : 0;
    const quint64 number = status ? status->st_ino : 0;
    // One that may no longer be read still tells when it may be again.
    const bool isSame = device == folder.device && number == folder.number;
    folder.device = device;
    folder.number = number;
    if (watch == folder.watch || (watch == Inotify::NoWatch && isSame)) {
        return;
    }
    const int former = std::exchange(folder.watch, watch);
    _pathsByWatch.remove(former, path);
    release(former);
    if (watch != Inotify::NoWatch) {
        _pathsByWatch.insert(watch, path);
    }
}

// The folders above one of the scope's may be renamed, and links among them led elsewhere. Where
// one is missing or may not be read, the one above it tells when that changes.
void WatchedFolders::watchWayTo(const QString &root)
{
    for (qsizetype end = 0; end < root.size() - 1;) {
        const QString folder = root.left(std::max<qsizetype>(1, end));
        const qsizetype nameAt = end + 1;
        const qsizetype slash = root.indexOf(QLatin1Char('/'), nameAt);
        end = slash < 0 ? root.size() : slash;
        const QString next = root.left(end);
        uint32_t awaited = 0;
        int watch = Inotify::NoWatch;
        // What comes or goes before the watch is there is not told.
        do {
            awaited = eventsAwaited(next, end == root.size());
            watch = _inotify.add(folder, OfItself | awaited);
        } while (awaited != eventsAwaited(next, end == root.size()));
        if (watch != Inotify::NoWatch) {
            _waysByWatch.insert(watch, { root, awaited != 0 ? nameOf(next) : QString() });
        }
        if (!isFolder(next)) {
            return;
        }
    }
}

void WatchedFolders::leaveWayTo(const QString &root)
{
    QList<int> watches;
    for (auto way = _waysByWatch.begin(); way != _waysByWatch.end();) {
        if (way->root == root) {
            watches.append(way.key());
            way = _waysByWatch.erase(way);
        } else {
            ++way;
        }
    }
    for (const int watch : std::as_const(watches)) {
        release(watch);
    }
}

void WatchedFolders::release(int watch)
{
    if (!_pathsByWatch.contains(watch) && !_waysByWatch.contains(watch)) {
        _inotify.remove(watch);
    }
}
