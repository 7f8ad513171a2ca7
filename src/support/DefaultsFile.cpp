#include "support/DefaultsFile.h"

#include "support/files/FileLock.h"
#include "support/files/FileWatch.h"
#include "support/files/Log.h"
#include "support/files/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <utility>

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

struct DefaultsFile::Outcome
{
    // Empty on success.
    QString error;
    // What the file now holds.
    QVariantMap values;
};

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

DefaultsFile::~DefaultsFile()
{
    _writer.flush();
}

void DefaultsFile::change(const QString &key, const QVariant &value)
{
    applyTo(_values, { { key, value } });
    if (_writing == UserDefaults::Writing::Allowed) {
        _waiting.insert(key, value);
        _writer.request();
    }
}

bool DefaultsFile::synchronize()
{
    if (!_waiting.isEmpty() || !_onTheWay.isEmpty()) {
        _writer.request();
        _writer.flush();
    }
    return _isLastWriteGood;
}

void DefaultsFile::writeAgain()
{
    if (!_waiting.isEmpty()) {
        _writer.request();
    }
}

void DefaultsFile::readAgain()
{
    // Until the write ends it is not known whether the file has these changes.
    if (!_onTheWay.isEmpty()) {
        _isReadingDue = true;
        return;
    }
    const PropertyList::Document document = readDictionary(_path);
    if (document.state == PropertyList::State::Damaged) {
        return;
    }
    QVariantMap values = document.value.toMap();
    applyTo(values, _waiting);
    if (values != _values) {
        _values = values;
        Q_EMIT changedOutside();
    }
}

WriteBehind::Job DefaultsFile::nextJob()
{
    if (_waiting.isEmpty()) {
        return {};
    }
    _onTheWay = std::exchange(_waiting, {});
    return [this, path = _path, changes = _onTheWay, known = _values]() -> WriteBehind::Conclusion {
        return [this, outcome = write(path, changes, known)] { conclude(outcome); };
    };
}

// Not on the main thread, and so without a look at the object.
DefaultsFile::Outcome DefaultsFile::write(
    const QString &path, const Changes &changes, const QVariantMap &known)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!makePrivateFolder(folder)) {
        const QString error =
            QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the folder cannot be made"));
        qCWarning(lcSupport, "cannot write %s: %s", qUtf8Printable(path), qUtf8Printable(error));
        return { error, {} };
    }
    FileLock lock(folder);
    if (lock.lock()) {
        return writeLocked(path, changes, known);
    }
    qCWarning(
        lcSupport, "cannot lock %s: %s", qUtf8Printable(folder), qUtf8Printable(lock.error()));
    return { lock.error(), {} };
}

DefaultsFile::Outcome DefaultsFile::writeLocked(
    const QString &path, const Changes &changes, const QVariantMap &known)
{
    const PropertyList::Document document = readDictionary(path);
    QVariantMap values = document.value.toMap();
    if (document.state == PropertyList::State::Damaged) {
        if (!PropertyList::setAside(path, document.error)) {
            return { QStringLiteral(
                         QT_TRANSLATE_NOOP("Reason", "the damaged file cannot be moved away")),
                {} };
        }
        values = known;
    }
    applyTo(values, changes);
    Outcome outcome { {}, values };
    PropertyList::writeFile(path, values, PropertyList::Former::Dropped, &outcome.error);
    return outcome;
}

void DefaultsFile::conclude(const Outcome &outcome)
{
    const Changes changes = std::exchange(_onTheWay, {});
    _isLastWriteGood = outcome.error.isEmpty();
    if (_isLastWriteGood) {
        _values = outcome.values;
        applyTo(_values, _waiting);
        Q_EMIT written();
    } else {
        // Below what has changed since.
        for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
            if (!_waiting.contains(change.key())) {
                _waiting.insert(change.key(), change.value());
            }
        }
        Q_EMIT writeFailed(outcome.error);
    }
    if (std::exchange(_isReadingDue, false)) {
        readAgain();
    }
}
