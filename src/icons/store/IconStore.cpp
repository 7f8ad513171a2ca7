#include "icons/store/IconStore.h"

#include "icons/store/Log.h"

#include <algorithm>

namespace {

// As it would be seen in the file.
bool isKeepable(const QImage &image, const PictureKey &key)
{
    const int edge = key.edge();
    return image.size() == QSize(edge, edge) && edge <= StoreIndex::LargestSize
        && image.format() == QImage::Format_ARGB32_Premultiplied
        && image.bytesPerLine() == qsizetype(edge) * 4 && image.devicePixelRatio() == 1;
}

} // namespace

IconStore::IconStore(QString folder)
    : _folder(std::move(folder))
{ }

void IconStore::willPrepare()
{
    const std::lock_guard lock(_mutex);
    _isPreparing = true;
}

void IconStore::prepare(const IconProvider &provider)
{
    open(Run::Former);
    std::shared_ptr<const StoreFile> file;
    {
        const std::lock_guard lock(_mutex);
        file = _file;
    }
    if (file && provider.areStill(file->index().circumstances)) {
        collectAtHand(*file);
    } else {
        forgetThemed();
    }
    const std::lock_guard lock(_mutex);
    _isPreparing = false;
    _hasPrepared.notify_all();
}

void IconStore::open(Run lastWriter)
{
    QString problem;
    const std::shared_ptr<const StoreFile> file = StoreFile::open(path(), &problem);
    if (!problem.isEmpty()) {
        qCWarning(lcIcons, "cannot use %s: %s", qUtf8Printable(path()), qUtf8Printable(problem));
    }
    if (!file) {
        return;
    }
    const std::lock_guard lock(_mutex);
    _file = file;
    const StoreIndex &index = file->index();
    for (const PictureRecord &record : index.pictures) {
        // One that was made meanwhile is newer.
        if (!_entries.contains(record.key)) {
            Entry &entry = _entries[record.key];
            entry.record = record;
            entry.isInFile = record.hasPicture();
            entry.isUsed = lastWriter == Run::Present && record.lastRun == index.run;
        }
    }
    for (const AnswerRecord &record : index.answers) {
        const Place place(record.bundle, record.size);
        if (!_answers.contains(place)) {
            const PictureKey key =
                record.picture < 0 ? PictureKey() : index.pictures[record.picture].key;
            _answers.insert(place, { record.stamp, key, lastWriter == Run::Present });
        }
    }
}

void IconStore::wake()
{
    {
        const std::lock_guard lock(_mutex);
        if (!std::exchange(_isResting, false)) {
            return;
        }
    }
    open(Run::Present);
}

void IconStore::rest()
{
    const std::lock_guard lock(_mutex);
    if (_isPreparing || (_isChanged && !_hasFailed) || !_file || !_atHand.isEmpty()) {
        return;
    }
    _isResting = true;
    _file = nullptr;
    _entries = {};
    _answers = {};
    _keys = {};
}

QImage IconStore::kept(qint64 picture) const
{
    const std::lock_guard lock(_mutex);
    const auto entry = _entries.constFind(_keys.value(picture));
    const bool isSame = entry != _entries.constEnd() && entry->isInFile
        && entry->image.cacheKey() == picture && _file;
    return isSame ? _file->icon(entry->record).image : QImage();
}

bool IconStore::areOriginsUnchanged(const PictureRecord &record) const
{
    return std::all_of(record.origins.begin(), record.origins.end(),
        [](const IconOrigin &origin) { return FileStamp::of(origin.file) == origin.stamp; });
}

// What the last run that wrote the file has shown. No lock is held while a disk is waited for.
void IconStore::collectAtHand(const StoreFile &file)
{
    const StoreIndex &index = file.index();
    for (const AnswerRecord &answer : index.answers) {
        if (answer.lastRun != index.run || FileStamp::of(answer.bundle) != answer.stamp) {
            continue;
        }
        KeptIcon icon;
        if (answer.picture >= 0) {
            const PictureRecord &record = index.pictures[answer.picture];
            if (!areOriginsUnchanged(record)) {
                continue;
            }
            icon = file.icon(record);
            if (record.hasPicture() && icon.image.isNull()) {
                continue;
            }
        }
        const std::lock_guard lock(_mutex);
        if (answer.picture >= 0) {
            const auto entry = _entries.find(index.pictures[answer.picture].key);
            if (entry != _entries.end() && entry->image.isNull()) {
                entry->image = icon.image;
                _keys.insert(icon.image.cacheKey(), entry.key());
            } else if (entry != _entries.end()) {
                // Two bundles show one picture.
                icon.image = entry->image;
            }
        }
        _atHand.insert({ answer.bundle, answer.size }, icon);
    }
}

std::optional<KeptIcon> IconStore::atHand(const QString &bundle, int size)
{
    std::unique_lock lock(_mutex);
    if (_isPreparing && !_hasWaited) {
        _hasPrepared.wait_for(lock, LongestWait, [this] { return !_isPreparing; });
        _hasWaited = true;
    }
    const auto found = _atHand.constFind({ bundle, size });
    return found == _atHand.constEnd() ? std::nullopt : std::optional(*found);
}

void IconStore::endAtHand()
{
    const std::lock_guard lock(_mutex);
    _atHand = {};
}

void IconStore::forgetThemed()
{
    wake();
    const std::lock_guard lock(_mutex);
    _atHand = {};
    _entries.removeIf([](const auto &entry) { return entry.value().record.isThemed; });
    _answers = {};
    _isChanged = true;
}

