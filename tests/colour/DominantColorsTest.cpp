#include "colour/DominantColors.h"

#include "TestCase.h"
#include "colour/BitmapText.h"
#include "colour/ClosedForms.h"

#include <cstdint>
#include <cstdio>
#include <limits>
#include <unistd.h>

using namespace BitmapText;
using namespace ClosedForms;

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double MinSaturation = 0.14;
constexpr double Alike = 50;

struct Bin
{
    double L, u, v;
    std::uint64_t count;
};

using Bins = QList<Bin>;

HclColors spectrum(const Bins &bins)
{
    auto result = HclColors::zeroed(SpectrumSize);
    for (qsizetype i = 0; i < bins.size(); ++i) {
        HclColor &bin = result[std::size_t(i)];
        bin.color = { bins[i].L, bins[i].u, bins[i].v, 1 };
        bin.count = bins[i].count;
        bin.updateFromColor();
    }
    return result;
}

HclColors dominant(const QString &picture, std::ptrdiff_t count = 6,
    double minSaturation = MinSaturation, double deltaE = Alike, float minLuminosity = 0)
{
    return createDominantColorsWithCount(
        Bitmap(picture).view, count, minSaturation, minLuminosity, deltaE);
}

// What the work writes to standard error.
template <typename Work> QString written(const Work &work)
{
    std::FILE *file = std::tmpfile();
    const int usual = dup(STDERR_FILENO);
    dup2(fileno(file), STDERR_FILENO);
    work();
    std::fflush(stderr);
    dup2(usual, STDERR_FILENO);
    close(usual);
    std::rewind(file);
    QByteArray text(1024, '\0');
    text.resize(qsizetype(std::fread(text.data(), 1, std::size_t(text.size()), file)));
    std::fclose(file);
    return QString::fromLatin1(text);
}

} // namespace

class DominantColorsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void pictures_haveTheirClosedForms()
    {
        const std::pair<const char *, const char *> rows[] { { "8*r/8*r/8*r/8*r", "r8160" },
            { "n", "n255" }, { "64*w", "w16320" }, { "64*g", "g16320" }, { "64*k", "k16320" },
            // Too far apart, by weight and not by number, greys that become one.
            { "32*b 32*r", "r8160 b8160" }, { "3*b 5*w 2*r", "b765 r510 w1275" },
            { "32*k 32*w", "h16320" }, { "9*k r", "r255 k2295" }, { "61*g 3*r", "g15555 r765" },
            { "16*r 32*e", "t12240" }, // single-precision shares of two shades
            { "198*r b", "r50490 b255" },
            // The single-precision number nearest to 0.005 is below it.
            { "199*r b", "r50745" }, { "400*r k", "r102000" } };
        for (const auto &[picture, expected] : rows) {
            QVERIFY2(areColors(dominant(QLatin1String(picture)), QLatin1String(expected)), picture);
        }
    }

    void hues_areRoundedToTheirBin()
    {
        // Red, then two pinks on either side of 359.5 degrees.
        const Bitmap bitmap(
            Picture { 3, { { 255, 0, 0, 255 }, { 153, 0, 67, 3 }, { 137, 0, 60, 2 } } });
        const HclColors bins = createColorSpectrum(bitmap.view);
        QCOMPARE(bins.size(), SpectrumSize);
        for (std::size_t i = 0; i < bins.size(); ++i) {
            QCOMPARE(bins[i].count, std::uint64_t(i == 12 ? 255 : i == 0 ? 3 : i == 359 ? 2 : 0));
        }
        QVERIFY(bins[0].hue > 359.5 && bins[0].hue < 360);
    }

    void darkColors_needMoreChroma()
    {
        // The first is five hundred times as colourful as the last.
        const Bitmap bitmap(Picture {
            4, { { 40, 0, 0, 3 }, { 64, 0, 0, 5 }, { 247, 247, 247, 7 }, { 248, 248, 248, 9 } } });
        const HclColors bins = createColorSpectrum(bitmap.view);
        QCOMPARE(bins[GrayBin].count, std::uint64_t(10));
        QCOMPARE(bins[12].count, std::uint64_t(5));
        QCOMPARE(bins[22].count, std::uint64_t(9));
        QVERIFY(bins[GrayBin].hue == 0 && bins[GrayBin].saturation == 0);
    }

    void alikeColors_areMerged()
    {
        const Bins apart { { 50, 130, 40, 100 }, { 90, 100, 0, 100 } };
        const Bins unlike { { 50, 14, 0, 100 }, { 50, 13.9, 0, 100 } };
        const std::pair<Bins, Bins> rows[] {
            { apart, apart },
            { { { 50, 130, 39.9, 300 }, { 90, 100, 0, 100 } }, { { 60, 122.5, 29.925, 400 } } },
            // The third is too far from the first, not from the mean of both.
            { { { 50, 100, 0, 300 }, { 50, 149, 0, 100 }, { 50, 155, 0, 10 } },
                { { 50, 46450.0 / 410, 0, 410 } } },
            // The least colourful and a grey, then greys, however far apart.
            { unlike, unlike },
            { { { 90, 13, 0, 100 }, { 10, -13, 0, 300 } }, { { 30, 0, 0, 400 } } },
            // Coloured when its turn begins, it gathers coloured ones, and is grey in the end.
            { { { 80, 20, 0, 100 }, { 70, -20, 0, 100 }, { 10, 0, 1, 900 }, { 60, 0, 20, 50 } },
                { { 72, 0, 4, 250 }, { 10, 0, 1, 900 } } },
        };
        for (const auto &[bins, expected] : rows) {
            const HclColors colors =
                createDominantColorsFromSpectrum(spectrum(bins), 6, MinSaturation, Alike);
            QCOMPARE(qsizetype(colors.size()), expected.size());
            for (qsizetype i = 0; i < expected.size(); ++i) {
                const auto &[color, reserved, count, hue, saturation, luminosity] =
                    colors[std::size_t(i)];
                QCOMPARE(count, expected[i].count);
                QVERIFY(isNear(color.L, expected[i].L) && isNear(luminosity, color.L / 100));
                QVERIFY(std::hypot(color.u - expected[i].u, color.v - expected[i].v) < 1e-12);
                QVERIFY(isNear(saturation, std::hypot(color.u, color.v) / 100));
            }
        }
    }

    void weights_mayBeFurtherApartThanAnIntReaches()
    {
        HclColors bins = spectrum({ { 50, 20, 0, 10 }, {}, { 0, 0, 0, 1ULL << 33 }, {},
            { 50, 0, 60, 1ULL << 45 }, { 50, 50, 50, 1ULL << 34 } });
        QCOMPARE(SpectrumReduction::sortByWeight(bins), std::size_t(4));
        const std::uint64_t expected[] { 1ULL << 45, 1ULL << 34, 10, 1ULL << 33, 0 };
        QVERIFY(std::equal(std::begin(expected), std::end(expected), bins.begin(),
            [](std::uint64_t count, const HclColor &bin) { return count == bin.count; }));
    }

    void oddCountsAndLimits_endWell()
    {
        for (const auto &[count, expected] : { std::pair(PTRDIFF_MIN, 0), std::pair(-1L, 0),
                 std::pair(1L, 1), std::pair(3L, 3), std::pair(10'000L, 4) }) {
            QCOMPARE(dominant(u"rnbk"_s, count).size(), std::size_t(expected));
        }
        QVERIFY(createDominantColorsFromSpectrum({}, 6, MinSaturation, Alike).isEmpty());
        const QString all = u"r510 b255 k255"_s;
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, std::nan("")), all));
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, MinSaturation, std::nan("")), all));
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, MinSaturation, Alike, std::nanf("")), all));
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, MinSaturation, Alike, 1), all));
        QCOMPARE(dominant(u"rbrk"_s, 6, Infinite).size(), std::size_t(1));
        QCOMPARE(dominant(u"rbrk"_s, 6, MinSaturation, Infinite).size(), std::size_t(2));
    }

    void nothingToMeasure_isTold()
    {
        const auto told = [](const BitmapView &view) {
            return written([&] {
                QVERIFY(createDominantColorsWithCount(view, 6, MinSaturation, 0, Alike).isEmpty());
            });
        };
        QCOMPARE(told(Bitmap(u".."_s).view), u"\nzero colors specified for histogram\n"_s);
        QCOMPARE(written([] { createColorSpectrumFromHistogram({}); }),
            u"\nbad color spectrum parameter\n"_s);
        // What cannot be read is not told.
        Bitmap bitmap(u"rr"_s);
        bitmap.view.colorSpaceModel = ColorSpaceModel::CMYK;
        QCOMPARE(told(bitmap.view), QString());
    }
};

QTEST_APPLESS_MAIN(DominantColorsTest)
#include "DominantColorsTest.moc"
