#include "catalogue/files/SettingsExchange.h"

#include "catalogue/files/CatalogueFiles.h"
#include "support/UserDefaults.h"
#include "support/files/FileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <utility>

using PathFile::Shape;
using PropertyList::State;

namespace {

// The files of the data folder that go along, by the names of their parts in a document.
const QStringList &dataFiles()
{
    static const QStringList names { QStringLiteral("UserApplications"),
        QStringLiteral("UserApplications1D"), QStringLiteral("ExcludedApplications"),
        QStringLiteral("ColorCorrections") };
    return names;
}

QString fileOf(const QString &folder, const QString &part)
{
    return folder + QLatin1Char('/') + part + QStringLiteral(".plist");
}

QString beforePath(const QString &path)
{
    return path + QStringLiteral(".before");
}

QString sentence(const QString &path, const QString &reason)
{
    return QStringLiteral("%1: %2").arg(path, reason);
}

// As they stand in the file. An absent file holds none.
PathBunches readPaths(const QString &path, Shape shape, QString *error)
{
    const PathFile::Document document = PathFile::read(path, shape);
    if (document.state == State::Damaged) {
        *error = sentence(path, document.error);
    }
    return document.paths;
}

QVariantMap readDictionary(const QString &path, QString *error)
{
    const PropertyList::Document document = PropertyList::readFile(path);
    if (document.state == State::Damaged) {
        *error = sentence(path, document.error);
    } else if (document.state == State::Read && document.value.typeId() != QMetaType::QVariantMap) {
        *error = sentence(path, QStringLiteral("not a dictionary"));
    }
    return document.value.toMap();
}

bool isEmpty(const QVariant &listOrDictionary)
{
    return listOrDictionary.toList().isEmpty() && listOrDictionary.toMap().isEmpty();
}

// Whether the file holds the value. One that is not there holds nothing, unless a start would
// restore what it held.
bool holds(const QString &path, const QVariant &value)
{
    const PropertyList::Document document = PropertyList::readFile(path);
    const bool isLost = QFileInfo::exists(FileReplacement::formerPath(path));
    return document.state == State::Absent ? isEmpty(value) && !isLost
                                           : document.value == PropertyList::plain(value);
}

// Null when there is no file. Reading a pipe would wait for its other end.
std::optional<QByteArray> bytesOf(const QString &path, QString *error)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return std::nullopt;
    }
    QFile file(path);
    if (!info.isFile()) {
        *error = sentence(path, QStringLiteral("not a regular file"));
    } else if (!file.open(QIODevice::ReadOnly)) {
        *error = sentence(path, file.errorString());
    }
    return error->isEmpty() ? file.readAll() : QByteArray();
}

// By the nearest folder that exists; empty when files can be put there.
QString whyNotWritable(const QString &folder)
{
    QFileInfo nearest(folder);
    while (!nearest.exists() && !nearest.isRoot()) {
        nearest.setFile(nearest.absolutePath());
    }
    if (!nearest.isDir()) {
        return sentence(nearest.filePath(), QStringLiteral("not a folder"));
    }
    return nearest.isWritable() ? QString() : sentence(nearest.filePath(), qt_error_string(EACCES));
}

QString keepBefore(const QString &path, const std::optional<QByteArray> &bytes)
{
    const QString reason = bytes ? FileReplacement::replace(beforePath(path), *bytes) : QString();
    return reason.isEmpty() ? QString() : sentence(beforePath(path), reason);
}

QString writeInto(const QString &device, const QByteArray &data)
{
    QFile file(device);
    const bool isWritten =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(data) == data.size();
    return isWritten ? QString() : file.errorString();
}

} // namespace

SettingsExchange::SettingsExchange(const SearchPaths &searchPaths, UserDefaults &defaults)
    : _dataFolder(CatalogueFiles::userFolder(searchPaths))
    , _preferencesFile(searchPaths.configurationFolder() + QStringLiteral("/Preferences.plist"))
    , _defaults(defaults)
{ }

