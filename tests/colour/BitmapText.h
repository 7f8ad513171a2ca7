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

// How a picture lies in memory; it must outlive the view.
inline BitmapView view(const Picture &picture)
{
    BitmapView view;
    view.planes[0] = &picture.pixels[0].red;
    view.pixelsWide = picture.width;
    view.pixelsHigh = picture.height();
    view.samplesPerPixel = 4;
    view.bytesPerRow = 4 * std::size_t(picture.width);
    view.bitsPerPixel = 32;
    view.hasAlpha = true;
    view.colorSpaceModel = ColorSpaceModel::RGB;
    return view;
}

} // namespace BitmapText
