#include "colour/ColorHistogram.h"

#include "TestCase.h"
#include "colour/BitmapText.h"

#include <algorithm>

using namespace BitmapText;

class ColorHistogramTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void layouts_areReadAlike()
    {
        constexpr BitmapFormat AlphaFirst { true, false, false };
        constexpr BitmapFormat Nonpremultiplied { false, true, false };
        constexpr BitmapFormat Words { false, false, true };
        const std::pair<const char *, Layout> rows[] { { "alpha last", { "RGBA", {} } },
            { "not premultiplied", { "RGBA", Nonpremultiplied } },
            { "alpha first", { "ARGB", AlphaFirst } },
            { "alpha first, words", { "BGRA", { true, false, true } } },
            { "alpha last, words", { "ABGR", Words } }, { "padded rows", { "RGBA", {}, false, 5 } },
            { "padded pixels", { "RGBAxx", {} } }, { "planes", { "RGBA", {}, true } },
            { "planes, alpha first, padded rows", { "ARGB", AlphaFirst, true, 3 } },
            { "no alpha", { "RGB", {} } }, { "no alpha, padded", { "RGBx", {}, false, 1 } },
            { "no alpha, though first", { "RGBx", AlphaFirst } },
            { "no alpha, words", { "xBGR", Words } }, { "grey", { "W", {} } },
            { "grey, padded", { "Wx", {}, false, 3 } }, { "grey, alpha last", { "WA", {} } },
            { "grey, alpha first, planes", { "AW", AlphaFirst, true } },
            { "grey, words", { "xxAW", Words } } };
        for (const auto &[name, layout] : rows) {
            const bool hasAlpha = layout.samples.contains('A');
            // Each grey has a chain of its own, in their order.
            const bool isGray = layout.samples.contains('W');
            const Bitmap bitmap(isGray ? u"ggw/kkG"_s : u"rrn/b.R"_s, layout);
            const QString expected = isGray ? (hasAlpha ? u"k510 g638 w255"_s : u"k2 g3 w1"_s)
                                            : (hasAlpha ? u"b255 r638 n255"_s : u"b1 r3 .1 n1"_s);
            QVERIFY2(text(createColorHistogram(bitmap.view)) == expected, name);
        }
    }

    void whatCannotBeRead_givesNothing()
    {
        const Bitmap bitmap(u"rrn/b.R"_s, { "RGBAx", {} });
        const auto isReadWith = [&bitmap](auto BitmapView::*figure, auto value) {
            BitmapView view = bitmap.view;
            view.*figure = value;
            return !createColorHistogram(view).isEmpty();
        };
        QVERIFY(isReadWith(&BitmapView::colorSpaceModel, ColorSpaceModel::RGB));
        for (const auto model : { ColorSpaceModel::Unknown, ColorSpaceModel::Gray,
                 ColorSpaceModel::CMYK, ColorSpaceModel::Lab, ColorSpaceModel::Indexed }) {
            QVERIFY(!isReadWith(&BitmapView::colorSpaceModel, model));
        }
        for (const int samples : { -1, 0, 1, 3, 5 }) {
            QVERIFY(!isReadWith(&BitmapView::samplesPerPixel, samples));
        }
        for (const int bits : { -40, 0, 7, 24, 44 }) {
            QVERIFY(!isReadWith(&BitmapView::bitsPerPixel, bits));
        }
        for (const int extent : { 0, -2 }) {
            QVERIFY(!isReadWith(&BitmapView::pixelsWide, extent));
            QVERIFY(!isReadWith(&BitmapView::pixelsHigh, extent));
        }
        QVERIFY(!isReadWith(&BitmapView::bitsPerSample, 16));
        QVERIFY(!isReadWith(&BitmapView::bytesPerRow, bitmap.view.bytesPerRow - 1));
        // Three planes are missing, then all.
        QVERIFY(!isReadWith(&BitmapView::isPlanar, true));
        QVERIFY(!isReadWith(&BitmapView::planes, decltype(BitmapView::planes) {}));
        for (const Layout &notWords : { Layout { "RGB", { false, false, true } },
                 { "RGBA", { false, false, true }, true } }) {
            QVERIFY(createColorHistogram(Bitmap(u"rr"_s, notWords).view).isEmpty());
        }
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
        constexpr std::uint32_t Colors = 120'000, Step = 139;
        Picture picture { 600, {} };
        for (std::uint32_t i = 0; i < 2 * Colors; ++i) {
            const std::uint32_t color = i % Colors * Step;
            picture.pixels.push_back(
                { std::uint8_t(color >> 16), std::uint8_t(color >> 8), std::uint8_t(color), 255 });
        }
        const Bitmap bitmap(picture);
        const ColorHistogram histogram = createColorHistogram(bitmap.view);
        std::vector<std::uint32_t> found;
        for (const auto &[red, green, blue, alpha, count] : histogram) {
            QVERIFY(alpha == 255 && count == 510);
            found.push_back(std::uint32_t(red) << 16 | std::uint32_t(green) << 8 | blue);
        }
        QCOMPARE(found.size(), std::size_t(Colors));
        std::sort(found.begin(), found.end());
        for (std::uint32_t i = 0; i < Colors; ++i) {
            QCOMPARE(found[i], i * Step);
        }
    }
};

QTEST_APPLESS_MAIN(ColorHistogramTest)
#include "ColorHistogramTest.moc"
