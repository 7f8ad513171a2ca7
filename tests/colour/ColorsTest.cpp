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
    double minSaturation = MinSaturation, double deltaE = Alike)
{
    return createDominantColorsWithCount(
        view(BitmapText::picture(picture)), count, minSaturation, 0, deltaE);
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
            { 'b', { 0.00048045294203928, 0, 1, 0.25 } },
            { 'g', { 0.50192216471099169, 0.50197063388894553, 0.50197725469775729, 0.25 } },
            { 'k', { 0, 0, 0, 0.25 } },
        };
        for (const auto &[letter, expected] : shown) {
            const ClosedForm form = closedForm(letter);
            const XYZ xyz = xyzFromLuv({ form.L, form.u, form.v, 0.25 });
            // The root makes much of the last digits of a component near 0.
            const LinearRGB found = applyGamma(linearRGBFromXYZ(xyz), ImageGamma);
            QVERIFY2(isNearRGB(found, expected, 1e-11), QByteArray(1, letter));
        }
    }

    void wrapped_staysWithinTheRange()
    {
        const double below = std::nextafter(360.0, 0.0);
        for (const auto &[value, low, expected] : std::initializer_list<std::array<double, 3>> {
                 { 360, 0, 0 }, { -1e-20, 0, 0 }, { -7210, 0, 350 }, { 190, -180, -170 },
                 { below, 0, below }, { std::nan(""), 0, 0 } }) {
            QVERIFY(wrapped(value, low, low + 360) == expected);
        }
    }

    void entries_standByChain_newestFirst()
    {
        const std::pair<QString, QString> rows[] {
            { u"ewgrnbk"_s, u"k255 b255 w255 r255 n255 g255 e255"_s }, // all chains
            { u"rcdcr"_s, u"d255 c510 r510"_s }, // one chain
            { u"dcrdc"_s, u"c510 d510 r255"_s },
            { u"rrwr/rrwr"_s, u"w510 r1530"_s }, // broken by another, and by nothing
            { u"..kk/k.K."_s, u"k893"_s },
        };
        for (const auto &[picture, expected] : rows) {
            QCOMPARE(text(createColorHistogram(view(BitmapText::picture(picture)))), expected);
        }
    }

    void picturesThatLieOtherwise_areNotRead()
    {
        const Picture picture = BitmapText::picture(u"rg"_s);
        const auto isRead = [&](auto change) {
            BitmapView changed = view(picture);
            change(changed);
            return pixelManipulationOffsetsWithImageGamma(changed, 1).has_value();
        };
        QVERIFY(isRead([](BitmapView &) {}));
        QVERIFY(isRead([](BitmapView &bitmap) { bitmap.format.isLittleEndian32Bit = true; }));
        QVERIFY(!isRead([](BitmapView &bitmap) { bitmap.bitsPerSample = 16; }));
        QVERIFY(!isRead([](BitmapView &bitmap) { bitmap.isPlanar = true; }));
        QVERIFY(!isRead([](BitmapView &bitmap) {
            bitmap.format.isLittleEndian32Bit = true;
            bitmap.bitsPerPixel = 40;
            bitmap.bytesPerRow = 10;
        }));
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
        const ColorHistogram histogram = createColorHistogram(view(picture));
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
        const Picture pinks { 3, { { 255, 0, 0, 255 }, { 153, 0, 67, 3 }, { 137, 0, 60, 2 } } };
        const HclColors bins = createColorSpectrum(view(pinks));
        QCOMPARE(bins.size(), SpectrumSize);
        for (std::size_t i = 0; i < bins.size(); ++i) {
            QCOMPARE(bins[i].count, std::uint64_t(i == 12 ? 255 : i == 0 ? 3 : i == 359 ? 2 : 0));
        }
        QVERIFY(bins[0].hue > 359.5 && bins[0].hue < 360);
    }

    void darkColors_needMoreChroma()
    {
        // The first is five hundred times as colourful as the last.
        const Picture colors { 4,
            { { 40, 0, 0, 3 }, { 64, 0, 0, 5 }, { 247, 247, 247, 7 }, { 248, 248, 248, 9 } } };
        const HclColors bins = createColorSpectrum(view(colors));
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

    void oddCountsAndLimits_endWell()
    {
        for (const auto &[count, expected] : { std::pair(PTRDIFF_MIN, 0), std::pair(-1L, 0),
                 std::pair(1L, 1), std::pair(3L, 3), std::pair(10'000L, 4) }) {
            QCOMPARE(dominant(u"rnbk"_s, count).size(), std::size_t(expected));
        }
        QVERIFY(dominant(u".."_s).isEmpty());
        const QString all = u"r510 b255 k255"_s;
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, std::nan("")), all));
        QVERIFY(areColors(dominant(u"rbrk"_s, 6, MinSaturation, std::nan("")), all));
        QCOMPARE(dominant(u"rbrk"_s, 6, Infinite).size(), std::size_t(1));
    }
};

QTEST_APPLESS_MAIN(ColorsTest)
#include "ColorsTest.moc"
