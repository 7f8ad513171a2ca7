// The icons of a desktop, in two steps: find out which picture stands for a bundle, then turn it
// into pixels.
//
// Both steps may be called from any thread. They are apart so that pictures kept from an earlier
// run can stand in for the second one: a source names the file, and the file's state, that its
// pixels come from. The base class has no icons.

#pragma once

#include <QImage>
#include <QObject>
#include <QString>

// The picture that stands for a bundle.
struct IconSource
{
    // The file that holds the picture; empty when there is none.
    QString file;

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
    // Null and one log line when the file cannot be turned into one.
    virtual QImage decode(const IconSource &source, int size) const;

    // The longer edge in pixels of the picture as it is stored; in a file with several, of the one
    // that suits a square of `size`. 0 when it can be drawn at any size, and, silently, when the
    // file cannot be turned into a picture.
    virtual int storedSize(const IconSource &source, int size) const;

Q_SIGNALS:
    // The same bundles may have other icons now. Emitted on the main thread.
    void iconsChanged();
};