QStringList SettingsExchange::ownFiles() const
{
    QStringList paths { _preferencesFile };
    for (const QString &part : dataFiles()) {
        paths.append(fileOf(_dataFolder, part));
    }
    return paths;
}

QByteArray SettingsExchange::exported(QString *error) const
{
    const auto path = [this](qsizetype i) { return fileOf(_dataFolder, dataFiles()[i]); };
    SettingsDocument document;
    document.favourites = readPaths(path(0), Shape::Bunched, error);
    document.favouritesInOneList = flattened(readPaths(path(1), Shape::Flat, error));
    document.exclusions = flattened(readPaths(path(2), Shape::Flat, error));
    document.colorCorrections = readDictionary(path(3), error);
    // The values are at hand; whether the file could be read is not.
    readDictionary(_preferencesFile, error);
    document.preferences = storedPreferences();
    return error->isEmpty() ? PropertyList::toXml(document.propertyList()) : QByteArray();
}

QString SettingsExchange::exportTo(const QString &file) const
{
    QString error;
    const QByteArray data = exported(&error);
    if (!error.isEmpty()) {
        return error;
    }
    const QFileInfo target(file);
    for (const QString &own : ownFiles()) {
        const bool isSame = target.absoluteFilePath() == own
            || (target.exists()
                && target.canonicalFilePath() == QFileInfo(own).canonicalFilePath());
        if (isSame) {
            return QStringLiteral(QT_TRANSLATE_NOOP("Reason", "Ortu itself keeps this file"));
        }
    }
    const bool isDevice = target.exists() && !target.isFile() && !target.isDir();
    return isDevice ? writeInto(file, data) : FileReplacement::replace(file, data);
}

SettingsExchange::Import SettingsExchange::importFrom(const QString &file)
{
    const PropertyList::Document document = PropertyList::readFile(file);
    Import import;
    switch (document.state) {
    case State::Absent:
        import.error = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "no such file"));
        return import;
    case State::Damaged:
        import.error = document.error;
        return import;
    case State::Read:
        break;
    }
    return take(document.value);
}

SettingsExchange::Import SettingsExchange::importData(const QByteArray &data)
{
    Import import;
    const std::optional<QVariant> value = PropertyList::fromData(data, &import.error);
    return value ? take(*value) : import;
}

SettingsExchange::Import SettingsExchange::take(const QVariant &value)
{
    Import import;
    const auto document =
        SettingsDocument::fromPropertyList(value, _defaults, &import.error, &import.leftOut);
    if (!document) {
        return import;
    }
    replaceAll(*document, import);
    if (!import.error.isEmpty() || import.changed.isEmpty()) {
        return import;
    }
    // Together the files NAME.before are what was before this import, and not before an earlier
    // one. What is as wanted already may be so by an import that was cut off a moment ago.
    const QVariantMap parts = document->propertyList().toMap();
    for (const QString &part : dataFiles()) {
        if (!parts.contains(part)) {
            QFile::remove(beforePath(fileOf(_dataFolder, part)));
        }
    }
    if (!document->preferences) {
        QFile::remove(beforePath(_preferencesFile));
    }
    return import;
}

// Preferences come last: their lock may be the one of the other files, and these can be put back
// without room on the disk.
void SettingsExchange::replaceAll(const SettingsDocument &document, Import &import)
{
    import.error = writeFiles(document, import);
    if (!import.error.isEmpty() || !document.preferences) {
        return;
    }
    const QVariantMap former = preferencesAsStored();
    import.error = writePreferences(*document.preferences, import);
    if (!import.error.isEmpty()) {
        setPreferences(former);
        _defaults.synchronize();
        putBack(import);
    }
}

