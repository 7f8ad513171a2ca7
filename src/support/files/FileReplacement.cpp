#include "support/files/FileReplacement.h"

#include "support/files/FileLock.h"
#include "support/files/Log.h"

#include <QDateTime>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMultiMap>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto formerLifetime = std::chrono::milliseconds(24h);
constexpr qsizetype suffixLength = 6;

// Six letters, a capital one after a small one, unlike the names that users give to copies:
// "backup" is none.
bool isSuffix(const QString &text)
{
    static const QRegularExpression letters(QStringLiteral("^(?=.*[a-z].*[A-Z])[A-Za-z]{6}$"));
    return letters.match(text).hasMatch();
}

QByteArray withSuffix(const QByteArray &path)
{
    QString suffix;
    while (!isSuffix(suffix)) {
        suffix.clear();
        while (suffix.size() < suffixLength) {
            const int letter = QRandomGenerator::global()->bounded(2 * 26);
            suffix += QChar(letter < 26 ? 'A' + letter : 'a' + letter - 26);
        }
    }
    return path + '.' + suffix.toLatin1();
}

QString linkTarget(const QString &path)
{
    QFileInfo info(path);
    // As far as the system follows links.
    for (int i = 0; i < 40 && info.isSymLink(); ++i) {
        info.setFile(info.symLinkTarget());
    }
    return info.absoluteFilePath();
}

// Without this a power cut could bring back the old file.
bool syncFolder(const QString &folder)
{
    const int file =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    // Some file systems cannot do this to a folder, and need not.
    const bool isSynced = ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
    const int error = errno;
    ::close(file);
    errno = error;
    return isSynced;
}

bool isFormerRecent(const QFileInfo &former)
{
    const qint64 age = former.lastModified().msecsTo(QDateTime::currentDateTime());
    return former.exists() && age >= 0 && age < formerLifetime.count();
}

// A link costs nothing and needs no space; a file system without links gets a copy. False when
// errno has the reason.
bool linkFormer(const QByteArray &target, const QByteArray &former)
{
    const QByteArray name = withSuffix(former);
    if (::link(target.constData(), name.constData()) != 0) {
        return false;
    }
    // Its age counts from now, not from when it was written.
    const std::array<timespec, 2> times { timespec { 0, UTIME_OMIT }, timespec { 0, UTIME_NOW } };
    ::utimensat(AT_FDCWD, name.constData(), times.data(), 0);
    const bool isInPlace = ::rename(name.constData(), former.constData()) == 0;
    // It is still there when the two were one file already.
    const int error = errno;
    ::unlink(name.constData());
    errno = error;
    return isInPlace;
}

QString copyFormer(const QString &target, const QString &former)
{
    QFile file(target);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    const QByteArray data = file.readAll();
    return file.error() == QFileDevice::NoError ? FileReplacement::replace(former, data)
                                                : file.errorString();
}

// Failing at this is no reason to lose the new content.
void keepFormer(const QString &path, const QString &target)
{
    const QFileInfo former(FileReplacement::formerPath(path));
    const bool isOther = former.isSymLink() || (former.exists() && !former.isFile());
    if (!QFileInfo::exists(target) || isOther || isFormerRecent(former)) {
        return;
    }
    const QString name = former.filePath();
    if (linkFormer(QFile::encodeName(target), QFile::encodeName(name))) {
        return;
    }
    const QString reason = copyFormer(target, name);
    if (!reason.isEmpty()) {
        qCWarning(lcSupport, "cannot keep %s: %s", qUtf8Printable(name), qUtf8Printable(reason));
    }
}

bool isStrayOf(const QString &name, const QString &path)
{
    const QString start = QFileInfo(path).fileName() + QLatin1Char('.');
    return name.startsWith(start) && isSuffix(name.mid(start.size()));
}

QStringList strays(const QStringList &paths)
{
    QMultiMap<QString, QString> pathsByFolder;
    for (const QString &path : paths) {
        for (const QString &file : { path, FileReplacement::formerPath(path),
                 FileReplacement::beforePath(path), linkTarget(path) }) {
            pathsByFolder.insert(QFileInfo(file).absolutePath(), file);
        }
    }
    QStringList found;
    for (const QString &folder : pathsByFolder.uniqueKeys()) {
        const QStringList replaced = pathsByFolder.values(folder);
        // Links are not files of ours, wherever they lead.
        QDirIterator file(folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
        while (file.hasNext()) {
            const QString name = QFileInfo(file.next()).fileName();
            if (std::any_of(replaced.begin(), replaced.end(),
                    [&](const QString &path) { return isStrayOf(name, path); })) {
                found.append(file.filePath());
            }
        }
    }
    return found;
}

} // namespace

