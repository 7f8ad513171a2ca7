#include "platform/freedesktop/icons/FreedesktopIcons.h"

#include "platform/freedesktop/icons/IconCircumstances.h"
#include "platform/freedesktop/icons/IconThemeName.h"
#include "platform/freedesktop/icons/IconWatcher.h"
#include "platform/freedesktop/pictures/IconDecoder.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QTimer>

#include <string_view>

FreedesktopIcons::FreedesktopIcons(
    std::function<QString(const QString &)> iconNameOf, QObject *parent)
    : IconProvider(parent)
    , _iconNameOf(std::move(iconNameOf))
    , _places(IconPlaces::fromEnvironment())
    , _themeName(IconThemeName::current(_places))
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
    return decodeFrom(source, size).image;
}

DecodedIcon FreedesktopIcons::decodeFrom(const IconSource &source, int size) const
{
    QString problem;
    DecodedIcon icon = decodeBest(source, size, 0, &problem);
    if (!problem.isEmpty()) {
        logUnreadableIcon(source.file, problem);
    }
    return icon;
}

// The file of the source, or what can stand in for it where it cannot be drawn right.
DecodedIcon FreedesktopIcons::decodeBest(
    const IconSource &source, int size, int largestStored, QString *problem) const
{
    DecodedIcon icon;
    icon.origins.append({ source.file, FileStamp::of(source.file) });
    bool isFlawed = false;
    icon.image = tryDecodeIcon(source.file, size, largestStored, problem, &isFlawed);
    if (source.name.isEmpty() || (!icon.image.isNull() && !isFlawed)) {
        return icon;
    }
    icon.isThemed = true;
    // The others may all be slow to decode, and this icon shall not keep those behind it waiting.
    constexpr int longestSearchMs = 1'000;
    QElapsedTimer search;
    search.start();
    const QStringList others = lookup()->standIns(source.name, size, source.file);
    for (const QString &file : others) {
        if (search.hasExpired(longestSearchMs)) {
            icon.origins.clear();
            break;
        }
        icon.origins.append({ file, FileStamp::of(file) });
        QString ignored;
        bool isAlsoFlawed = false;
        QImage other = tryDecodeIcon(file, size, largestStored, &ignored, &isAlsoFlawed);
        if (!other.isNull() && !isAlsoFlawed) {
            icon.image = other;
            break;
        }
    }
    return icon;
}

QImage FreedesktopIcons::tryDecode(
    const IconSource &source, int size, int largestStored, QString *problem) const
{
    return decodeBest(source, size, largestStored, problem).image;
}

QByteArray FreedesktopIcons::circumstances() const
{
    return lookup()->circumstances();
}

bool FreedesktopIcons::areStill(const QByteArray &circumstances) const
{
    QString themeName;
    {
        const std::scoped_lock lock(_mutex);
        themeName = _themeName;
    }
    return IconCircumstances::areStill(circumstances, _places, themeName);
}

std::shared_ptr<const IconLookup> FreedesktopIcons::lookup() const
{
    const std::scoped_lock lock(_mutex);
    if (!_lookup) {
        _lookup = std::make_shared<const IconLookup>(_places, _themeName);
    }
    return _lookup;
}

void FreedesktopIcons::startWatching()
{
    QTimer::singleShot(WatchDelay, this, &FreedesktopIcons::watchFirst);
}

void FreedesktopIcons::watchFirst()
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
    const QString themeName = IconThemeName::current(_places);
    auto fresh = std::make_shared<const IconLookup>(_places, themeName);
    bool isOther = false;
    {
        const std::scoped_lock lock(_mutex);
        // Answers kept from an earlier run may be in use before the theme has been read.
        isOther = themeName != _themeName || (_lookup && _lookup->state() != fresh->state());
        if (isOther || !_lookup) {
            _lookup.swap(fresh);
        }
        _themeName = themeName;
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
