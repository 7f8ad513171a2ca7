#include "catalogue/files/SettingsExchange.h"

#include "catalogue/files/CatalogueFiles.h"
#include "support/UserDefaults.h"
#include "support/files/FileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <memory>
#include <optional>
#include <vector>

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

QString writeInto(const QString &device, const QByteArray &data)
{
    QFile file(device);
    const bool isWritten =
        file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write(data) == data.size();
    return isWritten ? QString() : file.errorString();
}

// The new content of a file, and what it is now, as NAME.before.
struct Replacement
{
    Replacement(const QString &path, const QVariant &wanted, const std::optional<QByteArray> &now)
        : file(path, PropertyList::toXml(wanted), FileReplacement::Former::KeptForADay)
    {
        if (now) {
            before.emplace(FileReplacement::beforePath(path), *now);
        }
    }
    // Empty when all of it is on the disk.
    QString error() const
    {
        const auto reason = [](const FileReplacement::Staged &staged) {
            return staged.error().isEmpty() ? QString() : sentence(staged.path(), staged.error());
        };
        const QString own = reason(file);
        return own.isEmpty() && before ? reason(*before) : own;
    }

    FileReplacement::Staged file;
    std::optional<FileReplacement::Staged> before;
};

QString putInPlace(FileReplacement::Staged &staged)
{
    const QString reason = staged.takePlace();
    return reason.isEmpty() ? QString() : sentence(staged.path(), reason);
}

} // namespace

// On the folders of all the files, which may be one.
class SettingsExchange::Locks final
{
public:
    explicit Locks(const QStringList &folders)
    {
        QSet<QString> locked;
        for (const QString &folder : folders) {
            QDir().mkpath(folder);
            const QString place = QFileInfo(folder).canonicalFilePath();
            if (locked.contains(place) || !_error.isEmpty()) {
                continue;
            }
            locked.insert(place);
            auto &lock = *_locks.emplace_back(std::make_unique<FileLock>(folder));
            if (!lock.lock()) {
                _error = sentence(folder, lock.error());
            }
        }
    }

    // Empty when they are held.
    const QString &error() const { return _error; }

private:
    std::vector<std::unique_ptr<FileLock>> _locks;
    QString _error;
};

SettingsExchange::SettingsExchange(const SearchPaths &searchPaths, UserDefaults &defaults)
    : _dataFolder(CatalogueFiles::userFolder(searchPaths))
    , _preferencesFile(searchPaths.configurationFile(QStringLiteral("Preferences.plist")))
    , _defaults(defaults)
{ }

QStringList SettingsExchange::ownFiles() const
{
    QStringList paths;
    for (const QString &part : dataFiles()) {
        paths.append(fileOf(_dataFolder, part));
    }
    if (!_preferencesFile.isEmpty()) {
        paths.append(_preferencesFile);
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
    if (!_preferencesFile.isEmpty()) {
        readDictionary(_preferencesFile, error);
    }
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

SettingsExchange::Import SettingsExchange::importFrom(const QString &file) const
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

SettingsExchange::Import SettingsExchange::importData(const QByteArray &data) const
{
    Import import;
    const std::optional<QVariant> value = PropertyList::fromData(data, &import.error);
    return value ? take(*value) : import;
}

SettingsExchange::Import SettingsExchange::take(const QVariant &value) const
{
    Import import;
    const auto document =
        SettingsDocument::fromPropertyList(value, _defaults, &import.error, &import.leftOut);
    if (!document) {
        return import;
    }
    replaceFiles(*document, import);
    if (import.error.isEmpty() && document->preferences && _preferencesFile.isEmpty()) {
        setPreferences(*document->preferences);
    }
    if (import.error.isEmpty() && !import.changed.isEmpty()) {
        // Together the files NAME.before are what was before this import, and not before an
        // earlier one. What is as wanted already may be so by an import that was cut off a moment
        // ago.
        for (const QString &path : filesLeftOut(*document)) {
            QFile::remove(FileReplacement::beforePath(path));
        }
    }
    return import;
}

QStringList SettingsExchange::filesLeftOut(const SettingsDocument &document) const
{
    const QVariantMap parts = document.propertyList().toMap();
    QStringList paths;
    for (const QString &part : dataFiles()) {
        if (!parts.contains(part)) {
            paths.append(fileOf(_dataFolder, part));
        }
    }
    if (!document.preferences && !_preferencesFile.isEmpty()) {
        paths.append(_preferencesFile);
    }
    return paths;
}

QList<SettingsExchange::File> SettingsExchange::filesToChange(
    const SettingsDocument &document) const
{
    const QVariantMap parts = document.propertyList().toMap();
    QList<File> files;
    for (const QString &part : dataFiles()) {
        const QString path = fileOf(_dataFolder, part);
        if (parts.contains(part) && !holds(path, parts.value(part))) {
            files.append({ path, parts.value(part) });
        }
    }
    if (document.preferences && !_preferencesFile.isEmpty()
        && *document.preferences != storedPreferences()) {
        files.append({ _preferencesFile, preferencesWith(*document.preferences) });
    }
    return files;
}

// What the file holds beside them stays: the state of the program, and what another version keeps.
// One that is not wanted goes back to its default.
QVariantMap SettingsExchange::preferencesWith(const QVariantMap &wanted) const
{
    QVariantMap result = PropertyList::readFile(_preferencesFile).value.toMap();
    for (const QString &key : _defaults.registeredKeys()) {
        if (wanted.contains(key)) {
            result.insert(key, wanted.value(key));
        } else if (!_defaults.isState(key)) {
            result.remove(key);
        }
    }
    return result;
}

// Where there is no file for them, they hold until the program ends.
void SettingsExchange::setPreferences(const QVariantMap &wanted) const
{
    for (const QString &key : _defaults.registeredKeys()) {
        if (!_defaults.isState(key)) {
            _defaults.setObject(key, wanted.value(key));
        }
    }
}

void SettingsExchange::replaceFiles(const SettingsDocument &document, Import &import) const
{
    if (document.preferences && !_defaults.synchronize()) {
        import.error = sentence(_preferencesFile, _defaults.writeProblem());
        return;
    }
    if (filesToChange(document).isEmpty()) {
        return;
    }
    QStringList folders { _dataFolder };
    if (!_preferencesFile.isEmpty()) {
        folders.append(QFileInfo(_preferencesFile).absolutePath());
    }
    const Locks locks(folders);
    import.error = locks.error();
    std::vector<Replacement> replacements;
    const QList<File> files = filesToChange(document);
    for (const File &file : files) {
        if (import.error.isEmpty()) {
            const std::optional<QByteArray> now = bytesOf(file.path, &import.error);
            import.error = import.error.isEmpty()
                ? replacements.emplace_back(file.path, file.wanted, now).error()
                : import.error;
        }
    }
    for (Replacement &replacement : replacements) {
        if (import.error.isEmpty() && replacement.before) {
            import.error = putInPlace(*replacement.before);
            import.before.append(replacement.before->path());
        }
    }
    for (Replacement &replacement : replacements) {
        if (import.error.isEmpty()) {
            import.error = putInPlace(replacement.file);
            if (import.error.isEmpty()) {
                import.changed.append(replacement.file.path());
            }
        }
    }
    if (!import.error.isEmpty() && !import.changed.isEmpty()) {
        import.error += QStringLiteral("; changed before that: %1")
                            .arg(import.changed.join(QStringLiteral(", ")));
    }
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
