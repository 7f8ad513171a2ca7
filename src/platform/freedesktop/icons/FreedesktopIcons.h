// The icons of a freedesktop desktop: names looked up in the user's icon theme, files turned into
// pixels.
//
// Belongs to the main thread, where it notices another theme or new icons while the event loop
// runs, a moment after it was told to. Everything that reads may be called from any thread
// meanwhile. The theme is read with the first question that needs it: a start whose icons are all
// at hand shows them before that.

#pragma once

#include "platform/IconProvider.h"
#include "platform/freedesktop/base/IconPlaces.h"
#include "platform/freedesktop/icons/IconLookup.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>

class IconWatcher;

class FreedesktopIcons : public IconProvider
{
    Q_OBJECT

public:
    // `iconNameOf` tells what a bundle says its icon is: a name in the theme, the absolute path of
    // a picture, or empty. It is called from the thread that asks.
    explicit FreedesktopIcons(
        std::function<QString(const QString &bundlePath)> iconNameOf, QObject *parent = nullptr);
    ~FreedesktopIcons() override;

    IconSource resolve(const QString &bundlePath, int size) const override;
    QImage decode(const IconSource &source, int size) const override;
    DecodedIcon decodeFrom(const IconSource &source, int size) const override;
    QByteArray circumstances() const override;
    bool areStill(const QByteArray &circumstances) const override;
    QImage tryDecode(
        const IconSource &source, int size, int largestStored, QString *problem) const override;
    void startWatching() override;

private:
    // Watching reads the theme, which a start must not wait for.
    static constexpr std::chrono::milliseconds WatchDelay { 500 };

    DecodedIcon decodeBest(
        const IconSource &source, int size, int largestStored, QString *problem) const;
    std::shared_ptr<const IconLookup> lookup() const;
    void watchFirst();
    void watch();
    void refresh();

    const std::function<QString(const QString &)> _iconNameOf;
    const IconPlaces _places;
    mutable std::mutex _mutex;
    // Only the pointer and the name are guarded; a look-up that is held needs no lock. Null until
    // it is needed.
    mutable std::shared_ptr<const IconLookup> _lookup;
    QString _themeName;
    std::unique_ptr<IconWatcher> _watcher;
};

// Keeps the picture libraries from printing lines of their own about files they cannot read:
// the decoder says so in one. A category that was asked for explicitly (QT_LOGGING_RULES) is
// left alone. Process-wide; calling it again changes nothing.
void quietImageLibraries();
