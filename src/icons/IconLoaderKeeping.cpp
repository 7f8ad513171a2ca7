// The part of the loader that has to do with icons kept from one run to the next.

#include "icons/IconLoader.h"
#include "icons/store/IconStore.h"
#include "platform/IconProvider.h"

#include <QSocketNotifier>

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

// Behind all that is seen.
constexpr int CheckingPriority = -1;
constexpr int KeepingPriority = -2;
// Before anything else.
constexpr int PreparingPriority = 2;

// On one thread: one that hangs leaves the others their check.
constexpr size_t CheckedTogether = 64;

} // namespace

void IconLoader::keepIcons(const std::shared_ptr<IconStore> &store, const IconProvider &provider)
{
    _store = store;
    _keptFrom = &provider;
    _store->willPrepare();
    _queue.start([store, &provider] { store->prepare(provider); }, PreparingPriority);
    // Before all who ask for icons again then.
    connect(&provider, &IconProvider::iconsChanged, this, [this] {
        if (_store) {
            _store->forgetThemed();
        }
    });
    if (const int descriptor = MappedFile::alarm(); descriptor >= 0) {
        _alarm = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        connect(_alarm.get(), &QSocketNotifier::activated, this, &IconLoader::storeDidBreak);
    }
}

void IconLoader::stopKeeping()
{
    if (!_store) {
        return;
    }
    _keepDelay.stop();
    _checkDelay.stop();
    _alarm.reset();
    disconnect(_keptFrom, nullptr, this, nullptr);
    if (cancelAll() && !_areChecksCut && _store->isChanged()) {
        _store->write(*_keptFrom);
    }
    _store = nullptr;
    _keptFrom = nullptr;
}

std::shared_ptr<IconStore> IconLoader::storeFor(const IconProvider &provider) const
{
    return &provider == _keptFrom ? _store : nullptr;
}

bool IconLoader::isAtHand(const IconLoadOperation &operation, const IconProvider &provider)
{
    const std::shared_ptr<IconStore> store = storeFor(provider);
    const std::optional<KeptIcon> kept =
        store ? store->atHand(operation.filePath, operation.size) : std::nullopt;
    if (!kept) {
        return false;
    }
    _handed.push_back({ operation, &provider, kept->image });
    _checkDelay.start();
    operation.receiver(IconFetch::loaded(*kept));
    return true;
}

void IconLoader::checkHanded()
{
    _store->endAtHand();
    const std::vector<Handed> handed = std::exchange(_handed, {});
    for (size_t i = 0; i < handed.size(); i += CheckedTogether) {
        const auto first = handed.begin() + std::ptrdiff_t(i);
        const auto last =
            handed.begin() + std::ptrdiff_t(std::min(handed.size(), i + CheckedTogether));
        ++_checkCount;
        _queue.start([this, part = std::vector<Handed>(first, last), store = _store,
                         cancellations = _cancellations] { check(part, *store, cancellations); },
            CheckingPriority);
    }
}

bool IconLoader::isCancelled(quint64 cancellations)
{
    const std::lock_guard lock(_mutex);
    return cancellations != _cancellations;
}

// Asks for icons in the usual way. The store gives the very picture that was handed over, unless
// that is out of date.
void IconLoader::check(const std::vector<Handed> &handed, IconStore &store, quint64 cancellations)
{
    std::vector<Other> others;
    for (const Handed &one : handed) {
        if (isCancelled(cancellations)) {
            return;
        }
        const IconLoadOperation &operation = one.operation;
        LoadedIcon icon =
            IconFetch::load(operation.filePath, operation.size, *one.provider, &store);
        if (icon.image.isNull() != one.image.isNull()
            || icon.image.cacheKey() != one.image.cacheKey()) {
            others.push_back({ operation.receiver, std::move(icon) });
        }
    }
    const std::lock_guard lock(_mutex);
    if (cancellations == _cancellations) {
        _checked.push_back({ std::move(others), cancellations });
        QMetaObject::invokeMethod(this, &IconLoader::takeChecked, Qt::QueuedConnection);
    }
}

void IconLoader::takeChecked()
{
    Checked checked;
    {
        const std::lock_guard lock(_mutex);
        checked = std::move(_checked.front());
        _checked.pop_front();
    }
    const quint64 cancellations = checked.cancellations;
    if (cancellations == _cancellations) {
        --_checkCount;
    }
    for (auto &[receiver, icon] : checked.others) {
        if (cancellations == _cancellations) {
            receiver(std::move(icon));
        }
    }
    if (cancellations == _cancellations && _pendingCount == 0 && !areChecksDue()) {
        _keepDelay.start();
        Q_EMIT finished();
    }
}

void IconLoader::keepNewIcons()
{
    if (!_store || _pendingCount > 0 || areChecksDue()) {
        return;
    }
    if (_store->isChanged()) {
        _areCopiesSpare = true;
        _queue.start(
            [store = _store, provider = _keptFrom] { store->write(*provider); }, KeepingPriority);
    } else if (!_areCopiesSpare) {
        _store->rest();
    }
}

void IconLoader::giveUpCopies()
{
    if (_store && !_store->isChanged() && std::exchange(_areCopiesSpare, false)) {
        Q_EMIT copiesSpare();
        _store->rest();
    }
}

QImage IconLoader::kept(const QImage &icon) const
{
    return _store ? _store->kept(icon.cacheKey()) : QImage();
}

QImage IconLoader::keptScaled(const QImage &icon, int edge) const
{
    return _store ? _store->findScaled(icon.cacheKey(), edge) : QImage();
}

void IconLoader::keepScaled(const QImage &icon, const QImage &scaled)
{
    if (_store) {
        _store->keepScaled(icon.cacheKey(), scaled);
        _keepDelay.start();
    }
}

void IconLoader::storeDidBreak()
{
    quint64 count = 0;
    [[maybe_unused]] const ssize_t taken = ::read(MappedFile::alarm(), &count, sizeof(count));
    _handed.clear();
    _store->forgetFile();
    Q_EMIT iconsLost();
}