// The picture of an entry as it was first handed out.
std::optional<KeptIcon> IconStore::iconOf(Entry &entry) const
{
    KeptIcon icon { entry.image, entry.question, entry.colors };
    if (entry.isInFile && _file) {
        icon = _file->icon(
            entry.record, entry.image.isNull() ? StoreFile::Check::Due : StoreFile::Check::Done);
        if (icon.image.isNull()) {
            return std::nullopt;
        }
        if (!entry.image.isNull()) {
            icon.image = entry.image;
        }
        if (entry.question) {
            icon.question = entry.question;
            icon.colors = entry.colors;
        }
    }
    return icon.image.isNull() ? std::nullopt : std::optional(icon);
}

std::optional<KeptIcon> IconStore::find(const IconSource &source, int size)
{
    wake();
    const PictureKey key { source.file, source.name, size };
    PictureRecord record;
    {
        const std::lock_guard lock(_mutex);
        const auto entry = _entries.constFind(key);
        if (entry == _entries.constEnd()) {
            return std::nullopt;
        }
        record = entry->record;
    }
    const bool isUnchanged = areOriginsUnchanged(record);
    const std::lock_guard lock(_mutex);
    const auto entry = _entries.find(key);
    if (entry == _entries.end() || entry->record.origins != record.origins) {
        return std::nullopt;
    }
    std::optional<KeptIcon> icon;
    if (isUnchanged) {
        icon = iconOf(*entry);
    }
    if (!icon && isUnchanged && !entry->isInFile) {
        // It failed the last time, and may not do so now.
        return std::nullopt;
    }
    if (!icon) {
        _entries.erase(entry);
        return std::nullopt;
    }
    entry->isUsed = true;
    entry->image = icon->image;
    _keys.insert(icon->image.cacheKey(), key);
    return icon;
}

void IconStore::keep(const IconSource &source, int size, const DecodedIcon &icon, qint64 before)
{
    const auto &[image, origins, isThemed] = icon;
    const bool isSettled =
        std::all_of(origins.begin(), origins.end(), [before](const IconOrigin &origin) {
            return origin.stamp.exists() && origin.stamp.hasSettledBy(before);
        });
    PictureRecord record;
    record.key = { source.file, source.name, size };
    record.origins = origins;
    record.isThemed = isThemed;
    if ((!image.isNull() && !isKeepable(image, record.key)) || !isSettled || origins.isEmpty()
        || !areOriginsUnchanged(record)) {
        return;
    }
    const std::lock_guard lock(_mutex);
    // An application that is a folder has no answer that could be kept.
    _isUsed = true;
    Entry &entry = _entries[record.key];
    // One that failed again is nothing new.
    _isChanged = _isChanged || !image.isNull() || entry.record.origins != origins;
    entry = {};
    entry.record = record;
    entry.image = image;
    entry.isUsed = true;
    if (!image.isNull()) {
        _keys.insert(image.cacheKey(), record.key);
    }
}

void IconStore::keepColors(qint64 picture, const HclColors &colors, const ColorQuestion &question)
{
    const std::lock_guard lock(_mutex);
    const auto entry = _entries.find(_keys.value(picture));
    if (entry != _entries.end() && entry->image.cacheKey() == picture) {
        entry->question = question;
        entry->colors = QList<HclColor>(colors.begin(), colors.end());
        _isChanged = true;
    }
}

QImage IconStore::findScaled(qint64 picture, int edge)
{
    const std::lock_guard lock(_mutex);
    PictureKey key = _keys.value(picture);
    const auto original = _entries.constFind(key);
    key.scaled = edge;
    const auto entry = _entries.find(key);
    if (original == _entries.constEnd() || entry == _entries.end()
        || entry->record.origins != original->record.origins) {
        return {};
    }
    const std::optional<KeptIcon> icon = iconOf(*entry);
    if (!icon) {
        return {};
    }
    entry->isUsed = true;
    return icon->image;
}

void IconStore::keepScaled(qint64 picture, const QImage &scaled)
{
    const std::lock_guard lock(_mutex);
    PictureKey key = _keys.value(picture);
    const auto original = _entries.constFind(key);
    key.scaled = scaled.width();
    if (original == _entries.constEnd() || original->image.cacheKey() != picture
        || !isKeepable(scaled, key)) {
        return;
    }
    Entry entry;
    entry.record = original->record;
    entry.record.key = key;
    entry.record.offset = 0;
    entry.image = scaled;
    entry.isUsed = true;
    _entries.insert(key, entry);
    _isChanged = true;
}

void IconStore::keepAnswer(const QString &bundle, const FileStamp &stamp, int size,
    const IconSource &source, qint64 before)
{
    // A folder says nothing of what is in it.
    if (!stamp.isRegular || !stamp.hasSettledBy(before)) {
        return;
    }
    const PictureKey key =
        source.isNull() ? PictureKey() : PictureKey { source.file, source.name, size };
    wake();
    const std::lock_guard lock(_mutex);
    _isUsed = true;
    Answer &answer = _answers[{ bundle, size }];
    _isChanged = _isChanged || answer.stamp != stamp || answer.picture != key;
    answer = { stamp, key, true };
}

bool IconStore::isChanged() const
{
    const std::lock_guard lock(_mutex);
    return _isChanged && _isUsed && !_hasFailed;
}

void IconStore::forgetFile()
{
    const std::lock_guard lock(_mutex);
    _isResting = false;
    _atHand = {};
    _file = nullptr;
    _entries = {};
    _keys = {};
    _isChanged = true;
}
