// The icons of a desktop, in two steps: find out which picture stands for a bundle, then turn it
// into pixels.
//
// Finding and decoding may be used from any thread. The two steps are apart so that pictures kept
// from an earlier run can stand in for the second one: what they were made from is told with them.
// Answers of the first one can be kept as well, with the circumstances in which they were given.
// The base class has no icons.

#pragma once

#include "support/files/FileStamp.h"

#include <QByteArray>
#include <QImage>
#include <QList>
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

// A file that a picture was made from, as it was just before it was read.
struct IconOrigin
{
    QString file;
    FileStamp stamp;

    bool operator==(const IconOrigin &other) const = default;
};

struct DecodedIcon
{
    QImage image;
    // Every file that has a say in the result, the source's first: while all of these are as they
    // were, the result would be the same. Empty when it may be another one all the same.
    QList<IconOrigin> origins;
    // It would be the same only in the same circumstances() as well.
    bool isThemed = false;
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

    // The same, with what is needed to keep it.
    virtual DecodedIcon decodeFrom(const IconSource &source, int size) const;

    // What the answers of resolve() depend on besides the bundles: the theme, its files, the
    // language. For comparing only; empty when it cannot be told.
    virtual QByteArray circumstances() const { return {}; }
    // Whether the circumstances are the same still, by a look at the states of files. What it
    // overlooks, such as a file exchanged within a folder of a theme that has an index, only
    // resolve() finds.
    virtual bool areStill(const QByteArray &) const { return false; }

    // decode() for a look at the picture as it is stored: with `largestStored` above 0, one that
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
