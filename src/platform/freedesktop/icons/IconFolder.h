// The part of a theme that lies in one base folder, searched by its index where that is up to date
// and by its listed directories elsewhere. Safe to use from several threads.

#pragma once

#include "platform/freedesktop/icons/IconListing.h"
#include "platform/freedesktop/icons/IconTheme.h"
#include "platform/freedesktop/icons/IconThemeCache.h"

#include <QStringList>

class IconFolder final
{
public:
    // The theme's directories give the numbers that find() speaks of.
    IconFolder(const QString &path, const std::vector<IconDirectory> &directories);

    const QByteArray &path() const { return _path; }
    // Where a name without its extension stands. An index may name a file that is gone since.
    IconImages find(const QByteArray &name) const;

    // Differs whenever pictures have come or gone.
    const QByteArray &state() const { return _state; }
    // The folders in which changes of the state begin.
    const QStringList &watched() const { return _watched; }

private:
    void useCache(const std::vector<IconDirectory> &directories);
    void useListing(const std::vector<IconDirectory> &directories);

    const QByteArray _path;
    std::unique_ptr<const IconThemeCache> _cache;
    std::unique_ptr<const IconListing> _listing;
    // From the numbers of cache or listing to those of the theme, -1 for a directory it does not
    // describe.
    std::vector<int> _directories;
    QByteArray _state;
    QStringList _watched;
};
