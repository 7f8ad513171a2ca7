// The part of the store that puts its file together.

#include "icons/store/IconStore.h"
#include "icons/store/Log.h"
#include "support/files/FileLock.h"

#include <QFile>

#include <algorithm>
#include <sys/stat.h>

namespace {

// What was not shown for so many changes of the file makes way.
constexpr quint32 MostRunsUnused = 30;
constexpr qsizetype MostPictures = 10'000;

// The cache folder itself may be missing in a fresh home.
bool makeFolder(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray parent = path.left(path.lastIndexOf('/'));
    ::mkdir(parent.constData(), 0700);
    return ::mkdir(path.constData(), 0700) == 0 || errno == EEXIST;
}

} // namespace

void IconStore::write(const IconProvider &provider)
{
    const QByteArray circumstances = provider.circumstances();
    QString problem;
    FileLock fileLock(_folder);
    if (!makeFolder(_folder)) {
        problem = qt_error_string(errno);
    } else if (!fileLock.lock()) {
        problem = fileLock.error();
    }
    if (problem.isEmpty()) {
        Contents written = contents(circumstances);
        problem = StoreFile::write(path(), written.index, written.icons);
    }
    std::shared_ptr<const StoreFile> file;
    if (problem.isEmpty()) {
        file = StoreFile::open(path(), &problem);
    }
    if (file) {
        takeOver(file);
    } else {
        qCWarning(lcIcons, "cannot write %s: %s", qUtf8Printable(path()), qUtf8Printable(problem));
        const std::lock_guard lock(_mutex);
        _hasFailed = true;
    }
}

// What was used in this run, and then what was used last, up to the limits.
IconStore::Contents IconStore::contents(const QByteArray &circumstances)
{
    const std::lock_guard lock(_mutex);
    _isChanged = false;
    Contents result;
    result.index.run = (_file ? _file->index().run : 0) + 1;
    result.index.circumstances = circumstances;
    QList<PictureRecord> records;
    for (Entry &entry : _entries) {
        entry.record.lastRun = entry.isUsed ? result.index.run : entry.record.lastRun;
        if (result.index.run - entry.record.lastRun <= MostRunsUnused) {
            records.append(entry.record);
        }
    }
    std::sort(
        records.begin(), records.end(), [](const PictureRecord &one, const PictureRecord &other) {
            return one.lastRun > other.lastRun;
        });
    QHash<PictureKey, qint32> numbers;
    qint64 room = StoreFile::MostPictureBytes;
    for (const PictureRecord &record : std::as_const(records)) {
        Entry &entry = _entries[record.key];
        const std::optional<KeptIcon> icon = iconOf(entry);
        const bool isFailure = !entry.isInFile && entry.image.isNull();
        if ((!icon && !isFailure) || room < record.pixelBytes()
            || result.icons.size() >= MostPictures) {
            continue;
        }
        room -= record.pixelBytes();
        numbers.insert(record.key, qint32(result.icons.size()));
        result.index.pictures.append(record);
        result.icons.append(icon.value_or(KeptIcon()));
    }
    for (auto answer = _answers.cbegin(); answer != _answers.cend(); ++answer) {
        const bool hasIcon = !answer->picture.file.isEmpty();
        const qint32 number = hasIcon ? numbers.value(answer->picture, -1) : -1;
        if (answer->isConfirmed && (!hasIcon || number >= 0)) {
            result.index.answers.append({ answer.key().first, answer->stamp, answer.key().second,
                number, result.index.run });
        }
    }
    return result;
}

// The pictures that were made in this run are seen in the file as well from now on, so that those
// in memory can go.
void IconStore::takeOver(const std::shared_ptr<const StoreFile> &file)
{
    const std::lock_guard lock(_mutex);
    _file = file;
    QHash<PictureKey, PictureRecord> records;
    for (const PictureRecord &record : file->index().pictures) {
        records.insert(record.key, record);
    }
    _entries.removeIf([&records](const auto &entry) { return !records.contains(entry.key()); });
    for (auto entry = _entries.begin(); entry != _entries.end(); ++entry) {
        const PictureRecord &record = records[entry.key()];
        if (entry->record.origins == record.origins) {
            entry->record = record;
            entry->isInFile = record.hasPicture();
        }
    }
}
