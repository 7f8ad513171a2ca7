#include "colour/ColorConversion.h"

#include "TestCase.h"
#include "colour/BitmapText.h"
#include "colour/ClosedForms.h"

#include <array>
#include <limits>

using namespace ClosedForms;

namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

bool isNearXYZ(const XYZ &color, const XYZ &expected)
{
    return isNear(color.X, expected.X, 1e-12) && isNear(color.Y, expected.Y, 1e-12)
        && isNear(color.Z, expected.Z, 1e-12) && color.alpha == expected.alpha;
}

// Within so much of it, however near to 0.
bool isNearRGB(const LinearRGB &color, const LinearRGB &expected, double distance)
{
    return std::abs(color.red - expected.red) < distance
        && std::abs(color.green - expected.green) < distance
        && std::abs(color.blue - expected.blue) < distance && color.alpha == expected.alpha;
}

} // namespace

class ColorConversionTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void colors_haveTheirClosedForms()
    {
        for (const char letter : QByteArray("rnbwk")) {
            const auto [red, green, blue, alpha] = BitmapText::Pixels.at(QLatin1Char(letter));
            const ClosedForm form = closedForm(letter);
            const Luv luv = luvFromXYZ(xyzFromLinearRGB(linearRGBFromBytes(red, green, blue, 51)));
            QVERIFY(isNear(luv.L, form.L) && luv.alpha == 0.2);
            QVERIFY(isNear(luv.u, form.u, form.precision));
            QVERIFY(isNear(luv.v, form.v, form.precision));
            const LCh lch = lchFromLuv(luv);
            QVERIFY(lch.L == luv.L && lch.alpha == 0.2);
            QVERIFY(isNear(lch.C, form.chroma, form.precision));
            QVERIFY(isNear(wrapped(degreesFromRadians(lch.h), 0, 360), form.hue, form.precision));
        }
    }

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
        QVERIFY(isNearXYZ(xyzFromLuv({ 0, 20, -20, 0.5 }), { 0, 0, 0, 0.5 }));
        QVERIFY(isNearXYZ(xyzFromLuv({ 100, 0, -1000, 0.5 }), { 0, 1, 0, 0.5 }));
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
};

QTEST_APPLESS_MAIN(ColorConversionTest)
#include "ColorConversionTest.moc"