// The new file until it is in place; deleted when it does not come to that.
class FileReplacement::Staged::NewFile final
{
public:
    explicit NewFile(QByteArray target)
        : _target(std::move(target))
    { }
    ~NewFile();
    Q_DISABLE_COPY_MOVE(NewFile)

    // Each is false on failure; errno then has the reason.
    bool create();
    bool write(const QByteArray &data);
    bool sync() const { return ::fsync(_file) == 0; }
    bool close();
    bool takePlace();
    QString target() const { return QFile::decodeName(_target); }

private:
    bool takePermissions() const;

    QByteArray _target;
    QByteArray _name;
    int _file = -1;
};

FileReplacement::Staged::NewFile::~NewFile()
{
    if (_file >= 0) {
        ::close(_file);
    }
    if (!_name.isEmpty()) {
        ::unlink(_name.constData());
    }
}

bool FileReplacement::Staged::NewFile::create()
{
    constexpr int maxAttempts = 100;
    for (int attempt = 0; _file < 0 && attempt < maxAttempts; ++attempt) {
        const QByteArray name = withSuffix(_target);
        _file = ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (_file >= 0) {
            _name = name;
        } else if (errno != EEXIST) {
            return false;
        }
    }
    return _file >= 0 && takePermissions();
}

// Those of the old file, as far as this account may give them.
bool FileReplacement::Staged::NewFile::takePermissions() const
{
    struct stat old
    { };
    return ::stat(_target.constData(), &old) != 0 || ::fchmod(_file, old.st_mode & 0777) == 0
        || errno == EPERM;
}

bool FileReplacement::Staged::NewFile::write(const QByteArray &data)
{
    qsizetype written = 0;
    while (written < data.size()) {
        const ssize_t count =
            ::write(_file, data.constData() + written, size_t(data.size() - written));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += count > 0 ? count : 0;
    }
    return true;
}

// A file system over a network may tell only now that the data did not arrive.
bool FileReplacement::Staged::NewFile::close()
{
    return ::close(std::exchange(_file, -1)) == 0 || errno == EINTR;
}

bool FileReplacement::Staged::NewFile::takePlace()
{
    if (::rename(_name.constData(), _target.constData()) != 0) {
        return false;
    }
    _name.clear();
    return true;
}

QString FileReplacement::formerPath(const QString &path)
{
    return path + QStringLiteral(".previous");
}

QString FileReplacement::beforePath(const QString &path)
{
    return path + QStringLiteral(".before");
}

FileReplacement::Staged::Staged(const QString &path, const QByteArray &data, Former former)
    : _path(path)
    , _former(former)
{
    const QString target = linkTarget(path);
    // A device or a pipe would be replaced by a file.
    if (const QFileInfo old(target); old.exists() && !old.isFile()) {
        _error = QStringLiteral(QT_TRANSLATE_NOOP("Reason", "not a regular file"));
        return;
    }
    _file = std::make_unique<NewFile>(QFile::encodeName(target));
    if (!_file->create() || !_file->write(data) || !_file->sync() || !_file->close()) {
        _error = qt_error_string(errno);
        _file.reset();
    }
}

FileReplacement::Staged::~Staged() = default;
FileReplacement::Staged::Staged(Staged &&other) noexcept = default;
FileReplacement::Staged &FileReplacement::Staged::operator=(Staged &&other) noexcept = default;

QString FileReplacement::Staged::takePlace()
{
    const QString target = _file->target();
    if (_former == Former::KeptForADay) {
        keepFormer(_path, target);
    }
    if (!_file->takePlace() || !syncFolder(QFileInfo(target).absolutePath())) {
        return qt_error_string(errno);
    }
    return {};
}

QString FileReplacement::replace(const QString &path, const QByteArray &data, Former former)
{
    Staged file(path, data, former);
    return file.error().isEmpty() ? file.takePlace() : file.error();
}

void FileReplacement::removeStrays(const QStringList &paths)
{
    const QStringList found = strays(paths);
    if (found.isEmpty()) {
        return;
    }
    FileLock lock(QFileInfo(paths.first()).absolutePath());
    if (lock.lock(0ms)) {
        for (const QString &name : found) {
            QFile::remove(name);
        }
    }
}
