// The icons of a desktop, in two steps: find out which picture stands for a bundle, then turn it
// into pixels.
//
// Finding and decoding may be used from any thread. The two steps are apart so that pictures kept
// from an earlier run can stand in for the second one: a source names the file, and the file's
// state, that its pixels come from. The base class has no icons.

#pragma once

#include <QImage>
#include <QObject>
#include <QString>

// The picture that stands for a bundle.
struct IconSource
{
    // The file that holds the picture; empty when there is none.
    QString file;
    // What the file was found by, so that others can stand in for it; empty for a file of the
    // bundle's own.
    QString name = {};

    bool isNull() const { return file.isEmpty(); }
};

class IconProvider : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // The best source for a bundle's icon at `size` × `size` pixels. Null when it has
    // none.
    virtual IconSource resolve(const QString &bundlePath, int size) const;

    // The picture, fitted and centred in a square of `size` pixels, 8 bits a sample, premultiplied.
    // One log line when the file cannot be turned into one. In its place, and without a log line in
    // that of a drawing that would come out wrong, stands another picture of that name; without one
    // it is null.
    virtual QImage decode(const IconSource &source, int size) const;

    // The same for a look at the picture as it is stored: with `largestStored` above 0, one that
    // has pixels of its own keeps its size up to that edge, in a square as large as its longer
    // edge. A drawing without pixels is drawn at `size`. Null and silent, with the reason, when the
    // file cannot be turned into a picture.
    virtual QImage tryDecode(
        const IconSource &source, int size, int largestStored, QString *problem) const;

    // Begins to look for what changes the icons, and emits iconsChanged() when something has since
    // this was made. Takes longer than finding icons does, and is left to when there is time.
    virtual void startWatching() { }

Q_SIGNALS:
    // The same bundles may have other icons now. Emitted on the main thread,
    // after startWatching() alone.
    void iconsChanged();
};
