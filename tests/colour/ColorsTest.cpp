// From pixels to dominant colours.

#include "TestCase.h"
#include "colour/BitmapText.h"
#include "colour/ClosedForms.h"
#include "colour/ColorConversion.h"
#include "colour/DominantColors.h"

#include <array>
#include <limits>
#include <set>

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

// Within so much of it, however near to 0.
bool isNearRGB(const LinearRGB &color, const LinearRGB &expected, double distance)
{
    return std::abs(color.red - expected.red) < distance
        && std::abs(color.green - expected.green) < distance
        && std::abs(color.blue - expected.blue) < distance && color.alpha == expected.alpha;
}

} // namespace

class ColorsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void shownColors_haveTheirClosedForms()
    {
        const std::pair<char, LinearRGB> shown[] {
            { 'r', { 0.99999991589352757, 0.00074594837495951, 0, 0.25 } },
            { 'n', { 0.00043605200307028, 1, 0, 0.25 } },
            { 'b', { 0.00048045294203928, 0, 1, 0.25 } },
            { 'w', { 0.99999995704461253, 1, 0.99999998932336811, 0.25 } },
            { 'g', { 0.50192216471099169, 0.50197063388894553, 0.50197725469775729, 0.25 } },
            { 'h', { 0.46343931463088870, 0.46348406763083757, 0.46349018081593628, 0.25 } },
            { 'k', { 0, 0, 0, 0.25 } },
            { 't', { 0.99738511157008859, 0.00074399786575955, 0, 0.25 } },
        };
        for (const auto &[letter, expected] : shown) {
            const ClosedForm form = closedForm(letter);
            const XYZ xyz = xyzFromLuv({ form.L, form.u, form.v, 0.25 });
            // The root makes much of the last digits of a component near 0.
            const LinearRGB found = applyGamma(linearRGBFromXYZ(xyz), ImageGamma);
            QVERIFY2(isNearRGB(found, expected, 1e-11), QByteArray(1, letter));
        }
    }

    void whatNoScreenShows_isBroughtWithinBounds()
    {
        const XYZ black = xyzFromLuv({ 0, 20, -20, 0.5 });
        QVERIFY(black.X == 0 && black.Y == 0 && black.Z == 0 && black.alpha == 0.5);
        const XYZ bright = xyzFromLuv({ 100, 0, -1000, 0.5 });
        QVERIFY(bright.X == 0 && isNear(bright.Y, 1, 1e-12) && bright.Z == 0);
        QVERIFY(isNearRGB(linearRGBFromXYZ({ 1, 0, 1, 2 }), { 1, 0, 1, 1 }, 1e-15));
    }

    void wrapped_staysWithinTheRange()
    {
        const double below = std::nextafter(360.0, 0.0);
        for (const auto &[value, low, expected] :
            std::initializer_list<std::array<double, 3>> { { 360, 0, 0 }, { -1e-20, 0, 0 },
                { -7210, 0, 350 }, { 730, 0, 10 }, { 190, -180, -170 }, { Infinite, -180, -180 },
                { -Infinite, 0, 0 }, { below, 0, below }, { std::nan(""), 0, 0 } }) {
            QVERIFY(wrapped(value, low, low + 360) == expected);
        }
        const double far = wrapped(1e300, 0, 360);
        QVERIFY(far >= 0 && far < 360);
    }

    void layouts_areReadAlike()
    {
        constexpr BitmapFormat AlphaFirst { true, false, false };
        constexpr BitmapFormat Nonpremultiplied { false, true, false };
        constexpr BitmapFormat Words { false, false, true };
        const Layout rows[] { { "RGBA", {} }, { "RGBA", Nonpremultiplied }, { "ARGB", AlphaFirst },
            { "BGRA", { true, false, true } }, { "ABGR", Words },
            // Padded rows, padded pixels, planes.
            { "RGBA", {}, false, 5 }, { "RGBAxx", {} }, { "RGBA", {}, true },
            { "ARGB", AlphaFirst, true, 3 },
            // No alpha, even where it is said to be first.
            { "RGB", {} }, { "RGBx", {}, false, 1 }, { "RGBx", AlphaFirst }, { "xBGR", Words },
            // Greys.
            { "W", {} }, { "Wx", {}, false, 3 }, { "WA", {} }, { "AW", AlphaFirst, true },
            { "xxAW", Words } };
        for (const Layout &layout : rows) {
            const bool hasAlpha = layout.samples.contains('A');
            // Each grey has a chain of its own, in their order.
            const bool isGray = layout.samples.contains('W');
            const Bitmap bitmap(isGray ? u"ggw/kkG"_s : u"rrn/b.R"_s, layout);
            const QString expected = isGray ? (hasAlpha ? u"k510 g638 w255"_s : u"k2 g3 w1"_s)
                                            : (hasAlpha ? u"b255 r638 n255"_s : u"b1 r3 .1 n1"_s);
            QVERIFY2(text(createColorHistogram(bitmap.view)) == expected, layout.samples);
        }
    }

    void whatCannotBeRead_givesNothing()
    {
        const Bitmap bitmap(u"rrn/b.R"_s, { "RGBAx", {} });
        const auto isReadWith = [&bitmap](auto BitmapView::*figure, auto... values) {
            BitmapView view = bitmap.view;
            return ((view.*figure = values, !createColorHistogram(view).isEmpty()) || ...);
        };
        QVERIFY(isReadWith(&BitmapView::colorSpaceModel, ColorSpaceModel::RGB));
        QVERIFY(!isReadWith(&BitmapView::colorSpaceModel, ColorSpaceModel::Gray));
        QVERIFY(!isReadWith(&BitmapView::samplesPerPixel, 3, 5));
        QVERIFY(!isReadWith(&BitmapView::bitsPerPixel, 0, 24, 44));
        QVERIFY(!isReadWith(&BitmapView::pixelsWide, 0, -2));
        QVERIFY(!isReadWith(&BitmapView::bitsPerSample, 16));
        QVERIFY(!isReadWith(&BitmapView::bytesPerRow, bitmap.view.bytesPerRow - 1));
        // Three planes are missing.
        QVERIFY(!isReadWith(&BitmapView::isPlanar, true));
        const Bitmap threeBytes(u"rr"_s, { "RGB", { false, false, true } });
        QVERIFY(createColorHistogram(threeBytes.view).isEmpty());
    }

    void entries_standByChain_newestFirst()
    {
        const std::pair<QString, QString> rows[] {
            { u"ewgrnbk"_s, u"k255 b255 w255 r255 n255 g255 e255"_s }, // all chains
            { u"rcdcr"_s, u"d255 c510 r510"_s }, // one chain
            { u"dcrdc"_s, u"c510 d510 r255"_s },
            { u"rrwr/rrwr"_s, u"w510 r1530"_s }, // broken by another, and by nothing
            { u"rr.R/.r.r"_s, u"r1148"_s },
            { u"..kk/k.K."_s, u"k893"_s },
            { u"Kr/rr"_s, u"k128 r765"_s },
        };
        for (const auto &[picture, expected] : rows) {
            QCOMPARE(text(createColorHistogram(Bitmap(picture).view)), expected);
        }
    }

    void manyColors_areCountedEach()
    {
        constexpr std::uint32_t Distinct = 120'000, Step = 139;
        Picture picture { 600, {} };
        for (std::uint32_t i = 0; i < 2 * Distinct; ++i) {
            const std::uint32_t color = i % Distinct * Step;
            picture.pixels.push_back(
                { std::uint8_t(color >> 16), std::uint8_t(color >> 8), std::uint8_t(color), 255 });
        }
        const Bitmap bitmap(picture);
        const ColorHistogram histogram = createColorHistogram(bitmap.view);
        std::set<std::uint32_t> found;
        for (const auto &[red, green, blue, alpha, count] : histogram) {
            const std::uint32_t color = std::uint32_t(red) << 16 | std::uint32_t(green) << 8 | blue;
            QVERIFY(alpha == 255 && count == 510 && color % Step == 0 && color < Distinct * Step);
            QVERIFY(found.insert(color).second);
        }
        QCOMPARE(found.size(), std::size_t(Distinct));
    }

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

    void nothingToMeasure_givesNothing()
    {
        QVERIFY(dominant(u".."_s).isEmpty());
        QVERIFY(createColorSpectrumFromHistogram({}).isEmpty());
        Bitmap bitmap(u"rr"_s);
        bitmap.view.colorSpaceModel = ColorSpaceModel::CMYK;
        QVERIFY(createDominantColorsWithCount(bitmap.view, 6, MinSaturation, 0, Alike).isEmpty());
    }
};

QTEST_APPLESS_MAIN(ColorsTest)
#include "ColorsTest.moc"
