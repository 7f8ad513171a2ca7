#include "support/DefaultsFile.h"

#include "support/Log.h"
#include "support/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLockFile>

#include <chrono>

using namespace std::chrono_literals;

namespace {

// Replacing a file is several events; this much later it is read once for all of them.
constexpr auto settlingTime = 50ms;
constexpr auto longestWaitForLock = 1s;
// A lock is held for some milliseconds. One this old belongs to a program that hangs.
constexpr auto staleLockTime = 10s;

// A file that is not a dictionary is as damaged as one that cannot be parsed.
PropertyList::Document readDictionary(const QString &path)
{
    PropertyList::Document document = PropertyList::readFile(path);
    if (document.state == PropertyList::State::Read
        && document.value.typeId() != QMetaType::QVariantMap) {
        return { PropertyList::State::Damaged, {}, QStringLiteral("not a dictionary") };
    }
    return document;
}

void applyTo(QVariantMap &values, const DefaultsFile::Changes &changes)
{
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change.value().isValid()) {
            values.insert(change.key(), change.value());
        } else {
            values.remove(change.key());
        }
    }
}

// What has to be made follows the base directory specification: for the user alone.
bool makePrivateFolder(const QString &path)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        return true;
    }
    if (info.isRoot() || info.exists() || !makePrivateFolder(info.absolutePath())) {
        return false;
    }
    return QDir().mkdir(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
        || QFileInfo(path).isDir();
}

QString nearestFolder(const QString &path)
{
    QFileInfo folder(path);
    while (!folder.isDir() && !folder.isRoot()) {
        folder.setFile(folder.absolutePath());
    }
    return folder.absoluteFilePath();
}

QString lockFailure(const QLockFile &lock)
{
    switch (lock.error()) {
    case QLockFile::LockFailedError:
        return QStringLiteral("another program holds it");
    case QLockFile::PermissionError:
        return QStringLiteral("permission denied");
    default:
        return QStringLiteral("the lock cannot be written");
    }
}

} // namespace

DefaultsFile::DefaultsFile(const QString &path, UserDefaults::Writing writing)
    : _path(path.isEmpty() ? QString() : QFileInfo(path).absoluteFilePath())
    , _writing(path.isEmpty() ? UserDefaults::Writing::Never : writing)
{
    if (_path.isEmpty()) {
        return;
    }
    if (_writing == UserDefaults::Writing::Allowed && QCoreApplication::instance()) {
        _watcher = std::make_unique<QFileSystemWatcher>();
        _settling.setSingleShot(true);
        _settling.setInterval(settlingTime);
        connect(&_settling, &QTimer::timeout, this, &DefaultsFile::readAgain);
        const auto settle = [this] {
            if (!_settling.isActive()) {
                _settling.start();
            }
        };
        connect(_watcher.get(), &QFileSystemWatcher::fileChanged, this, settle);
        connect(_watcher.get(), &QFileSystemWatcher::directoryChanged, this, settle);
        watch();
    }
    const PropertyList::Document document = readDictionary(_path);
    _values = document.value.toMap();
    if (document.state != PropertyList::State::Damaged) {
        return;
    }
    if (_writing == UserDefaults::Writing::Allowed) {
        PropertyList::setAside(_path, document.error);
    } else {
        qCWarning(
            lcSupport, "cannot read %s: %s", qUtf8Printable(_path), qUtf8Printable(document.error));
    }
}

DefaultsFile::~DefaultsFile() = default;

// Watches the file for changes in place and its folder, or the nearest one there is, for everything
// else. Always anew: a watch stays with a file that was replaced or a folder that was removed.
void DefaultsFile::watch()
{
    const QStringList watched = _watcher->files() + _watcher->directories();
    if (!watched.isEmpty()) {
        _watcher->removePaths(watched);
    }
    const QString folder = QFileInfo(_path).absolutePath();
    QString nearest;
    // A folder made just before its parent was watched would go unnoticed.
    while (nearest != nearestFolder(folder)) {
        nearest = nearestFolder(folder);
        _watcher->addPath(nearest);
    }
    if (QFileInfo::exists(_path)) {
        _watcher->addPath(_path);
    }
}

void DefaultsFile::readAgain()
{
    // Watched first, so that a change after the reading is not missed.
    watch();
    const PropertyList::Document document = readDictionary(_path);
    const QVariantMap values = document.value.toMap();
    if (document.state == PropertyList::State::Damaged || values == _values) {
        return;
    }
    _values = values;
    Q_EMIT changedOutside();
}

bool DefaultsFile::apply(const Changes &changes)
{
    if (_writing == UserDefaults::Writing::Never) {
        applyTo(_values, changes);
        return true;
    }
    if (!makeFolder()) {
        return false;
    }
    QLockFile lock(_path + QStringLiteral(".lock"));
    lock.setStaleLockTime(std::chrono::milliseconds(staleLockTime).count());
    if (lock.tryLock(std::chrono::milliseconds(longestWaitForLock).count())) {
        return applyLocked(changes);
    }
    qCWarning(
        lcSupport, "cannot lock %s: %s", qUtf8Printable(_path), qUtf8Printable(lockFailure(lock)));
    return false;
}

bool DefaultsFile::makeFolder() const
{
    const QString folder = QFileInfo(_path).absolutePath();
    if (makePrivateFolder(folder)) {
        return true;
    }
    qCWarning(lcSupport, "cannot write %s: the folder cannot be made", qUtf8Printable(_path));
    return false;
}

bool DefaultsFile::applyLocked(const Changes &changes)
{
    const PropertyList::Document document = readDictionary(_path);
    QVariantMap values = document.value.toMap();
    if (document.state == PropertyList::State::Damaged) {
        if (!PropertyList::setAside(_path, document.error)) {
            return false;
        }
        values = _values;
    }
    applyTo(values, changes);
    if (!PropertyList::writeFile(_path, values)) {
        return false;
    }
    _values = values;
    return true;
}
