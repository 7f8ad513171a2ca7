#include "support/DefaultsFile.h"

#include "support/files/FileLock.h"
#include "support/files/FileWatch.h"
#include "support/files/Log.h"
#include "support/files/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

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

} // namespace

DefaultsFile::DefaultsFile(const QString &path, UserDefaults::Writing writing)
    : _path(path.isEmpty() ? QString() : QFileInfo(path).absoluteFilePath())
    , _writing(path.isEmpty() ? UserDefaults::Writing::Never : writing)
{
    if (_path.isEmpty()) {
        return;
    }
    if (_writing == UserDefaults::Writing::Allowed) {
        FileReplacement::removeStrays({ _path });
        if (QCoreApplication::instance()) {
            _watch = std::make_unique<FileWatch>(QStringList { _path });
            connect(_watch.get(), &FileWatch::changed, this, &DefaultsFile::readAgain);
        }
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

void DefaultsFile::readAgain()
{
    const PropertyList::Document document = readDictionary(_path);
    const QVariantMap values = document.value.toMap();
    if (document.state == PropertyList::State::Damaged || values == _values) {
        return;
    }
    _values = values;
    Q_EMIT changedOutside();
}

bool DefaultsFile::apply(const Changes &changes, QString *error)
{
    if (_writing == UserDefaults::Writing::Never) {
        applyTo(_values, changes);
        return true;
    }
    const QString folder = QFileInfo(_path).absolutePath();
    if (!makePrivateFolder(folder)) {
        *error = QStringLiteral("the folder cannot be made");
        qCWarning(lcSupport, "cannot write %s: %s", qUtf8Printable(_path), qUtf8Printable(*error));
        return false;
    }
    FileLock lock(folder);
    if (lock.lock()) {
        return applyLocked(changes, error);
    }
    *error = lock.error();
    qCWarning(lcSupport, "cannot lock %s: %s", qUtf8Printable(folder), qUtf8Printable(*error));
    return false;
}

bool DefaultsFile::applyLocked(const Changes &changes, QString *error)
{
    const PropertyList::Document document = readDictionary(_path);
    QVariantMap values = document.value.toMap();
    if (document.state == PropertyList::State::Damaged) {
        if (!PropertyList::setAside(_path, document.error)) {
            *error = QStringLiteral("the damaged file cannot be moved away");
            return false;
        }
        values = _values;
    }
    applyTo(values, changes);
    if (!PropertyList::writeFile(_path, values, PropertyList::Former::Dropped, error)) {
        return false;
    }
    _values = values;
    return true;
}
