// Bitmaps written as text: rows parted by "/", a letter a pixel, "61*g" for many of them.
//
// k is black, w white, g grey, r red, n green, b blue; e is nearly red, c and d share a chain of
// the histogram. A capital letter is half covered (alpha 128), a dot not at all.

#pragma once

#include "TestCase.h"
#include "colour/BitmapView.h"
#include "colour/ColorHistogram.h"

#include <QStringList>

#include <map>
#include <vector>

namespace BitmapText {

struct Pixel
{
    std::uint8_t red, green, blue, alpha;
};

struct Picture
{
    int width = 0;
    std::vector<Pixel> pixels;

    int height() const { return int(pixels.size()) / width; }
};

inline const std::map<QChar, Pixel> Pixels { { u'k', { 0, 0, 0, 255 } },
    { u'w', { 255, 255, 255, 255 } }, { u'g', { 128, 128, 128, 255 } },
    { u'r', { 255, 0, 0, 255 } }, { u'n', { 0, 255, 0, 255 } }, { u'b', { 0, 0, 255, 255 } },
    { u'e', { 254, 0, 0, 255 } }, { u'c', { 90, 60, 30, 255 } }, { u'd', { 40, 115, 47, 255 } },
    { u'.', { 1, 2, 3, 0 } } };

inline Picture picture(const QString &text)
{
    Picture result;
    std::size_t number = 0;
    for (const QChar letter : text) {
        if (letter.isDigit()) {
            number = 10 * number + std::size_t(letter.digitValue());
        } else if (letter == u'.' || letter.isLetter()) {
            Pixel pixel = Pixels.at(letter.toLower());
            pixel.alpha = letter.isUpper() ? 128 : pixel.alpha;
            result.pixels.insert(result.pixels.end(), number ? number : 1, pixel);
            number = 0;
        }
    }
    result.width = int(result.pixels.size()) / int(text.count(u'/') + 1);
    return result;
}

// The entries of a histogram as "r510 b128".
inline QString text(const ColorHistogram &histogram)
{
    QStringList words;
    for (const auto &[red, green, blue, alpha, count] : histogram) {
        QString word = u"?"_s;
        for (const auto &[letter, pixel] : Pixels) {
            if (red == pixel.red && green == pixel.green && blue == pixel.blue && alpha == 255) {
                word = letter;
            }
        }
        words.append(word + QString::number(count));
    }
    return words.join(u' ');
}

struct Layout
{
    // The samples as they stand in memory: R, G, B, A, W for grey, x for padding.
    QByteArray samples = "RGBA";
    BitmapFormat format;
    bool isPlanar = false;
    std::size_t rowPadding = 0;
};

// A picture in memory. Each plane ends with its last sample, so that reading on is noticed.
class Bitmap final
{
public:
    explicit Bitmap(const Picture &picture, const Layout &layout = {})
    {
        const QByteArray &samples = layout.samples;
        const auto width = std::size_t(picture.width), height = std::size_t(picture.height());
        const auto together = std::size_t(layout.isPlanar ? 1 : samples.size());
        view.bytesPerRow = width * together + layout.rowPadding;
        _planes.resize(layout.isPlanar ? std::size_t(samples.size()) : 1);
        for (std::size_t sample = 0; sample < std::size_t(samples.size()); ++sample) {
            std::vector<std::uint8_t> &plane = _planes[sample / together];
            plane.resize(view.bytesPerRow * (height - 1) + width * together, Padding);
            view.planes[sample / together] = plane.data();
            for (std::size_t i = 0; i < picture.pixels.size(); ++i) {
                plane[i / width * view.bytesPerRow + i % width * together + sample % together] =
                    value(picture.pixels[i], samples[qsizetype(sample)]);
            }
        }
        view.pixelsWide = picture.width;
        view.pixelsHigh = picture.height();
        view.samplesPerPixel = int(samples.size() - samples.count('x'));
        view.bitsPerPixel = int(8 * together);
        view.hasAlpha = samples.contains('A');
        view.isPlanar = layout.isPlanar;
        view.format = layout.format;
        view.colorSpaceModel = samples.contains('W') ? ColorSpaceModel::Gray : ColorSpaceModel::RGB;
    }
    explicit Bitmap(const QString &text, const Layout &layout = {})
        : Bitmap(picture(text), layout)
    { }
    Q_DISABLE_COPY_MOVE(Bitmap)

    BitmapView view;

private:
    static constexpr std::uint8_t Padding = 0x5a;

    static std::uint8_t value(const Pixel &pixel, char sample)
    {
        const std::uint8_t values[] { pixel.red, pixel.green, pixel.blue, pixel.alpha, pixel.red,
            Padding };
        return values[QByteArrayView("RGBAWx").indexOf(sample)];
    }

    std::vector<std::vector<std::uint8_t>> _planes;
};

} // namespace BitmapText
