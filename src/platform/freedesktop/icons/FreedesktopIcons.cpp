#include "platform/freedesktop/icons/FreedesktopIcons.h"

#include "platform/freedesktop/icons/IconThemeName.h"
#include "platform/freedesktop/icons/IconWatcher.h"
#include "platform/freedesktop/pictures/IconDecoder.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLoggingCategory>

#include <string_view>

namespace {

std::shared_ptr<const IconLookup> made(const IconPlaces &places)
{
    return std::make_shared<const IconLookup>(places, IconThemeName::current(places));
}

} // namespace

FreedesktopIcons::FreedesktopIcons(
    std::function<QString(const QString &)> iconNameOf, QObject *parent)
    : IconProvider(parent)
    , _iconNameOf(std::move(iconNameOf))
    , _places(IconPlaces::fromEnvironment())
    , _firstLookup(std::async(std::launch::async, [places = _places] { return made(places); }))
{ }

FreedesktopIcons::~FreedesktopIcons() = default;

IconSource FreedesktopIcons::resolve(const QString &bundlePath, int size) const
{
    const QString name = _iconNameOf(bundlePath);
    if (name.startsWith(u'/') && QFileInfo::exists(name)) {
        return { name };
    }
    return { lookup()->find(name, size), name };
}

QImage FreedesktopIcons::decode(const IconSource &source, int size) const
{
    QString problem;
    QImage icon = decodeBest(source, size, 0, &problem);
    if (!problem.isEmpty()) {
        logUnreadableIcon(source.file, problem);
    }
    return icon;
}

// The file of the source, or what can stand in for it where it cannot be drawn right.
QImage FreedesktopIcons::decodeBest(
    const IconSource &source, int size, int largestStored, QString *problem) const
{
    bool isFlawed = false;
    QImage icon = tryDecodeIcon(source.file, size, largestStored, problem, &isFlawed);
    if (source.name.isEmpty() || (!icon.isNull() && !isFlawed)) {
        return icon;
    }
    // The others may all be slow to decode, and this icon shall not keep those behind it waiting.
    constexpr int longestSearchMs = 1'000;
    QElapsedTimer search;
    search.start();
    const QStringList others = lookup()->standIns(source.name, size, source.file);
    for (const QString &file : others) {
        if (search.hasExpired(longestSearchMs)) {
            break;
        }
        QString ignored;
        bool isAlsoFlawed = false;
        QImage other = tryDecodeIcon(file, size, largestStored, &ignored, &isAlsoFlawed);
        if (!other.isNull() && !isAlsoFlawed) {
            return other;
        }
    }
    return icon;
}

QImage FreedesktopIcons::tryDecode(
    const IconSource &source, int size, int largestStored, QString *problem) const
{
    return decodeBest(source, size, largestStored, problem);
}

std::shared_ptr<const IconLookup> FreedesktopIcons::lookup() const
{
    const std::scoped_lock lock(_mutex);
    if (!_lookup) {
        _lookup = _firstLookup.get();
    }
    return _lookup;
}

void FreedesktopIcons::startWatching()
{
    _watcher = std::make_unique<IconWatcher>(IconThemeName::schema(_places));
    connect(_watcher.get(), &IconWatcher::touched, this, &FreedesktopIcons::refresh);
    watch();
    // What changed between construction and now went unseen.
    refresh();
}

void FreedesktopIcons::watch()
{
    _watcher->watch(IconThemeName::files(_places) + lookup()->watched());
}

void FreedesktopIcons::refresh()
{
    std::shared_ptr<const IconLookup> fresh = made(_places);
    const bool isOther = fresh->state() != lookup()->state();
    if (isOther) {
        const std::scoped_lock lock(_mutex);
        _lookup.swap(fresh);
    }
    watch();
    if (isOther) {
        Q_EMIT iconsChanged();
    }
}

static QLoggingCategory::CategoryFilter previousFilter = nullptr;

static void filterCategory(QLoggingCategory *category)
{
    previousFilter(category);
    const std::string_view name = category->categoryName();
    for (const std::string_view quiet : { "qt.svg", "qt.gui.imageio", "qt.imageformats" }) {
        // Qt's debug messages are off unless asked for.
        if (name.starts_with(quiet) && !category->isDebugEnabled()) {
            category->setEnabled(QtInfoMsg, false);
            category->setEnabled(QtWarningMsg, false);
            category->setEnabled(QtCriticalMsg, false);
        }
    }
}

void quietImageLibraries()
{
    static std::once_flag done;
    std::call_once(done, [] {
        // The new filter runs for every known category while it is being installed: the one before
        // it must be known by then.
        previousFilter = QLoggingCategory::installFilter(nullptr);
        QLoggingCategory::installFilter(filterCategory);
    });
}
