#include "icons/IconFetch.h"

#include "icons/store/IconStore.h"
#include "icons/store/Log.h"

#include <QMutex>
#include <QSet>

namespace {

// Once: an application without an icon is looked at again in each scan.
void logMissingIcon(const QString &path)
{
    static QMutex mutex;
    static QSet<QString> logged;
    const QMutexLocker lock(&mutex);
    if (!logged.contains(path)) {
        logged.insert(path);
        qCWarning(lcIcons, "IconLoader::run Error loading icon for path: %s", qUtf8Printable(path));
    }
}

LoadedIcon pictureOf(
    const IconSource &source, int size, const IconProvider &provider, IconStore *store)
{
    if (store == nullptr) {
        return { provider.decode(source, size), {} };
    }
    if (const std::optional<KeptIcon> kept = store->find(source, size)) {
        return IconFetch::loaded(*kept);
    }
    const qint64 before = FileStamp::now();
    const DecodedIcon decoded = provider.decodeFrom(source, size);
    store->keep(source, size, decoded, before);
    return { decoded.image, {} };
}

} // namespace

LoadedIcon IconFetch::loaded(const KeptIcon &kept)
{
    LoadedIcon icon { kept.image, {} };
    if (kept.question) {
        icon.measurement.isMeasured = true;
        icon.measurement.minSaturation = kept.question->minSaturation;
        icon.measurement.minLuminosity = kept.question->minLuminosity;
        icon.measurement.colors = HclColors::uninitialized(std::size_t(kept.colors.size()));
        std::copy(kept.colors.begin(), kept.colors.end(), icon.measurement.colors.begin());
    }
    return icon;
}

LoadedIcon IconFetch::load(
    const QString &bundle, int size, const IconProvider &provider, IconStore *store)
{
    const qint64 before = FileStamp::now();
    const FileStamp stamp = store != nullptr ? FileStamp::of(bundle) : FileStamp();
    const IconSource source = provider.resolve(bundle, size);
    if (store != nullptr) {
        store->keepAnswer(bundle, stamp, size, source, before);
    }
    if (source.isNull()) {
        logMissingIcon(bundle);
        return {};
    }
    return pictureOf(source, size, provider, store);
}
