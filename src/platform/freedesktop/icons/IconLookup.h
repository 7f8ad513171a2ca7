// From the name of an icon to the file that shows it best at a size, in one theme and those behind
// it.
//
// A picture of the folders at the moment of construction. It never changes afterwards, so any
// number of threads may ask at once; when the folders or the theme change, a new one takes its
// place.

#pragma once

#include "platform/freedesktop/base/IconPlaces.h"
#include "platform/freedesktop/icons/IconFolder.h"

#include <QString>
#include <QStringList>

#include <deque>

class IconLookup final
{
public:
    IconLookup(const IconPlaces &places, const QString &themeName);
    Q_DISABLE_COPY_MOVE(IconLookup)

    // The absolute path of a readable file, empty when the icon is nowhere. The first theme of the
    // chain that has the name wins, and in it the directory whose size is nearest; pictures of no
    // theme come last. A name may carry the extension of a picture, which then counts only among
    // pictures of no theme.
    QString find(const QString &name, int size) const;

    // The other readable files of the name, those first that can stand in best for `file` at the
    // size: from the same theme before others, pictures that need not be enlarged before drawings
    // before smaller pictures. Pictures of less than half the size are left out.
    QStringList standIns(const QString &name, int size, const QString &file) const;

    // Two look-ups of equal states give the same answers.
    const QByteArray &state() const { return _state; }
    // Folders and files; a change in one of them may mean that the state is another one.
    const QStringList &watched() const { return _watched; }
    // Of IconCircumstances, as they were when it was made.
    const QByteArray &circumstances() const { return _circumstances; }

private:
    struct Part
    {
        std::vector<IconDirectory> directories;
        std::deque<IconFolder> folders;
    };

    void addTheme(const IconTheme &theme);
    QByteArray findThemed(const QByteArray &name, int size) const;
    QByteArray findUnthemed(const QByteArray &name, unsigned suffixes) const;

    std::deque<Part> _themes;
    std::vector<QByteArray> _unthemedFolders;
    IconListing _unthemed;
    QByteArray _state;
    QStringList _watched;
    QByteArray _circumstances;
};
