#include "colour/ColorHistogram.h"

#include "colour/BitmapView.h"
#include "colour/ColorConversion.h"
#include "colour/ColorTable.h"

#include <cstdio>
#include <utility>

namespace {

std::uint32_t bucketOfColor(std::uint32_t red, std::uint32_t green, std::uint32_t blue)
{
    return (red * 33023 + green * 30013 + blue * 27011) % ColorTable::BucketCount;
}

// Pixels of one colour that follow one another. Icons are full of them, and the table need not be
// asked for each.
class Run
{
public:
    Run(ColorTable &table, bool isGray)
        : _table(table)
        , _isGray(isGray)
    { }

    // False when memory runs out.
    bool add(std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t weight)
    {
        if (red != _red || green != _green || blue != _blue) {
            if (!finish()) {
                return false;
            }
            _red = red;
            _green = green;
            _blue = blue;
        }
        _weight += weight;
        return true;
    }

    // Hands the run over; nothing is left of it.
    bool finish()
    {
        if (_weight == 0) {
            return true;
        }
        const std::uint32_t bucket = _isGray ? _red : bucketOfColor(_red, _green, _blue);
        return _table.add(bucket, _red, _green, _blue, std::exchange(_weight, 0));
    }

private:
    ColorTable &_table;
    bool _isGray;
    std::uint8_t _red = 0, _green = 0, _blue = 0;
    std::uint64_t _weight = 0;
};

// False when memory runs out.
bool countPixels(const PixelManipulationOffsets &pixels, ColorTable &table)
{
    Run run(table, pixels.isGray);
    for (int y = 0; y < pixels.pixelsHigh; ++y) {
        std::size_t at = std::size_t(y) * pixels.bytesPerRow;
        for (int x = 0; x < pixels.pixelsWide; ++x, at += pixels.pixelStep) {
            const std::uint8_t weight = pixels.alpha ? pixels.alpha[at] : 1;
            const bool isVisible = weight != 0;
            if (isVisible && !run.add(pixels.red[at], pixels.green[at], pixels.blue[at], weight)) {
                return false;
            }
        }
    }
    return run.finish();
}

ColorHistogram fail(const char *reason)
{
    std::fprintf(stderr, "\n%s\n", reason);
    return {};
}

} // namespace

ColorHistogram createColorHistogram(const BitmapView &bitmap)
{
    ColorTable table;
    if (!table.allocate()) {
        return fail("out of memory allocating hash table");
    }
    const auto pixels = pixelManipulationOffsetsWithImageGamma(bitmap, 1 / ImageGamma);
    if (!pixels) {
        return {};
    }
    if (!countPixels(*pixels, table)) {
        return fail("out of memory computing hash table");
    }
    if (table.size() == 0) {
        return fail("zero colors specified for histogram");
    }
    ColorHistogram histogram = table.histogram();
    if (histogram.isEmpty()) {
        return fail("out of memory generating histogram");
    }
    return histogram;
}
