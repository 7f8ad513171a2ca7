// What a file of kept icons says of them: values that are written and read as a whole.

#pragma once

#include "colour/ColorSpectrum.h"
#include "platform/IconProvider.h"

#include <QByteArray>
#include <QList>

#include <optional>

// What tells one kept picture from another.
struct PictureKey
{
    QString file;
    QString name;
    // Edge in pixels.
    int size = 0;
    // Of the same picture drawn smaller or larger; 0 for the picture itself.
    int scaled = 0;

    int edge() const { return scaled > 0 ? scaled : size; }
    bool operator==(const PictureKey &other) const = default;
};

size_t qHash(const PictureKey &key, size_t seed = 0);

// What colours were measured by.
struct ColorQuestion
{
    float minSaturation = 0;
    float minLuminosity = 0;
};

// A picture, or the fact that none can be made from its files.
struct PictureRecord
{
    PictureKey key;
    QList<IconOrigin> origins;
    // It holds only while the theme is the same.
    bool isThemed = false;
    // The run of the program that last used it.
    quint32 lastRun = 0;
    // Of the pixels, size × size of them, and behind these the colours; 0 without a picture.
    qint64 offset = 0;
    quint32 colorCount = 0;
    // None when the colours have not been measured.
    std::optional<ColorQuestion> question;
    // Of pixels and colours.
    quint64 hash = 0;

    qint64 pixelBytes() const { return qint64(key.edge()) * key.edge() * 4; }
    qint64 bytes() const { return pixelBytes() + qint64(colorCount * sizeof(HclColor)); }
    bool hasPicture() const { return offset > 0; }
};

// Which picture stands for a bundle.
struct AnswerRecord
{
    QString bundle;
    FileStamp stamp;
    int size = 0;
    // Of the list of pictures; -1 for a bundle without an icon.
    qint32 picture = -1;
    quint32 lastRun = 0;
};

struct StoreIndex
{
    // Larger ones are not shown.
    static constexpr int LargestSize = 1024;

    // Counts the times that the file was written.
    quint32 run = 0;
    // Of IconProvider, when the answers were given.
    QByteArray circumstances;
    QList<PictureRecord> pictures;
    QList<AnswerRecord> answers;

    QByteArray toBytes() const;
    // Nothing unless every number in it is in range: pictures within `first` to `end` of the file.
    static std::optional<StoreIndex> fromBytes(const QByteArray &bytes, qint64 first, qint64 end);
};

// Differs for certain when bytes differ within eight in a row that begin at a multiple of eight,
// and otherwise but for one in 2^64.
quint64 storeHash(const void *bytes, qint64 count, quint64 seed = 0);