// Removes what was not there. A copy takes the place of its file in one step, which needs no room;
// those that cannot stay in `before`.
void SettingsExchange::putBack(Import &import)
{
    for (const QString &path : std::as_const(import.changed)) {
        const QString before = beforePath(path);
        const bool isBack = import.before.contains(before)
            ? ::rename(QFile::encodeName(before).constData(), QFile::encodeName(path).constData())
                == 0
            : QFile::remove(path);
        if (isBack) {
            import.before.removeOne(before);
        } else {
            import.error += QStringLiteral("; ") + sentence(path, qt_error_string(errno));
        }
    }
    import.changed.clear();
}

QList<SettingsExchange::File> SettingsExchange::filesToChange(
    const SettingsDocument &document) const
{
    const QVariantMap parts = document.propertyList().toMap();
    QList<File> files;
    for (const QString &part : dataFiles()) {
        const QString path = fileOf(_dataFolder, part);
        if (parts.contains(part) && !holds(path, parts.value(part))) {
            files.append({ path, parts.value(part), {} });
        }
    }
    return files;
}

QString SettingsExchange::writeFiles(const SettingsDocument &document, Import &import)
{
    if (filesToChange(document).isEmpty()) {
        return {};
    }
    QDir().mkpath(_dataFolder);
    FileLock lock(_dataFolder);
    if (!lock.lock()) {
        return sentence(_dataFolder, lock.error());
    }
    QList<File> files = filesToChange(document);
    QString error;
    for (File &file : files) {
        file.before = bytesOf(file.path, &error);
        if (error.isEmpty()) {
            error = keepBefore(file.path, file.before);
        }
        if (!error.isEmpty()) {
            return error;
        }
    }
    for (const File &file : std::as_const(files)) {
        const QString reason = FileReplacement::replace(
            file.path, PropertyList::toXml(file.wanted), PropertyList::Former::KeptForADay);
        if (!reason.isEmpty()) {
            error = sentence(file.path, reason);
            break;
        }
        import.changed.append(file.path);
        if (file.before) {
            import.before.append(beforePath(file.path));
        }
    }
    if (!error.isEmpty()) {
        import.error = error;
        putBack(import);
        error = import.error;
    }
    return error;
}

QString SettingsExchange::writePreferences(const QVariantMap &wanted, Import &import)
{
    if (wanted == storedPreferences()) {
        return {};
    }
    // A try that fails would go on failing with every change to come.
    QString error = whyNotWritable(QFileInfo(_preferencesFile).absolutePath());
    if (!error.isEmpty()) {
        return error;
    }
    _defaults.synchronize();
    const std::optional<QByteArray> before = bytesOf(_preferencesFile, &error);
    if (error.isEmpty()) {
        error = keepBefore(_preferencesFile, before);
    }
    if (!error.isEmpty()) {
        return error;
    }
    setPreferences(wanted);
    if (!_defaults.synchronize()) {
        return sentence(_preferencesFile, _defaults.writeProblem());
    }
    import.changed.append(_preferencesFile);
    if (before) {
        import.before.append(beforePath(_preferencesFile));
    }
    return {};
}

// One that is not wanted goes back to its default.
void SettingsExchange::setPreferences(const QVariantMap &wanted)
{
    for (const QString &key : _defaults.registeredKeys()) {
        if (!_defaults.isState(key)) {
            _defaults.setObject(key, wanted.value(key));
        }
    }
}

// Also what this version cannot use.
QVariantMap SettingsExchange::preferencesAsStored() const
{
    QVariantMap stored;
    for (const QString &key : _defaults.registeredKeys()) {
        stored.insert(key, _defaults.storedValue(key));
    }
    return stored;
}

QVariantMap SettingsExchange::storedPreferences() const
{
    QVariantMap stored;
    for (const QString &key : _defaults.registeredKeys()) {
        const QVariant value = _defaults.storedValue(key);
        if (_defaults.isUsable(key, value) && !_defaults.isState(key)) {
            stored.insert(key, value);
        }
    }
    return stored;
}
